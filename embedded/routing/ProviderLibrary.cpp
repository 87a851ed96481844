#include "routing/ProviderLibrary.h"

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace embedded::routing {

namespace {

const std::string cannotLoad = "Cannot load library, error: ";

// The loader maps what the file says that it has. If the file has been cut off, the process ends
// when it looks there. What is no library of this machine is left to the loader.
void requireWhole(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    ElfW(Ehdr) header{};
    if (!in.read(reinterpret_cast<char*>(&header), sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_ident[EI_CLASS] != (sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32))
        return;
    const std::uintmax_t size = std::filesystem::file_size(file);
    in.seekg(static_cast<std::streamoff>(header.e_phoff));
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) segment{};
        if (!in.read(reinterpret_cast<char*>(&segment), sizeof segment) ||
            segment.p_filesz > size || segment.p_offset > size - segment.p_filesz)
            throw std::runtime_error(cannotLoad + file.string() + ": file is cut off");
    }
}

void* opened(const std::filesystem::path& file) {
    requireWhole(file);
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (handle == nullptr) {
        const char* const reason = dlerror();
        throw std::runtime_error(cannotLoad + (reason != nullptr ? reason : "unknown"));
    }
    return handle;
}

} // namespace

std::string libraryFileName(const std::string& location) { return "lib" + location + ".so"; }

std::optional<std::filesystem::path>
findLibrary(const std::vector<std::filesystem::path>& directories, const std::string& location) {
    for (const std::filesystem::path& directory : directories) {
        const std::filesystem::path file = directory / libraryFileName(location);
        std::error_code unreadable;
        if (std::filesystem::exists(file, unreadable))
            return file;
    }
    return std::nullopt;
}

ProviderLibrary::ProviderLibrary(const std::filesystem::path& file, bool keepOpen)
    : _handle(opened(file)), _keepOpen(keepOpen) {}

ProviderLibrary::~ProviderLibrary() {
    if (!_keepOpen)
        dlclose(_handle);
}

ProviderLibrary::CreateProvider ProviderLibrary::entryPoint() const {
    void* const symbol = dlsym(_handle, "PegasusCreateProvider");
    if (symbol == nullptr)
        throw std::runtime_error("entry point not found.");
    return reinterpret_cast<CreateProvider>(symbol);
}

} // namespace embedded::routing
