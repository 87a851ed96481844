#include "register/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

// The names of a whole CIM schema in ten namespaces fit in.
constexpr std::size_t most = 1024UL * 1024;

[[noreturn]] void fail(const fs::path& file, const std::string& why) {
    throw std::runtime_error(file.string() + ": " + why);
}

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

} // namespace

std::optional<std::string> readFile(const fs::path& file, bool trusted) {
    const int number =
        open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | (trusted ? O_NOFOLLOW : 0));
    if (number < 0 && errno == ENOENT)
        return std::nullopt;
    const Stream stream(number < 0 ? nullptr : fdopen(number, "r"), std::fclose);
    struct stat found = {};
    if (!stream || fstat(number, &found) != 0)
        fail(file, std::strerror(errno));
    if (!S_ISREG(found.st_mode))
        fail(file, "is no regular file");
    if (trusted && (found.st_uid != geteuid() || (found.st_mode & (S_IWGRP | S_IWOTH)) != 0))
        fail(file, "belongs to another user, or others may write it");
    std::string text(most + 1, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
    if (std::ferror(stream.get()) != 0)
        fail(file, std::strerror(errno));
    if (text.size() > most)
        fail(file, "has more than " + std::to_string(most) + " bytes");
    return text;
}

void writeFile(const fs::path& file, const std::string& text, mode_t mode) {
    std::string other = file.string() + ".XXXXXX";
    const int number = mkostemp(other.data(), O_CLOEXEC);
    const Stream stream(number < 0 ? nullptr : fdopen(number, "w"), std::fclose);
    if (!stream)
        fail(file, std::strerror(errno));
    if (std::fwrite(text.data(), 1, text.size(), stream.get()) != text.size() ||
        std::fflush(stream.get()) != 0 || fchmod(number, mode) != 0 || fsync(number) != 0 ||
        std::rename(other.c_str(), file.c_str()) != 0) {
        const int why = errno;
        unlink(other.c_str());
        fail(file, std::strerror(why));
    }
    const int directory = open(file.parent_path().c_str(), O_RDONLY | O_CLOEXEC);
    const bool kept = directory >= 0 && fsync(directory) == 0;
    const int why = errno;
    close(directory);
    if (!kept)
        fail(file, std::strerror(why));
}

} // namespace registering
