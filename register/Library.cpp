#include "register/Situation.h"

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

// Where servers keep provider libraries unless they are told otherwise: below PEGASUS_HOME, and
// where the distributions have them.
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

// What is wrong with a library, and what to do; both empty if the server will be able to load it.
struct Problem {
    std::string text;
    std::string advice;
};

// Tries in a process of its own, which the library may take down, with what the server's libraries
// (beside `tools`) offer.
Problem probeLibrary(const fs::path& file, const fs::path& tools, std::chrono::seconds timeout) {
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

// A library of that name; `given`: that one, if it is the one that the server finds.
void checkLibrary(const Job& job, const std::string& name, const fs::path& given,
                  const std::vector<fs::path>& configured) {
    const auto& [settings, content, server, report] = job;
    const auto& directories = configured.empty() ? usualProviderDirectories() : configured;
    const std::vector<std::string> names(directories.begin(), directories.end());
    const fs::path found = findFile(name, directories, false);
    const fs::path library = given.empty() ? found : given;
    std::error_code ignored;
    if (library.empty()) {
        report.wrong("the server finds no " + name + " in " + joined(names),
                     "copy it there, or add its directory to the server's providerDir "
                     "(cimconfig -s providerDir=... -c)");
        return;
    }
    if (!configured.empty() && !fs::equivalent(library, found, ignored)) {
        report.wrong(library.string() + " is not what the server loads; that is " +
                         (found.empty() ? "nothing in " + joined(names) : found.string()),
                     "copy it there as " + name +
                         ", or add its directory to the server's "
                         "providerDir (cimconfig -s providerDir=... -c)");
        return;
    }
    const Problem problem =
        probeLibrary(library, server.cimcli, std::chrono::seconds(settings.timeout));
    if (problem.text.empty())
        report.ok("the server can load " + library.string());
    else
        report.wrong(library.string() + " " + problem.text, problem.advice);
}

} // namespace

void checkLibraries(const Job& job) {
    const auto& [settings, content, server, report] = job;
    const std::vector<fs::path> configured = server.providerDirectories();
    bool taken = settings.library.empty();
    for (const Module& module : content.modules) {
        const std::string name = module.registration.library();
        const bool given = !taken && (fs::path(settings.library).filename() == name ||
                                      &module == &content.modules.back());
        taken |= given;
        checkLibrary(job, name, given ? settings.library : "", configured);
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
