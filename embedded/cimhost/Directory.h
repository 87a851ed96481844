// Writes files safely into a directory in which others may write, too.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace embedded::cimhost {

/// A directory that is opened once: later files go there, even if another one has taken its name.
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

    /// Creates the file `name` with `text`. Throws if there is anything of that name, even a link.
    /// `mode` is as for open(), before the umask.
    void create(const std::string& name, std::string_view text, unsigned mode) const;
    /// Appends `text` to the file `name`. Follows no link.
    void append(const std::string& name, std::string_view text) const;
    /// Renames the file `name` to `newName`, and replaces a file of that name.
    void rename(const std::string& name, const std::string& newName) const;
    /// Removes `name`, if it exists; of a link, not the target.
    void remove(const std::string& name) const;
    /// The text of the file `name`, up to 4096 bytes; empty if it is a link or no file.
    std::string content(const std::string& name) const;

  private:
    void write(int file, const std::string& name, std::string_view text) const;
    [[noreturn]] void fail(const std::string& what, const std::string& name) const;

    std::filesystem::path _path; // for messages
    int _directory;
};

} // namespace embedded::cimhost
