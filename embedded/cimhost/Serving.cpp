#include "cimhost/Serving.h"

#include "cimhost/Access.h"
#include "cimhost/Directory.h"
#include "cimhost/Log.h"
#include "cimhost/OwnObjects.h"
#include "cimhost/Process.h"
#include "cimhost/WireTrace.h"
#include "cimxml/Exchange.h"
#include "embedding/Text.h"
#include "http/Message.h"
#include "http/Server.h"
#include "limits/Limits.h"
#include "routing/Faults.h"
#include "routing/ProviderHandle.h"
#include "routing/ProviderModule.h"
#include "routing/Router.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <list>
#include <memory>
#include <new>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace embedded::cimhost {
namespace {

using Pegasus::embedding::utf8;

auto warnOf(const char* kind) {
    return [kind](const std::string& line) { warnOften(kind, line); };
}

// Leaves at once: providers are still at work, so nothing that they use may be taken apart.
[[noreturn]] void leave(ExitCode code) {
    // Their trace is to be kept, unless one of them is stuck in the middle of writing it.
    if (ftrylockfile(stdout) == 0) {
        std::fflush(stdout);
        funlockfile(stdout);
    }
    endLog();
    std::_Exit(static_cast<int>(code));
}

std::string url(const std::string& scheme, const std::string& address, std::uint16_t port) {
    return scheme + "://" + http::authority(address, port) + "/cimom";
}

/// The file that tells a port. Scripts wait for it to be there, so it is there only when it is
/// complete, and no longer than the server. Throws std::runtime_error that names the file.
class PortFile {
  public:
    PortFile(const std::filesystem::path& file, std::uint16_t port)
        : _file(file), _name(file.filename().string()), _content(std::to_string(port) + "\n") {
        named([this] {
            _directory.emplace(_file.parent_path());
            _directory->remove(_name); // an old one would be taken for ours
        });
    }
    ~PortFile() {
        try {
            if (_isWritten && _directory->content(_name) == _content)
                _directory->remove(_name);
        } catch (const std::exception&) { // it stays: the next server removes it
        }
    }
    PortFile(const PortFile&) = delete;
    PortFile& operator=(const PortFile&) = delete;

    void write() {
        named([this] {
            const std::string unfinished = _name + "." + std::to_string(::getpid());
            _directory->remove(unfinished);
            _directory->create(unfinished, _content, 0600);
            _directory->rename(unfinished, _name);
            _isWritten = true;
        });
    }

  private:
    template <class Step>
    void named(const Step& step) const {
        try {
            step();
        } catch (const std::system_error& error) {
            throw std::runtime_error("cannot write the port file " + _file.string() + ": " +
                                     error.what());
        }
    }

    const std::filesystem::path _file;
    const std::string _name;
    const std::string _content;
    std::optional<Directory> _directory;
    bool _isWritten = false;
};

// Threads for what is in no lane.
constexpr unsigned freeWorkers = 4;

// The lanes behind those of the modules.
unsigned readingLane(const routing::ProviderModules& modules) {
    return static_cast<unsigned>(modules.modules().size());
}
unsigned verifyingLane(const routing::ProviderModules& modules) { return readingLane(modules) + 1; }

// A lane for each module, so that one that hangs takes its own threads alone, one for the reading
// of long requests, so that these leave the processors to others, and one for the verifying of
// passwords, which is slow on purpose.
http::Options options(const routing::ProviderModules& modules, std::chrono::seconds patience) {
    http::Options result;
    result.log = warnOften;
    result.laneWait = patience;
    result.lanes.assign(modules.modules().size(), limits::placesInModule);
    result.lanes.push_back(
        std::max(1U, std::thread::hardware_concurrency() / limits::processorsForALongRequest));
    result.lanes.push_back(limits::placesToVerify);
    result.workers = std::accumulate(result.lanes.begin(), result.lanes.end(), freeWorkers);
    return result;
}

// What was asked and answered, for the log.
http::ReplyWatch logged(const http::Request& request) {
    const auto field = [&](const char* name) {
        const std::string* value = http::findField(request.fields, name);
        return value ? *value : std::string("-");
    };
    return [asked = request.verb + " " + field("CIMMethod") + " " +
                    field("CIMObject")](const http::Reply& reply) {
        spdlog::debug("{}: {} {}", asked, reply.status, reply.reason);
    };
}

http::Handler handler(const Settings& settings, const AccessRules& rules,
                      routing::CimOperations& operations, routing::Enumerations& enumerations,
                      unsigned lane) {
    http::Handler answer =
        guarded(rules, [&operations, &enumerations, lane](http::Request&& request,
                                                          const routing::Caller& caller) {
            return cimxml::exchange(std::move(request), caller, operations, enumerations, {lane});
        });
    if (spdlog::should_log(spdlog::level::debug))
        answer = http::watched(std::move(answer), logged);
    return settings.wireTrace.empty()
               ? answer
               : traced(std::move(answer), settings.wireTrace, warnOf("wire trace"));
}

void reload(http::TlsContext* tls) noexcept {
    try {
        if (tls) {
            tls->reload();
            spdlog::info("certificate and key are read again");
        }
    } catch (const std::exception& error) {
        try {
            spdlog::error("{}; the former certificate and key are kept", error.what());
        } catch (...) { // a line less
        }
    }
}

// HTTP first. Throws std::runtime_error.
std::vector<http::Listener> listen(const Settings& settings,
                                   const std::shared_ptr<const http::TlsContext>& tls) {
    std::vector<http::Listener> listeners;
    if (settings.withHttp)
        listeners.emplace_back(settings.address, settings.port);
    if (settings.httpsPort)
        listeners.emplace_back(settings.address, *settings.httpsPort, tls);
    return listeners;
}

std::vector<std::string> served(const Settings& settings,
                                const std::vector<http::Listener>& listeners) {
    std::vector<std::string> urls;
    urls.reserve(listeners.size());
    for (const http::Listener& listener : listeners)
        urls.push_back(url(listener.tls() ? "https" : "http", settings.address, listener.port()));
    return urls;
}

// What is wrong with a port that other machines can reach (`isRemote`), encrypted (`isSecure`) or
// not, with users or without; empty if nothing is.
std::string exposureFault(bool isRemote, bool isSecure, bool hasUsers) {
    if (!isRemote || (isSecure && hasUsers))
        return {};
    if (isSecure)
        return "nobody is asked who he is there; name a file of users with --users";
    return "what goes over it, passwords among it, can be read and changed on the way" +
           std::string(hasUsers ? "" : ", and nobody is asked who he is");
}

// Whether the ports may be opened: what is asked for may be more than is meant.
bool isExposureMeant(const Settings& settings, const std::vector<http::Listener>& listeners) {
    bool isSafe = true;
    for (const http::Listener& listener : listeners) {
        const bool isSecure = listener.tls() != nullptr;
        const std::string fault =
            exposureFault(!listener.isLoopback(), isSecure, settings.users.has_value());
        if (fault.empty())
            continue;
        isSafe = false;
        spdlog::log(settings.insecureRemote ? spdlog::level::warn : spdlog::level::err,
                    "{} is not a loopback address: {} ({})", settings.address, fault,
                    url(isSecure ? "https" : "http", settings.address, listener.port()));
    }
    if (!isSafe && !settings.insecureRemote)
        spdlog::error(
            "without --address it listens on 127.0.0.1 only; for others there are "
            "--https-port with --no-http, and --users; --insecure-remote-access says that "
            "it is meant as it is");
    return isSafe || settings.insecureRemote;
}

// The users of the file, as it is now, from now on; if they cannot be had, those from before.
void readAgain(const std::filesystem::path& file, users::Accounts& accounts) {
    try {
        std::vector<users::User> listed = users::readUsers(file);
        const std::size_t count = listed.size();
        accounts.replace(std::move(listed));
        spdlog::info("read again: {}, {} users", file.string(), count);
    } catch (const std::exception& error) {
        spdlog::error("{}; the users stay as they were", error.what());
    }
}

void tellCalls(const routing::ProviderModules& modules, std::chrono::seconds atLeast) noexcept {
    const auto now = routing::ProviderModules::Clock::now();
    try {
        for (const routing::ProviderModules::Call& call : modules.calls()) {
            const auto lasts = std::chrono::duration_cast<std::chrono::seconds>(now - call.since);
            if (lasts >= atLeast)
                warnOften("provider", "provider " + utf8(call.provider) +
                                          " has not returned from " + utf8(call.from) + " for " +
                                          std::to_string(lasts.count()) + " s");
        }
    } catch (const std::bad_alloc&) { // lines less
    }
}

/// Looks from time to time which providers do not return.
class CallWatch {
  public:
    CallWatch(const routing::ProviderModules& modules, std::chrono::seconds patience)
        : _thread([ending = _ending.get_future(), &modules, patience] {
              while (ending.wait_for(patience) == std::future_status::timeout)
                  tellCalls(modules, patience);
          }) {}
    ~CallWatch() {
        _ending.set_value();
        _thread.join();
    }
    CallWatch(const CallWatch&) = delete;
    CallWatch& operator=(const CallWatch&) = delete;

  private:
    std::promise<void> _ending;
    std::thread _thread;
};

/// A thread that unloads the modules at the end. It is there from the start: at the end there may
/// be no memory for it.
class Unloading {
  public:
    explicit Unloading(routing::ProviderModules& modules)
        : _thread([this, &modules] {
              if (const std::optional<Until> until = _asked.get_future().get())
                  _allUnloaded.set_value(modules.unloadAll(*until));
          }) {}
    /// Unless finish() has returned, nothing is unloaded here.
    ~Unloading() {
        if (!_isAsked)
            _asked.set_value(std::nullopt);
        _thread.join();
    }
    Unloading(const Unloading&) = delete;
    Unloading& operator=(const Unloading&) = delete;

    /// Those modules that return are terminated; without the others the process ends here, with a
    /// code of its own. `drained`: no request is left inside them.
    void finish(const routing::ProviderModules& modules, bool drained, std::chrono::seconds grace) {
        std::future<bool> allUnloaded = _allUnloaded.get_future();
        _isAsked = true;
        _asked.set_value(Until::clock::now() + (drained ? grace : std::chrono::seconds(0)));
        const bool inTime = allUnloaded.wait_for(grace) == std::future_status::ready;
        if (drained && inTime && allUnloaded.get())
            return;
        spdlog::error("a provider{} has not returned within {} s; ending without it",
                      inTime ? "" : "'s terminate()", grace.count());
        tellCalls(modules, std::chrono::seconds(0));
        leave(ExitCode::ProviderStuck);
    }

  private:
    using Until = routing::ProviderModules::Clock::time_point;

    std::promise<std::optional<Until>> _asked;
    std::promise<bool> _allUnloaded;
    bool _isAsked = false;
    std::thread _thread;
};

} // namespace

ExitCode serve(const Settings& settings, const std::shared_ptr<users::Accounts>& accounts,
               repository::Repository& repository, const routing::Registration& registration) {
    std::shared_ptr<http::TlsContext> tlsContext; // is read again at SIGHUP
    try {
        if (settings.httpsPort)
            tlsContext = std::make_shared<http::TlsContext>(settings.tlsFiles);
    } catch (const std::runtime_error& error) {
        spdlog::error("{}", error.what());
        return ExitCode::Usage;
    }
    std::vector<http::Listener> listeners;
    try {
        listeners = listen(settings, tlsContext);
    } catch (const std::runtime_error& error) {
        spdlog::error("{}; choose another address or port with --address, --port and --https-port, "
                      "or let --port 0 take any free one",
                      error.what());
        return ExitCode::CannotListen;
    }
    if (!isExposureMeant(settings, listeners))
        return ExitCode::Usage;
    std::vector<std::uint16_t> ports;
    ports.reserve(listeners.size());
    for (const http::Listener& listener : listeners)
        ports.push_back(listener.port());
    // From here on the files are this server's: one that cannot listen leaves those of another
    // alone.
    // That of HTTPS comes first, so that whoever waits for that of HTTP has both.
    std::list<PortFile> files;
    if (settings.httpsPort && settings.httpsPortFile)
        files.emplace_back(*settings.httpsPortFile, ports.back());
    if (settings.withHttp && settings.portFile)
        files.emplace_back(*settings.portFile, ports.front());
    if (settings.runAs)
        become(*settings.runAs);

    routing::ModuleSettings moduleSettings{
        settings.providerDirectories, settings.keepLibraries, warnOf("provider"), {}};
    linkOwnObjects(settings, repository.view(), ports, moduleSettings);
    routing::ProviderModules modules(registration, moduleSettings);
    Unloading unloading(modules);
    routing::Router router(repository, modules, routing::localHostName(), settings.writable);
    routing::FaultyReadBacks faultyReadBacks(router, settings.faults);
    const routing::ProviderHandles handles(
        settings.faults.empty() ? static_cast<routing::CimOperations&>(router) : faultyReadBacks);
    routing::Enumerations enumerations;
    const http::Options httpOptions = options(modules, settings.patience);
    const std::vector<std::string> urls = served(settings, listeners);
    http::Server server(std::move(listeners), httpOptions,
                        handler(settings,
                                {accounts, settings.anonymousRead, verifyingLane(modules)}, router,
                                enumerations, readingLane(modules)));

    const Readiness readiness;
    const SignalWatch watch(
        [&](unsigned count) {
            if (count > 1) {
                spdlog::error("second signal: ending at once");
                leave(ExitCode::Interrupted);
            }
            spdlog::info("ending: requests in progress have {} s", settings.grace.count());
            readiness.stopping();
            server.stop(settings.grace);
        },
        [&] {
            readiness.reloading();
            reload(tlsContext.get());
            if (accounts)
                readAgain(*settings.users, *accounts);
            readiness.ready();
        });
    for (PortFile& file : files)
        file.write();
    for (const std::string& each : urls)
        spdlog::info("serving {}", each);
    readiness.ready();
    {
        const CallWatch callWatch(modules, settings.patience);
        server.run();
    }
    files.clear(); // nobody listens any more
    unloading.finish(modules, server.drained(), settings.grace);
    spdlog::info("ended");
    return ExitCode::Ok;
}

} // namespace embedded::cimhost
