#include "register/Library.h"

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <iostream>

namespace registering {
namespace fs = std::filesystem;

namespace {

constexpr const char* entryPoint = "PegasusCreateProvider";

// What the probing process ends with.
constexpr int loadable = 0;
constexpr int notLoadable = 10;
constexpr int noEntryPoint = 11;
constexpr int otherServer = 12;

// What a server that runs already has loaded before it loads a module.
std::string libraryPath(const fs::path& tools) {
    std::string path = environment("LD_LIBRARY_PATH");
    std::vector<fs::path> roots{tools.parent_path().parent_path()};
    if (const std::string home = environment("PEGASUS_HOME"); !home.empty())
        roots.emplace_back(home);
    for (const fs::path& root : roots)
        for (const char* name : {"lib", "lib64"})
            path += (path.empty() ? "" : ":") + (root / name).string();
    return path;
}

// What to do about the loader's message.
std::string adviceFor(const std::string& message) {
    const auto says = [&](const char* text) { return message.find(text) != std::string::npos; };
    if (says("undefined symbol"))
        return "it was built for another version of OpenPegasus; build it against this one";
    if (says("cannot open shared object file"))
        return "a library that it needs is not there; if that is not one of OpenPegasus, this may "
               "be the build for cimhost: take the one for OpenPegasus";
    if (says("ELF") || says("file too short"))
        return "it is damaged or built for another machine; install it again";
    return "see the message; install a library that was built for this server";
}

int findServerLibrary(dl_phdr_info* info, std::size_t /*size*/, void* found) {
    if (info->dlpi_name != nullptr && std::strstr(info->dlpi_name, "libpegcommon.so") != nullptr)
        *static_cast<bool*>(found) = true;
    return 0;
}

} // namespace

std::vector<fs::path> usualProviderDirectories() {
    std::vector<fs::path> result;
    if (const fs::path home = environment("PEGASUS_HOME"); !home.empty())
        result = {home / "providers", home / "provider", home / "lib"};
    for (const char* directory :
         {"/usr/lib64/Pegasus/providers", "/usr/lib/Pegasus/providers",
          "/usr/lib/" REGISTER_MULTIARCH "/Pegasus/providers", "/opt/tog-pegasus/providers/lib"})
        result.emplace_back(directory);
    return result;
}

LibraryProblem probeLibrary(const fs::path& file, const fs::path& tools,
                            std::chrono::seconds timeout) {
    std::error_code ignored;
    const fs::path absolute = fs::absolute(file, ignored); // a bare name would be searched for
    const Outcome outcome =
        runProgram({"/usr/bin/env", "LD_LIBRARY_PATH=" + libraryPath(tools),
                    fs::read_symlink("/proc/self/exe", ignored), probeOption, absolute},
                   timeout);
    switch (outcome.exitCode) {
    case loadable:
        return {};
    case notLoadable:
        return {"cannot be loaded: " + outcome.out, adviceFor(outcome.out)};
    case noEntryPoint:
        return {std::string("has no function ") + entryPoint,
                "it is no provider module; install the module's own library"};
    case otherServer:
        return {"is not linked with OpenPegasus (libpegcommon)",
                "this looks like the build for cimhost; take the one for OpenPegasus"};
    default:
        return {"cannot be loaded: loading it " + describe(outcome),
                "install a library that was built for this server"};
    }
}

int probe(const char* file) {
    void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::cout << dlerror() << std::flush;
        return notLoadable;
    }
    if (dlsym(library, entryPoint) == nullptr)
        return noEntryPoint;
    bool found = false;
    dl_iterate_phdr(findServerLibrary, &found);
    return found ? loadable : otherServer;
}

} // namespace registering
