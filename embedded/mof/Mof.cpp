#include "mof/Mof.h"

#include "mof/Reading.h"

namespace embedded::mof {

std::string Location::text() const {
    return (file ? *file : std::string()) + ":" + std::to_string(line) + ":" +
           std::to_string(column);
}

MofError::MofError(const Location& where, const std::string& message)
    : std::runtime_error(where.text() + ": " + message), _where(where) {}

Specification readFile(const std::filesystem::path& file,
                       const std::vector<std::filesystem::path>& includeDirectories) {
    Reading reading(includeDirectories);
    reading.readFile(file);
    return reading.take();
}

Specification readText(const std::string& text, const std::string& name,
                       const std::vector<std::filesystem::path>& includeDirectories) {
    Reading reading(includeDirectories);
    reading.readText(text, name);
    return reading.take();
}

} // namespace embedded::mof
