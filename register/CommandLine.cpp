#include "register/CommandLine.h"

#include "register/Names.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iostream>
#include <system_error>

namespace registering {
namespace {

constexpr const char* description =
    "Puts the Server profile provider, and the provider of the server's own objects, into an\n"
    "installed OpenPegasus CIM server, takes them out again, or says what is wrong with them "
    "there.\n"
    "The server has to be running.";

constexpr const char* footer =
    "The profile's module reads the definitions of its classes from root/cimv2 whatever "
    "namespaces\n"
    "it serves, so its classes are loaded there, too.\n"
    "\n"
    "Exit codes:\n"
    "  0  done as asked, or there was nothing to do; status: all is well\n"
    "  1  a check found something wrong, or an interruption came before the first step; nothing\n"
    "     was changed\n"
    "  2  wrong command line\n"
    "  3  a step failed or was interrupted, and all is as it was before\n"
    "  4  a step failed, and not everything could be put back: the output says what is left\n"
    "\n"
    "Examples:\n"
    "  serverprofile-register install --dry-run\n"
    "  serverprofile-register install --namespace interop --namespace root/switch\n"
    "  serverprofile-register status";

std::string checkNameSpace(const std::string& text) {
    return isNameSpace(text) ? "" : "not a namespace: '" + text + "'";
}

// Installed, the MOF files lie beside the tool; moved or run from elsewhere, where they were meant
// to be installed.
std::filesystem::path defaultMofDirectory() {
    std::error_code ignored;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto beside = self.parent_path().parent_path() / "share/serverprofile-provider/mof";
    return std::filesystem::is_directory(beside, ignored) ? beside
                                                          : std::filesystem::path(REGISTER_MOF_DIR);
}

void declare(CLI::App& app, Settings& settings) {
    const CLI::Validator nameSpace(checkNameSpace, "");
    app.add_option("--namespace", settings.nameSpaces,
                   "A namespace to serve (repeatable; default: those served already, else interop, "
                   "which is made if it is not there, and root/cimv2)")
        ->type_name("NS")
        ->expected(1)
        ->take_all()
        ->check(nameSpace);
    struct Text {
        const char* name;
        std::string Settings::*value;
        const char* type;
        const char* what;
    };
    app.add_option("--interop", settings.interop,
                   "The server's own interop namespace, where registrations are kept")
        ->type_name("NS")
        ->check(nameSpace)
        ->capture_default_str();
    for (const Text& text : {
             Text{"--mof", &Settings::mofDirectory, "DIR",
                  "Where the MOF files of the package are"},
             {"--library", &Settings::library, "FILE",
              "A module's library, by its name (default: looked for in the server's provider "
              "directories)"},
             {"--tools", &Settings::tools, "DIR",
              "Where cimmof, cimprovider and cimcli are (default: PEGASUS_HOME/bin, PATH, "
              "/usr/sbin)"},
             {"--settings-dir", &Settings::settingsDirectory, "DIR",
              "Where the provider of the server's own objects looks for its settings (fixed when "
              "it was built)"},
             {"--record", &Settings::record, "FILE", "The record of what the tool has made"},
             {"--url", &Settings::url, "URL",
              "status: where the server answers clients (default: this machine, the server's "
              "port)"},
         })
        app.add_option(text.name, settings.*text.value, text.what)
            ->type_name(text.type)
            ->capture_default_str()
            ->transform([otherwise = settings.*text.value](const std::string& given) {
                return given.empty() ? otherwise : given; // such as a variable that is not set
            });
    app.add_option("--timeout", settings.timeout, "How long one of the server's tools may take")
        ->type_name("SECONDS")
        ->check(CLI::Range(1U, 3600U))
        ->capture_default_str();
    app.add_flag("--dry-run", settings.dryRun, "Check, say what would be done, and change nothing");
    app.add_flag("--verbose", settings.verbose, "Show each command that is run, and what it says");
}

void declareCommands(CLI::App& app, Settings& settings) {
    app.fallthrough(); // options may stand on both sides of the command
    const auto command = [&](const char* name, Command value, const char* text) {
        CLI::App* sub = app.add_subcommand(name, text);
        sub->set_help_flag();
        sub->callback([&settings, value] { settings.command = value; });
    };
    command("install", Command::Install,
            "Check, load the classes, register the modules, try them; undo all if a step fails");
    command("remove", Command::Remove, "Remove what was installed, and nothing else");
    command("status", Command::Status, "One line for each thing that has to be right");
    app.require_subcommand(1);
}

} // namespace

CommandLine readCommandLine(int argc, const char* const* argv) {
    CLI::App app(description, "serverprofile-register");
    app.footer(footer);
    app.set_version_flag("--version", "serverprofile-register " REGISTER_VERSION);
    Settings settings;
    settings.mofDirectory = defaultMofDirectory();
    settings.settingsDirectory = REGISTER_SETTINGS_DIR;
    settings.record = REGISTER_RECORD;
    declare(app, settings);
    declareCommands(app, settings);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        // One help for all: the options are the same whatever the command.
        std::cout << app.get_formatter()->make_help(&app, app.get_name(),
                                                    CLI::AppFormatMode::Normal);
        return {};
    } catch (const CLI::Error& error) { // the version is one, too
        return {std::nullopt, app.exit(error) == 0 ? ExitCode::Ok : ExitCode::Usage};
    }
    for (std::string* file : {&settings.settingsDirectory, &settings.record})
        *file = std::filesystem::absolute(*file);
    return {std::move(settings), ExitCode::Ok};
}

} // namespace registering
