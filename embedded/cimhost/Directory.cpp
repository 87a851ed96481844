#include "cimhost/Directory.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace embedded::cimhost {
namespace {

constexpr int noLink = O_NOFOLLOW | O_CLOEXEC;

} // namespace

Directory::Directory(std::filesystem::path path)
    : _path(path.empty() ? std::filesystem::path(".") : std::move(path)),
      _directory(::open(_path.c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC)) {
    if (_directory < 0)
        throw std::system_error(errno, std::generic_category(),
                                "cannot open the directory " + _path.string());
}

Directory::~Directory() { ::close(_directory); }

void Directory::create(const std::string& name, std::string_view text, unsigned mode) const {
    const int file = ::openat(_directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | noLink, mode);
    if (file < 0)
        fail("create", name);
    write(file, name, text);
}

void Directory::append(const std::string& name, std::string_view text) const {
    const int file = ::openat(_directory, name.c_str(), O_WRONLY | O_APPEND | noLink);
    if (file < 0)
        fail("open", name);
    write(file, name, text);
}

void Directory::rename(const std::string& name, const std::string& newName) const {
    if (::renameat(_directory, name.c_str(), _directory, newName.c_str()) != 0)
        fail("rename to " + newName, name);
}

void Directory::remove(const std::string& name) const {
    if (::unlinkat(_directory, name.c_str(), 0) != 0 && errno != ENOENT)
        fail("remove", name);
}

std::string Directory::content(const std::string& name) const {
    const int file = ::openat(_directory, name.c_str(), O_RDONLY | O_NONBLOCK | noLink);
    if (file < 0)
        return {};
    std::array<char, 4096> bytes{};
    const ssize_t size = ::read(file, bytes.data(), bytes.size());
    ::close(file);
    return {bytes.data(), size < 0 ? 0 : static_cast<std::size_t>(size)};
}

// Closes `file`.
void Directory::write(int file, const std::string& name, std::string_view text) const {
    int error = 0;
    while (error == 0 && !text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            error = errno;
    }
    if (::close(file) != 0 && error == 0)
        error = errno;
    if (error != 0) {
        errno = error;
        fail("write", name);
    }
}

void Directory::fail(const std::string& what, const std::string& name) const {
    throw std::system_error(errno, std::generic_category(),
                            "cannot " + what + " " + (_path / name).string());
}

} // namespace embedded::cimhost
