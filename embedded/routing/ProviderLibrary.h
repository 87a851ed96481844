// The shared library of a provider module.
#pragma once

#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace embedded::routing {

/// "lib<location>.so"
std::string libraryFileName(const std::string& location);

/// The library of that location in the first of `directories` that has one.
std::optional<std::filesystem::path>
findLibrary(const std::vector<std::filesystem::path>& directories, const std::string& location);

/// Keeps a library open while it lives. Thread-safety: none beyond that of constness.
class ProviderLibrary {
  public:
    using CreateProvider = Pegasus::CIMProvider* (*)(const Pegasus::String& providerName);

    /// Resolves all symbols now, and refuses a file that is cut off, because a call of a missing
    /// symbol would end the process. Other modules see the symbols, as in other CIM servers. With
    /// `keepOpen` the library stays mapped for the rest of the process.
    /// Throws std::runtime_error "Cannot load library, error: <dlerror>".
    explicit ProviderLibrary(const std::filesystem::path& file, bool keepOpen = false);
    ~ProviderLibrary();
    ProviderLibrary(const ProviderLibrary&) = delete;
    ProviderLibrary& operator=(const ProviderLibrary&) = delete;

    /// PegasusCreateProvider. Throws std::runtime_error "entry point not found.".
    CreateProvider entryPoint() const;

  private:
    void* _handle;
    const bool _keepOpen;
};

} // namespace embedded::routing
