// Reading and writing single variables of SNMP agents. Each call copies the variable, starts a worker thread
// and returns at once; the thread does one request and calls the host back.
//
// A call that returns 1 calls back exactly once; a call that returns 0 (no variable given, no thread to be
// had) never does. There is no cancelling; the process may end while requests are pending.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/platform/snmp_failure.h"
#include "brindle/snmp/snmp_variable.h"

// Called on the worker thread, several at once and in any order. `variable` is the worker's own copy and is
// gone when the call-back returns. `userValue` is what the host gave. `result` is 1 for success, else 0. The
// call-back must not throw, and has half a megabyte of stack.
//   get: 1 when the agent answered with a value; `oid`, `type` and `value` are then the agent's. With 0 they are as
//        the host sent them.
//   set: 1 when the agent answered, also when it refused; KySnmpLastFailure tells. The copy is as the host sent it.
using KySnmpCallback = void (*)(CSnmpVariable* variable, unsigned long userValue, unsigned int result);

// `timeout` is in milliseconds and holds for each attempt (at least 1, at most 2,147,483,647); `retries` is
// the number of attempts after the first (below 0 is 0). The call-back may be null.
BRINDLE_API int KySnmpGetValue(CSnmpVariable* variable, KySnmpCallback callback, unsigned long userValue,
                               long timeout, int retries);
BRINDLE_API int KySnmpSetValue(CSnmpVariable* variable, KySnmpCallback callback, unsigned long userValue,
                               long timeout, int retries);

// Inside the call-back, on its thread and for its variable: why the request failed or was refused; nothing
// failed otherwise.
BRINDLE_API brindle::SnmpFailure KySnmpLastFailure(const CSnmpVariable* variable);
// Likewise: the octets of an answer of type 3, 4, 64 or 68 in full, while `value` ends at the first zero
// byte. Empty otherwise.
BRINDLE_API CStringA KySnmpLastOctets(const CSnmpVariable* variable);

// The text a get gives for the value that a set of this type and text sends: "0x20" of type 65 is "32", "-1" of type
// 66 "4294967295". Octets end at their first zero byte; a text that is no value of its type is empty.
BRINDLE_API CStringA KySnmpPlainValue(int type, const CStringA& value);

// The protocol of all calls that start from now on; 2c until it is set. Returns the one before. Thread: any.
BRINDLE_API brindle::SnmpVersion KySnmpSetVersion(brindle::SnmpVersion version) noexcept;
