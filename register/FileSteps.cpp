#include "register/Commands.h"

#include "register/Files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace registering {
namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& file) {
    throw std::runtime_error(file.string() + ": " + std::strerror(errno));
}

void makeDirectory(const fs::path& directory) {
    // Whatever the umask: the server may run as another user.
    if (mkdir(directory.c_str(), 0755) != 0 || chmod(directory.c_str(), 0755) != 0)
        fail(directory);
}

// What is none, or no longer empty, stays.
void dropDirectory(const fs::path& directory) {
    if (rmdir(directory.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR &&
        errno != ENOTEMPTY && errno != EEXIST)
        fail(directory);
}

void dropFile(const fs::path& file) {
    if (unlink(file.c_str()) != 0 && errno != ENOENT)
        fail(file);
}

} // namespace

Scratch::Scratch() {
    std::string name = fs::temp_directory_path() / "serverprofile-register.XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    _directory = name;
}

Scratch::~Scratch() {
    std::error_code ignored;
    if (!_keep)
        fs::remove_all(_directory, ignored);
}

fs::path Scratch::write(const std::string& name, const std::string& text) const {
    fs::path file = _directory / name;
    std::ofstream stream(file, std::ios::binary);
    stream << text << std::flush;
    if (!stream)
        throw std::runtime_error("cannot write " + file.string());
    return file;
}

std::vector<fs::path> directoriesMissing(const fs::path& file) {
    std::vector<fs::path> result;
    std::error_code ignored;
    for (fs::path at = file.parent_path(); !fs::exists(at, ignored) && at != at.parent_path();
         at = at.parent_path())
        result.push_back(at);
    return result;
}

void changeFile(const Work& work, const std::string& what, const fs::path& file,
                const std::optional<std::string>& text, mode_t mode, const std::string& unlessAll) {
    const std::optional<std::string> former = readFile(file);
    struct stat formerly = {};
    if (former && stat(file.c_str(), &formerly) != 0)
        fail(file);
    const std::vector<fs::path> made = directoriesMissing(file);
    const mode_t formerMode = formerly.st_mode & 07777;
    const std::string byHand =
        former ? commandText({"cp", work.scratch.write(file.filename(), *former), file})
               : commandText({"rm", "-f", file});
    work.transaction.step(
        what,
        [&] {
            if (work.settings.dryRun)
                return;
            for (auto directory = made.rbegin(); directory != made.rend(); ++directory)
                makeDirectory(*directory);
            if (text)
                writeFile(file, *text, mode);
            else
                dropFile(file);
        },
        {former ? "giving " + file.string() + " back" : "deleting " + file.string() + " again",
         [file, former, formerMode, made] {
             if (former)
                 writeFile(file, *former, formerMode);
             else
                 dropFile(file);
             for (const fs::path& directory : made)
                 dropDirectory(directory);
         },
         byHand, unlessAll});
}

void deleteDirectory(const Work& work, const fs::path& directory) {
    std::error_code ignored;
    if (!fs::is_directory(directory, ignored))
        return;
    work.transaction.step("deleting the directory " + directory.string() + " if it is empty",
                          [&] {
                              if (!work.settings.dryRun)
                                  dropDirectory(directory);
                          },
                          {"making the directory " + directory.string() + " again",
                           [directory] {
                               std::error_code none;
                               if (!fs::exists(directory, none))
                                   makeDirectory(directory);
                           },
                           commandText({"mkdir", directory})});
}

} // namespace registering
