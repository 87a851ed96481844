// A library to be preloaded: what a process asks the system and the C library for fails when
// somebody outside says so, through a file that both have mapped (FAILING names it; faults.py
// writes it).
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#ifndef FAILING_ONLY_NEW
extern "C" void* __libc_malloc(std::size_t);
extern "C" void* __libc_calloc(std::size_t, std::size_t);
extern "C" void* __libc_realloc(void*, std::size_t);
extern "C" void* __libc_memalign(std::size_t, std::size_t);
#endif

namespace {

using Number = std::atomic<std::int64_t>;

// As faults.py has it: each a number of 64 bits.
struct Control {
    Number allocations; // asked for so far
    Number nth;         // > 0: so many allocations from now one fails
    Number every;       // > 0: of so many allocations one fails
    Number failed;      // allocations that failed
    Number few;         // > 0: no more bytes at a time go to a file; sockets have small buffers
    Number interrupt;   // > 0: one of so many reads, writes and waits is interrupted
    Number interrupted; // that were
    Number accept;      // the error of accepting a connection
    Number send;        // the error of sending to a connection
    Number receive;     // the error of receiving from one
    Number write;       // the error of writing to a file or a pipe
    Number refused;     // calls that ended with one of these errors
    Number clock;       // seconds by which the clocks are ahead
};

Control nothing;

Control& control() {
    static std::atomic<Control*> mapped{nullptr};
    static std::atomic<bool> mapping{false};
    if (Control* const known = mapped)
        return *known;
    if (mapping.exchange(true))
        return nothing;
    Control* found = &nothing;
    const char* const file = std::getenv("FAILING");
    const int descriptor = file ? ::open(file, O_RDWR | O_CLOEXEC) : -1;
    if (descriptor >= 0) {
        void* const memory =
            ::mmap(nullptr, sizeof(Control), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        if (memory != MAP_FAILED)
            found = static_cast<Control*>(memory);
        ::close(descriptor);
    }
    mapped = found;
    return *found;
}

bool fails() {
    Control& asked = control();
    const std::int64_t number = ++asked.allocations;
    bool now = asked.nth > 0 && --asked.nth == 0;
    const std::int64_t every = asked.every;
    now = now || (every > 0 && number % every == 0);
    if (now) {
        ++asked.failed;
        errno = ENOMEM;
    }
    return now;
}

bool interrupted() {
    static Number count;
    Control& asked = control();
    const std::int64_t every = asked.interrupt;
    if (every <= 0 || ++count % every != 0)
        return false;
    ++asked.interrupted;
    errno = EINTR;
    return true;
}

// Sockets give and take few bytes at a time when their buffers are small. It would not do to ask
// the kernel for fewer than the caller does: who has been given less than asked for may rely on
// being told when there is more (epoll, EPOLLET).
int small(int descriptor) {
    const int size = 1; // the kernel makes it the least that it has
    if (descriptor >= 0 && control().few > 0) {
        ::setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
        ::setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
    }
    return descriptor;
}

bool refuses(const Number& error) {
    const std::int64_t value = error;
    if (value == 0)
        return false;
    ++control().refused;
    errno = static_cast<int>(value);
    return true;
}

bool isFile(int descriptor) {
    struct stat what {};
    return ::fstat(descriptor, &what) == 0 && (S_ISREG(what.st_mode) || S_ISFIFO(what.st_mode));
}

} // namespace

#ifdef FAILING_ONLY_NEW

// Beside a sanitizer, which has its own malloc.
void* operator new(std::size_t size) {
    void* const memory = fails() ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return fails() ? nullptr : std::malloc(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return fails() ? nullptr : std::malloc(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

#else

extern "C" {
void* malloc(std::size_t size) { return fails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) {
    return fails() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
    return fails() ? nullptr : __libc_realloc(memory, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
    return fails() ? nullptr : __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return fails() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    *memory = fails() ? nullptr : __libc_memalign(alignment, size);
    return *memory ? 0 : ENOMEM;
}
}

#endif

// The C library's own function of that name, under ours.
#define NEXT(function)                                                                             \
    static auto* const next = reinterpret_cast<decltype(&::function)>(dlsym(RTLD_NEXT, #function))

extern "C" {

ssize_t recv(int descriptor, void* bytes, std::size_t size, int flags) {
    NEXT(recv);
    return refuses(control().receive) || interrupted() ? -1 : next(descriptor, bytes, size, flags);
}

ssize_t recvmsg(int descriptor, msghdr* message, int flags) {
    NEXT(recvmsg);
    return refuses(control().receive) || interrupted() ? -1 : next(descriptor, message, flags);
}

ssize_t send(int descriptor, const void* bytes, std::size_t size, int flags) {
    NEXT(send);
    return refuses(control().send) || interrupted() ? -1 : next(descriptor, bytes, size, flags);
}

ssize_t sendmsg(int descriptor, const msghdr* message, int flags) {
    NEXT(sendmsg);
    return refuses(control().send) || interrupted() ? -1 : next(descriptor, message, flags);
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    NEXT(write);
    if (!isFile(descriptor))
        return next(descriptor, bytes, size);
    if (refuses(control().write) || interrupted())
        return -1;
    const auto few = static_cast<std::size_t>(control().few);
    return next(descriptor, bytes, few != 0 && few < size ? few : size);
}

int accept(int descriptor, sockaddr* address, socklen_t* size) {
    NEXT(accept);
    return refuses(control().accept) || interrupted() ? -1 : small(next(descriptor, address, size));
}

int accept4(int descriptor, sockaddr* address, socklen_t* size, int flags) {
    NEXT(accept4);
    return refuses(control().accept) || interrupted()
               ? -1
               : small(next(descriptor, address, size, flags));
}

int epoll_wait(int descriptor, epoll_event* events, int count, int timeout) {
    NEXT(epoll_wait);
    return interrupted() ? -1 : next(descriptor, events, count, timeout);
}

int poll(pollfd* descriptors, nfds_t count, int timeout) {
    NEXT(poll);
    return interrupted() ? -1 : next(descriptors, count, timeout);
}

int clock_gettime(clockid_t clock, timespec* time) {
    NEXT(clock_gettime);
    const int result = next(clock, time);
    if (clock == CLOCK_REALTIME || clock == CLOCK_MONOTONIC)
        time->tv_sec += control().clock;
    return result;
}
}
