#include "host/ProviderLibrary.h"

#include <dlfcn.h>

#include <stdexcept>
#include <system_error>

namespace embedded::host {

std::string libraryFileName(const std::string& location) {
    return "lib" + location + ".so";
}

std::optional<std::filesystem::path>
findLibrary(const std::vector<std::filesystem::path>& directories, const std::string& location) {
    for (const std::filesystem::path& directory : directories) {
        const std::filesystem::path file = directory / libraryFileName(location);
        std::error_code unreadable;
        if (std::filesystem::exists(file, unreadable)) {
            return file;
        }
    }
    return std::nullopt;
}

ProviderLibrary::ProviderLibrary(const std::filesystem::path& file, bool keepOpen, Binding binding)
    : _handle(dlopen(file.c_str(), (binding == Binding::Now ? RTLD_NOW : RTLD_LAZY) | RTLD_GLOBAL)),
      _keepOpen(keepOpen) {
    if (_handle == nullptr) {
        const char* const reason = dlerror();
        throw std::runtime_error(std::string("Cannot load library, error: ") +
                                 (reason != nullptr ? reason : "unknown"));
    }
}

ProviderLibrary::~ProviderLibrary() {
    if (!_keepOpen) {
        dlclose(_handle);
    }
}

ProviderLibrary::CreateProvider ProviderLibrary::entryPoint() const {
    void* const symbol = dlsym(_handle, "PegasusCreateProvider");
    if (symbol == nullptr) {
        throw std::runtime_error("entry point not found.");
    }
    return reinterpret_cast<CreateProvider>(symbol);
}

} // namespace embedded::host
