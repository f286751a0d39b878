// Worker threads that nobody waits for. A private function of every backend.
#pragma once

#include <cstddef>

namespace brindle {

// What a worker's stack holds, in bytes. Small, so that the system keeps the stacks of many ended workers for
// the next ones: making a stack costs more than making its thread.
inline constexpr std::size_t kWorkerStack = 512 * 1024;

// Calls `work` with `data` on a thread of its own, which ends when it returns. No exception may leave `work`.
// False when the system has no thread to give; `work` is then never called. Thread: any.
bool StartWorker(void (*work)(void* data), void* data) noexcept;

}  // namespace brindle
