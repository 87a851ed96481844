#include "register/Steps.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace registering {
namespace fs = std::filesystem;

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

} // namespace registering
