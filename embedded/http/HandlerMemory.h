// Memory that is there when the heap has none left, for what must be handed on all the same.
#pragma once

#include <boost/asio/bind_allocator.hpp>

#include <array>
#include <cstddef>
#include <memory_resource>
#include <new>
#include <utility>

namespace embedded::http {

/// Room for one handler at a time that is given to an executor; a second one, or one that is too
/// large, takes what the heap has.
///
/// Thread-safety: what waits in an executor leaves the memory before it is called, so whoever is
/// called may use it again, on any thread.
class HandlerMemory : public std::pmr::memory_resource {
  private:
    void* do_allocate(std::size_t size, std::size_t /*alignment*/) override {
        // Not tested: nothing here is as large, and nothing is handed on twice at once.
        if (_used || size > _bytes.size())
            return ::operator new(size);
        _used = true;
        return _bytes.data();
    }
    void do_deallocate(void* memory, std::size_t /*size*/, std::size_t /*alignment*/) override {
        if (memory == _bytes.data())
            _used = false;
        else
            ::operator delete(memory);
    }
    bool do_is_equal(const memory_resource& other) const noexcept override {
        return this == &other;
    }

    alignas(std::max_align_t) std::array<std::byte, 512> _bytes;
    bool _used = false;
};

/// `handler`, which takes its place in an executor in `memory`: handing it over cannot fail.
template <class Handler>
auto onReserve(HandlerMemory& memory, Handler handler) {
    return boost::asio::bind_allocator(std::pmr::polymorphic_allocator<std::byte>(&memory),
                                       std::move(handler));
}

} // namespace embedded::http
