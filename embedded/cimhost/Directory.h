// Files that are written for others to read, in a place where others may write, too.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace embedded::cimhost {

/// A directory that is opened once: what is written later goes there, whatever has taken its place.
///
/// Thread-safety: all functions may be called from several threads at once. They throw
/// std::system_error, which names the file.
class Directory {
  public:
    /// Opens `path`; empty: the working directory.
    explicit Directory(std::filesystem::path path);
    ~Directory();
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    /// Makes a file of that name with `text`. An error if there is anything of that name, a link
    /// too. `mode` as of open(), before the umask.
    void create(const std::string& name, std::string_view text, unsigned mode) const;
    /// Writes `text` behind what the file `name` holds. Follows no link.
    void append(const std::string& name, std::string_view text) const;
    /// Gives the file `name` the name `newName`, whose former bearer is gone then.
    void rename(const std::string& name, const std::string& newName) const;
    /// Removes what is called `name`, the link rather than its target; nothing, if there is
    /// nothing.
    void remove(const std::string& name) const;
    /// What the file `name` holds, up to 4096 bytes; empty if it is no file or a link.
    std::string content(const std::string& name) const;

  private:
    void write(int file, const std::string& name, std::string_view text) const;
    [[noreturn]] void fail(const std::string& what, const std::string& name) const;

    std::filesystem::path _path; // for messages
    int _directory;
};

} // namespace embedded::cimhost
