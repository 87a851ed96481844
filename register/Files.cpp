#include "register/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

// The names of a whole CIM schema in ten namespaces fit in.
constexpr std::size_t most = 1024UL * 1024;

[[noreturn]] void fail(const fs::path& file, const std::string& why) {
    throw std::runtime_error(file.string() + ": " + why);
}

// An open file, closed with this object.
class Descriptor {
  public:
    explicit Descriptor(int number) : _number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (_number >= 0)
            close(_number);
    }
    int number() const { return _number; }

  private:
    int _number;
};

void writeAll(int descriptor, const std::string& text, const fs::path& file) {
    for (std::size_t at = 0; at < text.size();) {
        const ssize_t count = write(descriptor, text.data() + at, text.size() - at);
        if (count < 0 && errno != EINTR)
            fail(file, std::strerror(errno));
        if (count > 0)
            at += static_cast<std::size_t>(count);
    }
}

} // namespace

std::optional<std::string> readFile(const fs::path& file, bool trusted) {
    const Descriptor descriptor(
        open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | (trusted ? O_NOFOLLOW : 0)));
    if (descriptor.number() < 0 && errno == ENOENT)
        return std::nullopt;
    struct stat found = {};
    if (descriptor.number() < 0 || fstat(descriptor.number(), &found) != 0)
        fail(file, std::strerror(errno));
    if (!S_ISREG(found.st_mode))
        fail(file, "is no regular file");
    if (trusted && (found.st_uid != geteuid() || (found.st_mode & (S_IWGRP | S_IWOTH)) != 0))
        fail(file, "belongs to another user, or others may write it");
    std::string text(most + 1, '\0');
    std::size_t size = 0;
    for (ssize_t count = 1; count != 0 && size < text.size();) {
        count = read(descriptor.number(), text.data() + size, text.size() - size);
        if (count < 0 && errno != EINTR)
            fail(file, std::strerror(errno));
        if (count > 0)
            size += static_cast<std::size_t>(count);
    }
    if (size > most)
        fail(file, "has more than " + std::to_string(most) + " bytes");
    text.resize(size);
    return text;
}

void writeFile(const fs::path& file, const std::string& text, mode_t mode) {
    std::string other = file.string() + ".XXXXXX";
    const Descriptor descriptor(mkostemp(other.data(), O_CLOEXEC));
    if (descriptor.number() < 0)
        fail(file, std::strerror(errno));
    try {
        writeAll(descriptor.number(), text, file);
        if (fchmod(descriptor.number(), mode) != 0 || fsync(descriptor.number()) != 0 ||
            std::rename(other.c_str(), file.c_str()) != 0)
            fail(file, std::strerror(errno));
    } catch (...) {
        unlink(other.c_str());
        throw;
    }
    const Descriptor directory(open(file.parent_path().c_str(), O_RDONLY | O_CLOEXEC));
    if (directory.number() < 0 || fsync(directory.number()) != 0)
        fail(file, std::strerror(errno));
}

} // namespace registering
