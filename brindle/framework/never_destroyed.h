// NeverDestroyed: an object for the whole process. It is made in its own storage, so that making it takes no memory
// and cannot fail when T's constructor cannot, and it stays when the process exits, when threads and the host's
// statics may still use it. For function-local statics:
//
//     static NeverDestroyed<Table> table;
//     return *table;
#pragma once

#include <new>
#include <utility>

namespace brindle {

template <class T>
class NeverDestroyed {
  public:
    template <class... Arguments>
    explicit NeverDestroyed(Arguments&&... arguments) {
        ::new (static_cast<void*>(m_storage)) T{std::forward<Arguments>(arguments)...};
    }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }

  private:
    alignas(T) unsigned char m_storage[sizeof(T)];
};

}  // namespace brindle
