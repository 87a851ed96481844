#include "cimhost/CommandLine.h"

#include "cimhost/Commands.h"

#include <CLI/CLI.hpp>
#include <Pegasus/Common/Exception.h>

#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

namespace embedded::cimhost {
namespace {

constexpr const char* description =
    "A CIM server that hosts provider modules: CIM-XML over HTTP, classes and registration from\n"
    "MOF files, providers from shared libraries. Standard output is left to the providers.";

constexpr const char* faultsHeading =
    "Faults of the requests that providers make to the server (those of clients do not suffer "
    "them):\n"
    "  OPERATION:CLASS=WHAT, such as getInstance:*=6 or enumerateInstances:CIM_Namespace=hang:3\n";

constexpr const char* footer =
    "Exit codes:\n"
    "  0  ended as asked, or the check found nothing wrong\n"
    "  1  failure while running\n"
    "  2  wrong command line\n"
    "  3  a MOF file cannot be read or has no meaning\n"
    "  4  the check found a problem\n"
    "  5  cannot listen on the address and port\n"
    "  6  a provider did not return within the grace time\n"
    "  7  ended by a second signal\n"
    "\n"
    "Example:\n"
    "  cimhost --mof root/PG_InterOp=registration.mof --mof root/cimv2=schema.mof \\\n"
    "          --mof-include schema --provider-dir /usr/lib64/Pegasus/providers";

Pegasus::CIMNamespaceName nameSpace(const std::string& option, const std::string& text) {
    try {
        return Pegasus::CIMNamespaceName(Pegasus::String(text.c_str()));
    } catch (const Pegasus::Exception&) {
        throw CLI::ValidationError(option, "not a namespace: '" + text + "'");
    }
}

MofFile mofFile(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals + 1 == text.size())
        throw CLI::ValidationError("--mof", "NAMESPACE=FILE is expected, not '" + text + "'");
    return {nameSpace("--mof", text.substr(0, equals)), text.substr(equals + 1)};
}

routing::Fault fault(const std::string& text) {
    try {
        return routing::readFault(text);
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError("--fault", error.what());
    }
}

// The options whose values are more than CLI11 can convert, as they were written.
struct Raw {
    std::string interop = "root/PG_InterOp";
    std::vector<std::string> nameSpaces;
    std::vector<std::string> mofFiles;
    std::vector<std::string> faults;
    bool withoutHttp = false;
    std::string runAs;
    unsigned grace = 10;
    unsigned patience = limits::patience.count();
};

void convertPorts(const Raw& raw, Settings& settings) {
    settings.withHttp = !raw.withoutHttp;
    if (settings.httpsPort &&
        (settings.tlsFiles.certificate.empty() || settings.tlsFiles.key.empty()))
        throw CLI::ValidationError(
            "--https-port",
            "needs --certificate FILE and --key FILE; without any, make them first:\n"
            "  cimhost make-certificate cimhost.pem cimhost.key");
    if (settings.httpsPort && settings.withHttp && settings.httpsPort != 0 &&
        settings.httpsPort == settings.port)
        throw CLI::ValidationError("--https-port", "is that of --port; each needs one of its own");
}

void convert(const Raw& raw, Settings& settings) {
    convertPorts(raw, settings);
    settings.interop = nameSpace("--interop", raw.interop);
    for (const std::string& text : raw.nameSpaces)
        settings.nameSpaces.push_back(nameSpace("--namespace", text));
    for (const std::string& text : raw.mofFiles)
        settings.mofFiles.push_back(mofFile(text));
    for (const std::string& text : raw.faults)
        settings.faults.push_back(fault(text));
    try {
        if (!raw.runAs.empty())
            settings.runAs = identityOf(raw.runAs);
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError("--user", error.what());
    }
    settings.grace = std::chrono::seconds(raw.grace);
    settings.patience = std::chrono::seconds(raw.patience);
}

using Values = std::vector<std::string>;

// CLI11 takes from a file only what the command line has not given, so it does not see the options
// that can be repeated: they are added to here.
class ConfigFiles : public CLI::ConfigBase {
  public:
    explicit ConfigFiles(CLI::App& app) : _app(app) {}

    // CLI11 calls this once for each file, in an order that depends on its version: the first call
    // reads all files.
    std::vector<CLI::ConfigItem> from_config(std::istream& /*text*/) const override {
        Found found;
        if (!std::exchange(_read, true))
            for (const std::string& file : _app.get_config_ptr()->results())
                read(file, found);
        for (auto& [option, values] : found.repeated) {
            append(values, option->results());
            option->clear();
            option->add_result(std::move(values));
        }
        std::vector<CLI::ConfigItem> single;
        for (auto& [name, item] : found.single)
            single.push_back(std::move(item));
        return single;
    }

  private:
    struct Found {
        std::map<std::string, CLI::ConfigItem> single; ///< of the last file that has them
        std::map<CLI::Option*, Values> repeated;
    };

    void read(const std::filesystem::path& file, Found& found) const {
        std::ifstream text(file);
        if (!text)
            throw CLI::FileError::Missing(file.string());
        std::set<std::string> here;
        for (CLI::ConfigItem& item : ConfigBase::from_config(text)) {
            CLI::Option& option = named(item, file);
            if (option.get_expected_min() != 0)
                for (std::string& value : item.inputs)
                    value = resolved(value, option.get_type_name(), file.parent_path());
            if (option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll)
                append(found.repeated[&option], item.inputs);
            else if (!here.insert(item.name).second || item.inputs.size() != 1)
                throw CLI::ConfigError(file.string() + ": " + item.name +
                                       " can be given once; quote a value with spaces or commas");
            else
                found.single[item.name] = std::move(item);
        }
    }

    CLI::Option& named(const CLI::ConfigItem& item, const std::filesystem::path& file) const {
        CLI::Option* const option =
            item.parents.empty() ? _app.get_option_no_throw("--" + item.name) : nullptr;
        if (option == nullptr || !option->get_configurable())
            throw CLI::ConfigError(file.string() + ": no option of a configuration file: " +
                                   (item.parents.empty() ? item.name : item.parents.front()));
        return *option;
    }

    static std::string resolved(const std::string& value, const std::string& type,
                                const std::filesystem::path& directory) {
        const std::size_t path = type == "NAMESPACE=FILE" ? value.find('=') + 1 : 0;
        const bool isPath = type == "FILE" || type == "DIR" || path != 0;
        if (!isPath || path == value.size() || value == "-") // "-": no file, but a stream
            return value;
        return value.substr(0, path) + (directory / value.substr(path)).string();
    }

    static void append(Values& values, const Values& more) {
        values.insert(values.end(), more.begin(), more.end());
    }

    CLI::App& _app;
    mutable bool _read = false;
};

// Declares --config. The options of a file count as if they stood before the command line: an
// option that can be repeated gets the values of the files, in their order, and then those of the
// command line; any other option gets its last value. Relative paths in a file start from its
// directory. Parsing throws CLI::ConfigError for an unknown option in a file.
void declareConfigFiles(CLI::App& app) {
    app.set_config(
           "--config", "",
           "Read options from FILE, NAME = VALUE a line, as if they stood before those of the "
           "command line (repeatable, in order)")
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    app.config_formatter(std::make_shared<ConfigFiles>(app));
}

template <class Value>
CLI::Option* option(CLI::App& app, const char* name, Value& value, const char* type,
                    const char* help) {
    return app.add_option(name, value, help)->type_name(type);
}

template <class Value>
CLI::Option* withDefault(CLI::App& app, const char* name, Value& value, const char* type,
                         const char* help) {
    return option(app, name, value, type, help)->capture_default_str();
}

template <class Value>
CLI::Option* repeatable(CLI::App& app, const char* name, std::vector<Value>& values,
                        const char* type, const char* help) {
    return option(app, name, values, type, help)->expected(1)->take_all();
}

void declareServing(CLI::App& app, Settings& settings, Raw& raw) {
    CLI::Validator named(
        [](const std::string& address) {
            return address.empty()
                       ? std::string("an address is expected; 0.0.0.0 or :: is every one")
                       : std::string();
        },
        "");
    withDefault(app, "--address", settings.address, "ADDRESS", "Address or host name to listen on")
        ->check(named);
    CLI::Option* const port = withDefault(app, "--port", settings.port, "PORT",
                                          "Port to listen on; 0 takes any free one");
    CLI::Option* const portFile = option(app, "--port-file", settings.portFile, "FILE",
                                         "Write the port to FILE once the server listens");
    CLI::Option* const https =
        option(app, "--https-port", settings.httpsPort, "PORT",
               "Port to listen on for HTTPS; 0 takes any free one (default: none)");
    option(app, "--https-port-file", settings.httpsPortFile, "FILE",
           "Write the port for HTTPS to FILE, before --port-file is written")
        ->needs(https);
    option(app, "--certificate", settings.tlsFiles.certificate, "FILE",
           "The server's certificate for HTTPS and its chain (PEM)")
        ->needs(https);
    option(app, "--key", settings.tlsFiles.key, "FILE", "The key of the certificate (PEM)")
        ->needs(https);
    option(app, "--client-ca", settings.tlsFiles.clientCa, "FILE",
           "Ask clients for a certificate of one of the authorities in FILE (PEM)")
        ->needs(https);
    app.add_flag("--no-http", raw.withoutHttp, "Listen for HTTPS alone")
        ->needs(https)
        ->excludes(port)
        ->excludes(portFile);
}

void declareContent(CLI::App& app, Settings& settings, Raw& raw) {
    declareConfigFiles(app);
    CLI::Validator directory = CLI::ExistingDirectory;
    directory.description(""); // it would be part of the help's first column
    repeatable(app, "--namespace", raw.nameSpaces, "NAMESPACE",
               "A namespace to serve (repeatable)");
    withDefault(app, "--interop", raw.interop, "NAMESPACE",
                "The interop namespace, with the registrations");
    repeatable(app, "--mof", raw.mofFiles, "NAMESPACE=FILE",
               "Load FILE into NAMESPACE, which is created as needed (repeatable, in order)");
    repeatable(app, "--mof-include", settings.mofIncludes, "DIR",
               "Look for included MOF files in DIR (repeatable)")
        ->check(directory);
    repeatable(app, "--provider-dir", settings.providerDirectories, "DIR",
               "Look for provider libraries in DIR (repeatable, in order)")
        ->check(directory);
    app.add_flag("--writable", settings.writable,
                 "Let clients create, modify and delete instances that no module publishes");
    withDefault(app, "--system-class", settings.systemClass, "CLASS",
                "The class of the system on which the object manager runs, as in its keys");
    option(app, "--system-name", settings.systemName, "NAME",
           "The name of that system (default: this machine's canonical name)");
}

void declareWatching(CLI::App& app, Settings& settings, Raw& raw) {
    app.add_flag("--check", settings.checkOnly,
                 "Say what is registered and what is missing, and end without serving");
    option(app, "--trace-wire", settings.wireTrace, "DIR",
           "Write every request and reply to files in DIR, or with - to standard error");
    withDefault(app, "--log-level", settings.logLevel, "LEVEL", "How much goes to standard error")
        ->check(CLI::IsMember({"trace", "debug", "info", "warning", "error", "off"}));
    withDefault(app, "--grace", raw.grace, "SECONDS",
                "Time for requests and providers to finish at the end")
        ->check(CLI::Range(0U, 3600U));
    withDefault(app, "--patience", raw.patience, "SECONDS",
                "Time that a request waits for a place in a busy module, and after which the log "
                "names the calls that have not returned")
        ->check(CLI::Range(1U, 3600U));
    repeatable(app, "--fault", raw.faults, "OPERATION:CLASS=WHAT",
               "Make requests of providers to the server fail, to try the providers (repeatable, "
               "in order; see below)");
    app.add_flag("--keep-libraries", settings.keepLibraries,
                 "Leave provider libraries mapped to the end, for leak and race reports");
}

void declareAccess(CLI::App& app, Settings& settings, Raw& raw) {
    CLI::Option* const users = option(app, "--users", settings.users, "FILE",
                                      "Answer only the users in FILE, which cimhost passwd writes");
    app.add_flag("--anonymous-read", settings.anonymousRead,
                 "With --users, let clients without credentials read")
        ->needs(users);
    app.add_flag(
        "--insecure-remote-access", settings.insecureRemote,
        "Listen where other machines can connect without users or TLS: anybody there may ask, or "
        "read and change what is sent, passwords included");
    option(app, "--user", raw.runAs, "NAME[:GROUP]",
           "Change to that user, and group, once the ports are open");
    app.add_flag("--core-dumps", settings.coreDumps,
                 "Leave a core dump after a crash, with everything that was in memory");
}

} // namespace

CommandLine readCommandLine(int argc, const char* const* argv) {
    CLI::App app(description, "cimhost");
    app.footer(faultsHeading + routing::faultHelp() + "\n" + footer);
    app.set_version_flag("--version", "cimhost " CIMHOST_VERSION);
    Settings settings;
    Raw raw;
    declareServing(app, settings, raw);
    declareAccess(app, settings, raw);
    declareContent(app, settings, raw);
    declareWatching(app, settings, raw);
    std::function<ExitCode()> command;
    declareMakeCertificate(app, command);
    declarePasswd(app, command);
    app.require_subcommand(0, 1);
    try {
        app.parse(argc, argv);
        if (command)
            return {std::nullopt, std::move(command)};
        convert(raw, settings);
    } catch (const CLI::Success& done) {
        app.exit(done);
        return {};
    } catch (const CLI::Error& error) {
        app.exit(error);
        return {std::nullopt, nullptr, ExitCode::Usage};
    }
    return {std::move(settings)};
}

} // namespace embedded::cimhost
