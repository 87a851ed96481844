// Memory that is there when the heap has none left, for what must be handed on all the same.
#pragma once

#include <boost/asio/bind_allocator.hpp>

#include <array>
#include <cstddef>
#include <new>
#include <utility>

namespace embedded::http {

/// Room for one handler at a time that is given to an executor; a second one, or one that is too
/// large, takes what the heap has.
///
/// Thread-safety: what waits in an executor leaves the memory before it is called, so whoever is
/// called may use it again, on any thread.
class HandlerMemory {
  public:
    HandlerMemory() = default;
    HandlerMemory(const HandlerMemory&) = delete;
    HandlerMemory& operator=(const HandlerMemory&) = delete;

    void* allocate(std::size_t size) {
        // Not tested: nothing here is as large, and nothing is handed on twice at once.
        if (_used || size > _bytes.size())
            return ::operator new(size);
        _used = true;
        return _bytes.data();
    }
    void release(void* memory) noexcept {
        if (memory == _bytes.data())
            _used = false;
        else
            ::operator delete(memory);
    }

  private:
    alignas(std::max_align_t) std::array<std::byte, 512> _bytes;
    bool _used = false;
};

/// Allocates in a HandlerMemory.
template <class Value>
class HandlerAllocator {
  public:
    using value_type = Value;

    explicit HandlerAllocator(HandlerMemory& memory) : _memory(&memory) {}
    template <class Other>
    HandlerAllocator(const HandlerAllocator<Other>& other) noexcept : _memory(other.memory()) {}

    Value* allocate(std::size_t count) {
        return static_cast<Value*>(_memory->allocate(count * sizeof(Value)));
    }
    void deallocate(Value* place, std::size_t) noexcept { _memory->release(place); }
    HandlerMemory* memory() const { return _memory; }

    template <class Other>
    bool operator==(const HandlerAllocator<Other>& other) const {
        return _memory == other.memory();
    }
    template <class Other>
    bool operator!=(const HandlerAllocator<Other>& other) const {
        return !(*this == other);
    }

  private:
    HandlerMemory* _memory;
};

/// `handler`, which takes its place in an executor in `memory`: handing it over cannot fail.
template <class Handler>
auto onReserve(HandlerMemory& memory, Handler handler) {
    return boost::asio::bind_allocator(HandlerAllocator<void>(memory), std::move(handler));
}

} // namespace embedded::http
