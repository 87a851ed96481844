#include "cimhost/CommandLine.h"
#include "cimhost/Log.h"
#include "cimhost/OwnObjects.h"
#include "cimhost/Serving.h"
#include "embedding/Text.h"
#include "mof/Mof.h"
#include "routing/ProviderLibrary.h"
#include "routing/Registration.h"
#include "routing/Values.h"
#include "users/Accounts.h"

#include <Pegasus/Common/Exception.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <fcntl.h>
#include <iostream>
#include <malloc.h>
#include <memory>
#include <netdb.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace embedded::cimhost {
namespace {

using Pegasus::embedding::utf8;

// The namespaces and the MOF files, in order. Throws mof::MofError.
void load(const Settings& settings, repository::Repository& repository) {
    repository.createNameSpace(settings.interop);
    for (const Pegasus::CIMNamespaceName& nameSpace : settings.nameSpaces)
        repository.createNameSpace(nameSpace);
    for (const MofFile& mof : settings.mofFiles) {
        repository.createNameSpace(mof.nameSpace); // even if the file declares nothing
        repository.load(mof::readFile(mof.file, settings.mofIncludes), mof.nameSpace);
    }
    // Reading takes several times the memory of what is kept, and lies in between it: the C library
    // gives that back only when it is told to.
    malloc_trim(0);
}

// Whether some namespace has the class of each fault. Another class is most likely misspelt: no
// question of a provider would ever meet its fault.
bool knowsClassesOf(const std::vector<routing::Fault>& faults, const repository::View& view) {
    const std::vector<Pegasus::CIMNamespaceName> nameSpaces = view.nameSpaces();
    bool all = true;
    for (const routing::Fault& fault : faults) {
        const auto hasClass = [&](const auto& each) {
            return view.hasClass(each, fault.className);
        };
        if (fault.className.isNull() || std::any_of(nameSpaces.begin(), nameSpaces.end(), hasClass))
            continue;
        all = false;
        spdlog::error(
            "--fault \"{}\": no namespace has a class {}; check its spelling, or load the "
            "MOF file that declares it",
            describe(fault), utf8(fault.className));
    }
    return all;
}

std::string listed(const std::vector<std::string>& texts) {
    return routing::joined(
        texts, [](const std::string& text) { return text; });
}

void addOnce(std::vector<std::string>& texts, const std::string& text) {
    if (std::find(texts.begin(), texts.end(), text) == texts.end())
        texts.push_back(text);
}

std::string nameSpaceLine(const repository::View& view, const Pegasus::CIMNamespaceName& nameSpace,
                          bool isInterop) {
    const auto classes = view.subClassNames(nameSpace, Pegasus::CIMName(), true);
    std::size_t instances = 0;
    for (const Pegasus::CIMName& className : classes)
        instances += view.instances(nameSpace, className).size();
    return "namespace " + utf8(nameSpace) + (isInterop ? " (interop): " : ": ") +
           std::to_string(classes.size()) + " classes, " + std::to_string(instances) + " instances";
}

// What one provider answers for: by class, in the order of registration.
struct Offers {
    struct Offer {
        std::string className;
        std::vector<std::string> types;
        std::vector<std::string> nameSpaces;
    };
    std::vector<Offer> classes;
    std::map<std::string, std::size_t> places; // by name, in `classes`
};

std::map<routing::ProviderName, Offers> offersOf(const routing::Registration& registration) {
    std::map<routing::ProviderName, Offers> all;
    for (const routing::Capability& capability : registration.capabilities()) {
        Offers& offers = all[capability.provider];
        const std::string className = utf8(capability.className);
        const auto [known, isNew] = offers.places.emplace(className, offers.classes.size());
        if (isNew)
            offers.classes.push_back({className, {}, {}});
        addOnce(offers.classes[known->second].types, routing::nameOf(capability.type));
        addOnce(offers.classes[known->second].nameSpaces, utf8(capability.nameSpace));
    }
    return all;
}

// Describes what the server has and offers, in lines for the person who started it: one for each
// namespace with its numbers of classes and instances, for each module with its library, and for
// each provider with the classes, types and namespaces that it answers for.
std::vector<std::string> summary(const repository::View& view,
                                 const routing::Registration& registration,
                                 const Pegasus::CIMNamespaceName& interop) {
    std::vector<std::string> lines;
    for (const Pegasus::CIMNamespaceName& nameSpace : view.nameSpaces())
        lines.push_back(nameSpaceLine(view, nameSpace, nameSpace.equal(interop)));
    for (const auto& [moduleName, module] : registration.modules())
        lines.push_back(
            "module " + utf8(moduleName) + ": " +
            (module.linked ? "part of this program" : routing::libraryFileName(module.location)) +
            (module.stopped ? ", stopped" : ""));
    auto offers = offersOf(registration);
    for (const routing::ProviderName& provider : registration.providers()) {
        const std::string name =
            "provider " + utf8(provider.module) + "/" + utf8(provider.name) + ": ";
        const Offers& own = offers[provider];
        for (const Offers::Offer& offer : own.classes)
            lines.push_back(name + offer.className + " (" + listed(offer.types) + ") in " +
                            listed(offer.nameSpaces));
        if (own.classes.empty())
            lines.push_back(name + "no classes");
    }
    return lines;
}

// The findings are the result that was asked for, so they go to standard output.
ExitCode check(const Settings& settings, const repository::View& view,
               const routing::Registration& registration) {
    for (const std::string& line : summary(view, registration, settings.interop))
        std::cout << line << "\n";
    const std::vector<routing::Finding> findings =
        registration.check(view, settings.providerDirectories);
    for (const routing::Finding& finding : findings)
        std::cout << (finding.severity == routing::Finding::Severity::Problem ? "PROBLEM " : "ok ")
                  << finding.text << "\n";
    const auto problems =
        std::count_if(findings.begin(), findings.end(), [](const routing::Finding& finding) {
            return finding.severity == routing::Finding::Severity::Problem;
        });
    std::cout << problems << (problems == 1 ? " problem" : " problems") << std::endl;
    return problems == 0 ? ExitCode::Ok : ExitCode::Check;
}

// Null without a file of users.
std::shared_ptr<users::Accounts> readAccounts(const Settings& settings) {
    if (!settings.users)
        return nullptr;
    std::vector<users::User> listed = users::readUsers(*settings.users);
    if (listed.empty())
        spdlog::warn("{}: there are no users; cimhost passwd adds one", settings.users->string());
    return std::make_shared<users::Accounts>(std::move(listed));
}

ExitCode run(const Settings& settings) {
    repository::Repository repository;
    try {
        load(settings, repository);
    } catch (const mof::MofError& error) {
        spdlog::error(error.what());
        return ExitCode::Mof;
    }
    const repository::View view = repository.view();
    if (!knowsClassesOf(settings.faults, view))
        return ExitCode::Usage;
    routing::Registration registration(view, settings.interop);
    registerOwnObjects(view, registration);
    const std::shared_ptr<users::Accounts> accounts = readAccounts(settings);
    if (settings.checkOnly)
        return check(settings, view, registration);
    for (const std::string& line : summary(view, registration, settings.interop))
        spdlog::info(line);
    for (const routing::Finding& finding : registration.findings())
        spdlog::warn("{} (--check tells more)", finding.text);
    for (const routing::Fault& fault : settings.faults)
        spdlog::warn("fault asked for: a provider's {}", describe(fault));
    return serve(settings, accounts, repository, registration);
}

ExitCode runLogged(const Settings& settings) {
    try {
        return run(settings);
    } catch (const std::exception& error) {
        spdlog::error("{}", error.what());
    } catch (const Pegasus::Exception& error) {
        spdlog::error("{}", utf8(error.getMessage()));
    }
    return ExitCode::RuntimeFailure;
}

// Whoever starts the program may have closed them; the next file or connection would take their
// place, and the modules' output would go there.
void openStandardStreams() {
    int opened = STDIN_FILENO;
    while (opened <= STDERR_FILENO && opened >= 0)
        opened = ::open("/dev/null", O_RDWR);
    if (opened > STDERR_FILENO)
        ::close(opened);
}

// The GNU C library reads its configuration of name services at the first lookup of any kind, and
// ends the process when it has no memory for it (an assertion, or a null pointer: nss_database.c).
// So the first one is made here, one that asks no other machine, and not in a module's
// initialize().
void prepareNameServices() { ::getprotobyname("tcp"); }

// A large block is to be a mapping of its own, which goes back to the system when it is freed. The
// bound is fixed, or glibc raises it to the largest block that was ever freed, and keeps what is
// below.
void giveLargeBlocksBack() { mallopt(M_MMAP_THRESHOLD, 128 * 1024); }

int main(int argc, const char* const* argv) {
    giveLargeBlocksBack();
    openStandardStreams();
    prepareNameServices();
    const CommandLine commandLine = readCommandLine(argc, argv);
    if (commandLine.command)
        return static_cast<int>(commandLine.command());
    if (!commandLine.settings)
        return static_cast<int>(commandLine.exitCode);
    if (!commandLine.settings->coreDumps)
        forbidCoreDumps();
    takeSignals();
    setUpLog(commandLine.settings->logLevel);
    const ExitCode code = runLogged(*commandLine.settings);
    endLog();
    return static_cast<int>(code);
}

} // namespace
} // namespace embedded::cimhost

int main(int argc, char** argv) { return embedded::cimhost::main(argc, argv); }
