// Reserved memory for handlers that must reach their executor even when the heap is exhausted.
#pragma once

#include <boost/asio/bind_allocator.hpp>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory_resource>
#include <new>
#include <utility>

namespace embedded::http {

/// Room for one handler that waits in an executor. A second handler, or one that is too large, is
/// allocated on the heap.
///
/// Thread-safety: any thread may post a handler. An executor frees a handler's memory before it
/// calls the handler, which may use this object again.
class HandlerMemory : public std::pmr::memory_resource {
  private:
    void* do_allocate(std::size_t size, std::size_t /*alignment*/) override {
        // Not tested: nothing here is as large.
        if (size > _bytes.size() || _used.exchange(true, std::memory_order_acquire))
            return ::operator new(size);
        return _bytes.data();
    }
    void do_deallocate(void* memory, std::size_t /*size*/, std::size_t /*alignment*/) override {
        if (memory == _bytes.data())
            _used.store(false, std::memory_order_release);
        else
            ::operator delete(memory);
    }
    bool do_is_equal(const memory_resource& other) const noexcept override {
        return this == &other;
    }

    alignas(std::max_align_t) std::array<std::byte, 512> _bytes;
    std::atomic<bool> _used{false};
};

/// `handler`, to be allocated in `memory`: posting it cannot fail.
template <class Handler>
auto onReserve(HandlerMemory& memory, Handler handler) {
    return boost::asio::bind_allocator(std::pmr::polymorphic_allocator<std::byte>(&memory),
                                       std::move(handler));
}

} // namespace embedded::http
