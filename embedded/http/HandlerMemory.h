// Reserved memory for handlers that must reach their executor even when the heap is exhausted.
#pragma once

#include <boost/asio/bind_allocator.hpp>

#include <array>
#include <cstddef>
#include <memory_resource>
#include <new>
#include <utility>

namespace embedded::http {

/// Room for one handler that waits in an executor. A second handler, or one that is too large, is
/// allocated on the heap.
///
/// Thread-safety: an executor frees a handler's memory before it calls the handler, so the handler
/// may use this object again, on any thread.
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

/// `handler`, to be allocated in `memory`: posting it cannot fail.
template <class Handler>
auto onReserve(HandlerMemory& memory, Handler handler) {
    return boost::asio::bind_allocator(std::pmr::polymorphic_allocator<std::byte>(&memory),
                                       std::move(handler));
}

} // namespace embedded::http
