#include "users/UsersFile.h"

#include "limits/Limits.h"
#include "text/Utf8.h"
#include "users/Password.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace embedded::users {
namespace {

constexpr std::size_t largest = 4 * limits::MiB;

[[noreturn]] void fail(const std::string& file, const std::string& why) {
    throw UsersFileError(file + ": " + why);
}

[[noreturn]] void failWithErrno(const std::string& file, const std::string& what) {
    const std::error_code error(errno, std::generic_category());
    fail(file, what + ": " + error.message());
}

/// An open file or directory.
class Descriptor {
  public:
    explicit Descriptor(int number) : _number(number) {}
    ~Descriptor() {
        if (_number >= 0)
            ::close(_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int operator*() const { return _number; }
    explicit operator bool() const { return _number >= 0; }

  private:
    const int _number;
};

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

bool isComment(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos || line.front() == '#';
}

/// The user of a line that is no comment, or what is wrong with it.
std::pair<User, std::string> userOf(std::string_view line) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first == std::string_view::npos ? first : first + 1);
    if (second == std::string_view::npos)
        return {{}, "NAME:ROLE:HASH is expected"};
    User user{std::string(line.substr(0, first)), Role::Read, std::string(line.substr(second + 1))};
    const std::string_view role = line.substr(first + 1, second - first - 1);
    if (role == roleName(Role::Write))
        user.role = Role::Write;
    else if (role != roleName(Role::Read))
        return {{}, "the role is read or write"};
    std::string fault = nameFault(user.name);
    if (fault.empty() && user.hash != noPassword)
        fault = hashFault(user.hash);
    return {std::move(user), std::move(fault)};
}

/// What the open file holds. `name` is for errors.
std::string content(int file, const std::string& name) {
    std::string text;
    std::array<char, 16 * limits::KiB> bytes;
    for (;;) {
        const ssize_t size = ::read(file, bytes.data(), bytes.size());
        if (size == 0)
            return text;
        if (size > 0)
            text.append(bytes.data(), static_cast<std::size_t>(size));
        else if (errno != EINTR)
            failWithErrno(name, "cannot be read");
        if (text.size() > largest)
            fail(name, "is larger than " + std::to_string(largest) + " bytes");
    }
}

void writeAll(int file, std::string_view text, const std::string& name) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            failWithErrno(name, "cannot be written");
    }
}

/// Whoever could write it could be anybody, whoever could read it could try passwords.
struct stat requirePrivate(int file, const std::string& name) {
    struct stat status {};
    if (::fstat(file, &status) != 0)
        failWithErrno(name, "cannot be looked at");
    if (!S_ISREG(status.st_mode))
        fail(name, "is not a file");
    if ((status.st_mode & (S_IWGRP | S_IWOTH | S_IROTH)) != 0)
        fail(name, "others may read or write it, and so try passwords or be whom they like; "
                   "chmod 600 (or 640) " +
                       name);
    if (status.st_uid != 0 && status.st_uid != ::geteuid())
        fail(name, "belongs to another user, who could write it; chown it to root or to the user "
                   "that this program runs as");
    return status;
}

/// A change of the file, from the first look to the last step, during which no other process
/// makes one.
class Change {
  public:
    explicit Change(const std::filesystem::path& file)
        : _shown(file.string()), _name(file.filename().string()),
          _directory(::open(file.has_parent_path() ? file.parent_path().c_str() : ".",
                            O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (!_directory)
            failWithErrno(_shown, "its directory cannot be opened");
        if (_name.empty() || _name == "." || _name == "..")
            fail(_shown, "is not the name of a file");
        // The file itself is another one after each change.
        while (::flock(*_directory, LOCK_EX) != 0)
            if (errno != EINTR)
                failWithErrno(_shown, "its directory cannot be locked");
        const Descriptor old(
            ::openat(*_directory, _name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (!old && errno == ELOOP)
            fail(_shown, "is a link; name the file itself");
        if (!old && errno != ENOENT)
            failWithErrno(_shown, "cannot be opened");
        if (!old)
            return;
        _status = requirePrivate(*old, _shown);
        _text = content(*old, _shown);
        _users = usersIn(_text, _shown);
    }

    const std::string& text() const { return _text; }
    const std::vector<User>& users() const { return _users; }

    void write(std::string_view text) const {
        const std::string unfinished = _name + ".new";
        ::unlinkat(*_directory, unfinished.c_str(), 0); // of one that was interrupted
        const Descriptor made(::openat(*_directory, unfinished.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       S_IRUSR | S_IWUSR));
        if (!made)
            failWithErrno(_shown, "cannot make a new one beside it");
        try {
            if (_status) {
                if (::fchown(*made, _status->st_uid, _status->st_gid) != 0)
                    failWithErrno(_shown, "its owner cannot be kept");
                if (::fchmod(*made, _status->st_mode & 07777U) != 0)
                    failWithErrno(_shown, "its mode cannot be kept");
            }
            writeAll(*made, text, _shown);
            if (::fsync(*made) != 0)
                failWithErrno(_shown, "cannot be written");
            if (::renameat(*_directory, unfinished.c_str(), *_directory, _name.c_str()) != 0)
                failWithErrno(_shown, "cannot be replaced");
        } catch (...) {
            ::unlinkat(*_directory, unfinished.c_str(), 0);
            throw;
        }
        ::fsync(*_directory); // what it was is as good if this does not last
    }

  private:
    const std::string _shown; // for messages
    const std::string _name;
    const Descriptor _directory;
    std::optional<struct stat> _status; // none: there is no file yet
    std::string _text;
    std::vector<User> _users;
};

/// `text` with the line of the user called `name` replaced by `line`, or removed if that is empty,
/// or with `line` behind it if there is none. And whether there was one.
std::pair<std::string, bool> edited(std::string_view text, const std::string& name,
                                    const std::string& line) {
    std::string result;
    bool found = false;
    while (!text.empty()) {
        const std::string_view old = takeLine(text);
        const bool isHis = !isComment(old) && old.substr(0, old.find(':')) == name;
        found = found || isHis;
        if (isHis)
            result += line;
        else
            result.append(old).append("\n");
    }
    if (!found)
        result += line;
    return {std::move(result), found};
}

} // namespace

const char* roleName(Role role) { return role == Role::Write ? "write" : "read"; }

std::string nameFault(std::string_view name) {
    if (name.empty())
        return "a user has a name";
    if (name.size() > limits::userName)
        return "a name has " + std::to_string(limits::userName) + " bytes at most";
    if (text::findInvalidUtf8(name) != std::string_view::npos)
        return "a name has to be UTF-8";
    if (text::visible(name) != name)
        return "a name has no control characters";
    if (name.find(':') != std::string_view::npos)
        return "a name has no colon";
    if (name.front() == '#' || name.front() == ' ' || name.back() == ' ')
        return "a name neither begins with # or a blank nor ends with a blank";
    return {};
}

std::vector<User> usersIn(std::string_view text, const std::string& file) {
    std::vector<User> users;
    std::set<std::string> names;
    for (unsigned number = 1; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        if (isComment(line))
            continue;
        auto [user, fault] = userOf(line);
        if (fault.empty() && !names.insert(user.name).second)
            fault = "user " + user.name + " comes twice";
        if (!fault.empty()) // without the line: there is a hash in it
            fail(file + ":" + std::to_string(number), fault);
        users.push_back(std::move(user));
    }
    return users;
}

std::vector<User> readUsers(const std::filesystem::path& file) {
    const std::string name = file.string();
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!opened)
        failWithErrno(name, "cannot be opened");
    requirePrivate(*opened, name);
    return usersIn(content(*opened, name), name);
}

void putUser(const std::filesystem::path& file, const std::string& name, std::optional<Role> role,
             const std::string& hash) {
    const Change change(file);
    for (const User& user : change.users())
        if (user.name == name && !role)
            role = user.role;
    const std::string line = name + ":" + roleName(role.value_or(Role::Read)) + ":" + hash;
    const auto [user, fault] = userOf(line);
    if (!fault.empty() || user.name != name)
        fail(file.string(), fault.empty() ? nameFault(name) : fault);
    change.write(edited(change.text(), name, line + "\n").first);
}

void removeUser(const std::filesystem::path& file, const std::string& name) {
    const Change change(file);
    const auto [text, found] = edited(change.text(), name, "");
    if (!found)
        fail(file.string(), "there is no user " + name);
    change.write(text);
}

} // namespace embedded::users
