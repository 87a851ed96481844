#include "cimhost/Serving.h"

#include "cimhost/OwnObjects.h"
#include "cimhost/SignalWatch.h"
#include "cimhost/Summary.h"
#include "cimhost/WireTrace.h"
#include "cimxml/Exchange.h"
#include "host/FaultyReadBacks.h"
#include "host/ProviderHandle.h"
#include "host/ProviderModule.h"
#include "host/Router.h"
#include "http/Server.h"
#include "http/Watched.h"

#include <spdlog/spdlog.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

namespace embedded::cimhost {
namespace {

void warn(const std::string& line) {
    spdlog::warn(line);
}

// Leaves at once: providers are still at work, so nothing that they use may be taken apart.
[[noreturn]] void leave(ExitCode code) {
    // Their trace is to be kept, unless one of them is stuck in the middle of writing it.
    if (ftrylockfile(stdout) == 0) {
        std::fflush(stdout);
        funlockfile(stdout);
    }
    std::_Exit(static_cast<int>(code));
}

std::string url(const std::string& address, std::uint16_t port) {
    const bool v6 = address.find(':') != std::string::npos;
    return "http://" + (v6 ? "[" + address + "]" : address) + ":" + std::to_string(port) + "/cimom";
}

// Scripts wait for the file to be there, so it is there only when it is complete.
void writePortFile(const std::filesystem::path& file, std::uint16_t port) {
    std::filesystem::path unfinished = file;
    unfinished += ".new";
    std::ofstream out(unfinished);
    out << port << std::endl;
    out.close();
    if (!out)
        throw std::runtime_error("cannot write the port file " + file.string());
    std::filesystem::rename(unfinished, file);
}

http::Options options() {
    http::Options result;
    result.log = warn;
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

http::Handler handler(const Settings& settings, host::CimOperations& operations) {
    http::Handler answer = [&operations](http::Request&& request) {
        return cimxml::exchange(std::move(request), operations);
    };
    if (spdlog::should_log(spdlog::level::debug))
        answer = http::watched(std::move(answer), logged);
    return settings.wireTrace.empty() ? answer
                                      : traced(std::move(answer), settings.wireTrace, warn);
}

std::optional<http::Listener> listen(const Settings& settings) {
    try {
        return http::Listener(settings.address, settings.port);
    } catch (const std::runtime_error& error) {
        spdlog::error("{}; choose another address or port with --address and --port, or let "
                      "--port 0 take any free one",
                      error.what());
        return std::nullopt;
    }
}

void unload(host::ProviderModules& modules, std::chrono::seconds grace) {
    std::promise<void> unloaded;
    std::thread unloading([&] {
        modules.unloadAll();
        unloaded.set_value();
    });
    if (unloaded.get_future().wait_for(grace) == std::future_status::timeout) {
        spdlog::error("a provider's terminate() has not returned within {} s; ending without it",
                      grace.count());
        leave(ExitCode::ProviderStuck);
    }
    unloading.join();
}

} // namespace

ExitCode serve(const Settings& settings, repository::Repository& repository,
               const host::Registration& registration) {
    if (settings.portFile)
        std::filesystem::remove(*settings.portFile); // an old one would be taken for ours
    std::optional<http::Listener> listener = listen(settings);
    if (!listener)
        return ExitCode::CannotListen;
    const std::uint16_t port = listener->port();

    host::ModuleSettings moduleSettings{
        settings.providerDirectories, settings.keepLibraries, warn, {}};
    linkOwnObjects(settings, repository.view(), port, moduleSettings);
    host::ProviderModules modules(registration, moduleSettings);
    host::Router router(repository, modules, host::localHostName(), settings.writable);
    host::FaultyReadBacks faultyReadBacks(router, host::Faults(settings.faults));
    const host::ProviderHandles handles(
        settings.faults.empty() ? static_cast<host::CimOperations&>(router) : faultyReadBacks);
    http::Server server(std::move(*listener), options(), handler(settings, router));

    const SignalWatch watch([&](unsigned count) {
        if (count > 1) {
            spdlog::error("second signal: ending at once");
            leave(ExitCode::Interrupted);
        }
        spdlog::info("ending: requests in progress have {} s", settings.grace.count());
        server.stop(settings.grace);
    });
    if (settings.portFile)
        writePortFile(*settings.portFile, port);
    spdlog::info("serving {}", url(settings.address, port));
    server.run();
    if (!server.drained()) {
        spdlog::error("a provider has not returned within {} s; ending without it",
                      settings.grace.count());
        leave(ExitCode::ProviderStuck);
    }
    unload(modules, settings.grace);
    spdlog::info("ended");
    return ExitCode::Ok;
}

} // namespace embedded::cimhost
