// brindle snmp: reads and writes variables of SNMP agents. Requests run at once on the library's worker
// threads; their answers come back through a queue to the one thread that prints. Tests:
// command_snmp_test.cpp.
#include <brindle/snmp/snmp.h>

#include <condition_variable>
#include <deque>
#include <mutex>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/snmp_lines.h"

namespace brindle::tool {
namespace {

struct SnmpOptions {
    std::string agent;
    std::optional<std::string> community;
    std::optional<int> timeout;  // milliseconds
    std::optional<int> retries;
    bool version1 = false;
    bool json = false;
};
struct GetOptions : SnmpOptions {
    std::vector<std::string> oids;
};
struct SetOptions : SnmpOptions {
    std::string oid;
    std::string type;
    std::string value;
    bool hex = false;
};

struct Answer {
    CSnmpVariable variable;
    bool succeeded = false;
    SnmpFailure failure;
    std::string octets;
};

// Answers on their way from the worker threads.
class Answers {
  public:
    // The call-back of both functions.
    static void Put(CSnmpVariable* variable, unsigned long userValue, unsigned int result) {
        Answer answer{*variable, result == 1, KySnmpLastFailure(variable), KySnmpLastOctets(variable).str()};
        auto& answers = *reinterpret_cast<Answers*>(userValue);
        const std::lock_guard lock(answers.m_mutex);
        answers.m_queue.push_back(std::move(answer));
        answers.m_changed.notify_one();  // under the lock: this object ends after the last answer
    }
    Answer Take() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_queue.empty(); });
        Answer answer = std::move(m_queue.front());
        m_queue.pop_front();
        return answer;
    }
    unsigned long UserValue() { return reinterpret_cast<unsigned long>(this); }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Answer> m_queue;
};

using Function = int (*)(CSnmpVariable*, KySnmpCallback, unsigned long, long, int);

bool Send(Function function, const SnmpOptions& options, CSnmpVariable variable, Answers& answers) {
    variable.agent = options.agent;
    variable.community = options.community.value_or("public");
    if (function(&variable, Answers::Put, answers.UserValue(), options.timeout.value_or(1000),
                 options.retries.value_or(1)) == 1)
        return true;
    Complain(variable.oid.view(), "the system has no thread for it");
    return false;
}

// Prints the value, or says why there is none.
bool Show(const SnmpOptions& options, const Answer& answer) {
    if (!answer.succeeded) {
        Complain(answer.variable.oid.view(), answer.failure.text.view());
        return false;
    }
    if (options.json)
        PrintUtf8(SnmpJson(answer.variable, answer.octets).dump());
    else
        Print(SnmpLine(answer.variable, answer.octets));
    FlushOutput();
    return true;
}

void Prepare(const SnmpOptions& options) {
    if (options.timeout && *options.timeout < 1)
        throw Failure(kWrongUsage, "--timeout", "\"" + std::to_string(*options.timeout) + "\" is below 1");
    if (options.retries && *options.retries < 0)
        throw Failure(kWrongUsage, "--retries", "\"" + std::to_string(*options.retries) + "\" is negative");
    if (options.version1) KySnmpSetVersion(SnmpVersion::k1);
}

int RunGet(const GetOptions& options) {
    Prepare(options);
    Answers answers;
    std::size_t pending = 0;
    bool good = true;
    for (const std::string& oid : options.oids) {
        CSnmpVariable variable;
        variable.oid = oid;
        if (Send(KySnmpGetValue, options, variable, answers))
            ++pending;
        else
            good = false;
    }
    for (; pending > 0; --pending) good = Show(options, answers.Take()) && good;
    return good ? kAnswered : kFailed;
}

CSnmpVariable VariableToSet(const SetOptions& options) {
    const std::optional<int> type = SnmpTypeOf(options.type);
    if (!type) throw Failure(kWrongUsage, "TYPE", "\"" + options.type + "\" is no type");
    CSnmpVariable variable;
    variable.oid = options.oid;
    variable.type = static_cast<std::int16_t>(*type);
    variable.value = options.value;
    if (!options.hex) return variable;
    const std::optional<std::string> octets = OctetsFromHex(options.value);
    if (!SnmpTypeHasOctets(*type))
        throw Failure(kWrongUsage, "--hex", SnmpTypeName(*type) + " has no octets");
    if (!octets)
        throw Failure(kWrongUsage, "VALUE", "\"" + options.value + "\" is not in hexadecimal octets");
    variable.value = *octets;
    return variable;
}

// The identifier a get must be asked with to read what the set wrote: a set takes any text that begins like
// that as absolute.
std::string IdentifierForGet(const std::string& oid) {
    const bool absolute = oid.starts_with("1.2") || oid.starts_with("1.3");
    return absolute ? "." + oid : oid;
}

bool IsSame(const CSnmpVariable& sent, const Answer& read) {
    if (sent.type != read.variable.type) return false;
    if (SnmpTypeHasOctets(sent.type)) return sent.value.str() == read.octets;
    return KySnmpPlainValue(sent.type, sent.value) == read.variable.value;
}

int RunSet(const SetOptions& options) {
    Prepare(options);
    const CSnmpVariable sent = VariableToSet(options);
    Answers answers;
    if (!Send(KySnmpSetValue, options, sent, answers)) return kFailed;
    const Answer set = answers.Take();
    if (!set.failure.ok()) {
        Complain(options.oid, set.failure.text.view());
        return kFailed;
    }
    CSnmpVariable back;
    back.oid = IdentifierForGet(options.oid);
    if (!Send(KySnmpGetValue, options, back, answers)) return kFailed;
    const Answer read = answers.Take();
    if (!Show(options, read)) return kFailed;
    if (IsSame(sent, read)) return kAnswered;
    Complain(options.oid, "the agent took the value but holds another one");
    return kFailed;
}

void DeclareCommon(Command& command, SnmpOptions& options) {
    command.Option("--community", "NAME", options.community, "the community; \"public\" without it");
    command.Option("--timeout", "MS", options.timeout,
                   "milliseconds to wait for each attempt; 1000 without it");
    command.Option("--retries", "N", options.retries, "attempts after the first; 1 without it");
    command.Flag("--v1", options.version1, "speak SNMPv1 instead of v2c");
    command.Flag("--json", options.json, "print one JSON object for each value");
}

void DeclareGet(Command& snmp) {
    auto options = std::make_shared<GetOptions>();
    Command& get = snmp.Add("get", "Commands", "read variables, all at once");
    get.Text("AGENT", options->agent, "a host or an address, with \":PORT\" if it is not 161");
    get.Texts("OID", options->oids, "identifiers in dotted numbers");
    DeclareCommon(get, *options);
    get.Note(
        "Prints \"OID = TYPE: VALUE\" for each answer as it arrives. Octets that are no text are printed in "
        "hexadecimal. Identifiers with a leading dot or that begin with 1.2 or 1.3 are whole, others lie "
        "below "
        "1.3.6.1.2.1. Exits with 1 when any of them fails.");
    get.Example("brindle snmp get 127.0.0.1:1161 1.3.6.1.2.1.1.5.0", "the agent's name");
    get.Example("brindle snmp get tx1 1.5.0 1.3.0 --timeout 300 --retries 0",
                "its name and up-time, quickly");
    get.Run([options] { return RunGet(*options); });
}

void DeclareSet(Command& snmp) {
    auto options = std::make_shared<SetOptions>();
    Command& set = snmp.Add("set", "Commands", "write a variable and read it back");
    set.Text("AGENT", options->agent, "a host or an address, with \":PORT\" if it is not 161");
    set.Text("OID", options->oid, "an identifier in dotted numbers");
    set.Text("TYPE", options->type, "the number or the name of a type: 2 or INTEGER, 4 or STRING, ...");
    set.Text("VALUE", options->value, "the value as a text");
    set.Flag("--hex", options->hex, "VALUE is octets in hexadecimal, \"0A 00 00 01\"");
    DeclareCommon(set, *options);
    set.Note(
        "Types: INTEGER (2), BIT STRING (3), OCTET STRING or STRING (4), NULL (5), OBJECT IDENTIFIER or OID "
        "(6), "
        "IpAddress (64), Counter32 (65), Gauge32 (66), TimeTicks (67), Opaque (68), Counter64 (70), "
        "UInteger32 "
        "(71). Prints the value read back, and exits with 1 when it is another one or the agent refused.");
    set.Example("brindle snmp set 127.0.0.1:1161 1.3.6.1.4.1.8072.9999.5 STRING 'On air' --community private",
                ".1.3.6.1.4.1.8072.9999.5 = OCTET STRING: On air");
    set.Run([options] { return RunSet(*options); });
}

}  // namespace

void DeclareSnmp(Command& tool) {
    Command& snmp = tool.Add("snmp", kGroupStations, "read and write variables of SNMP agents");
    DeclareGet(snmp);
    DeclareSet(snmp);
}

}  // namespace brindle::tool
