#include "cimhost/Commands.h"

#include "cimhost/Directory.h"
#include "embedding/Text.h"
#include "http/SelfSigned.h"
#include "limits/Limits.h"
#include "routing/Router.h"
#include "users/Password.h"
#include "users/UsersFile.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace embedded::cimhost {
namespace {

// make-certificate: what HTTPS needs, for the desk.

struct Wanted {
    std::filesystem::path certificate;
    std::filesystem::path key;
    std::vector<std::string> names;
};

// This machine's, and those by which it calls itself.
std::vector<std::string> ownNames() {
    std::vector<std::string> names = {"localhost", "127.0.0.1", "::1"};
    const std::string host = Pegasus::embedding::utf8(routing::localHostName());
    if (host != names.front() && http::canBeCertified(host))
        names.insert(names.begin(), host);
    return names;
}

// The key first: who finds a certificate finds its key.
void write(const Wanted& wanted, const http::SelfSigned& made) {
    const Directory keys(wanted.key.parent_path());
    const Directory certificates(wanted.certificate.parent_path());
    keys.create(wanted.key.filename(), made.key, 0600);
    try {
        certificates.create(wanted.certificate.filename(), made.certificate, 0644);
    } catch (...) {
        keys.remove(wanted.key.filename());
        throw;
    }
}

ExitCode make(const Wanted& wanted) {
    std::vector<std::string> names = wanted.names;
    for (const std::string& own : ownNames())
        if (std::find(names.begin(), names.end(), own) == names.end())
            names.push_back(own);
    try {
        write(wanted, http::makeSelfSigned(names));
    } catch (const std::exception& error) {
        std::cerr << "cimhost: " << error.what() << std::endl;
        return ExitCode::RuntimeFailure;
    }
    std::cout << wanted.certificate.string() << " is for";
    for (const std::string& name : names)
        std::cout << " " << name;
    std::cout << std::endl;
    return ExitCode::Ok;
}

// passwd: the file of users, changed.

struct PasswordSettings {
    std::filesystem::path file;
    std::string user;
    std::optional<users::Role> role; ///< none: as it was
    bool noPassword = false;
    bool remove = false;
};

std::string typedTwice(const std::string& user) {
    // Longer than any password: one that is too long is not to be cut.
    std::array<char, limits::password + 64> typed{};
    const std::string prompt = "Password of " + user + ": ";
    if (EVP_read_pw_string(typed.data(), static_cast<int>(typed.size()) - 1, prompt.c_str(), 1) !=
        0)
        throw std::runtime_error("the password was not typed twice in the same way");
    std::string password = typed.data();
    OPENSSL_cleanse(typed.data(), typed.size());
    return password;
}

std::string readPassword(const std::string& user) {
    if (::isatty(STDIN_FILENO) != 0)
        return typedTwice(user);
    std::string password;
    if (!std::getline(std::cin, password))
        throw std::runtime_error("a line with the password is expected on standard input");
    return password;
}

void change(const PasswordSettings& settings) {
    const std::string fault = users::nameFault(settings.user);
    if (!fault.empty())
        throw std::runtime_error(fault);
    if (settings.remove) {
        users::removeUser(settings.file, settings.user);
        return;
    }
    if (std::filesystem::exists(settings.file))
        users::readUsers(settings.file); // before anything is asked
    if (settings.noPassword) {
        users::putUser(settings.file, settings.user, settings.role, users::noPassword);
        return;
    }
    std::string password = readPassword(settings.user);
    const std::string hash = users::hashed(password);
    OPENSSL_cleanse(password.data(), password.size());
    users::putUser(settings.file, settings.user, settings.role, hash);
}

ExitCode changePassword(const PasswordSettings& settings) {
    try {
        change(settings);
    } catch (const std::exception& error) {
        std::cerr << "cimhost passwd: " << error.what() << "\n";
        return ExitCode::RuntimeFailure;
    }
    return ExitCode::Ok;
}

} // namespace

void declareMakeCertificate(CLI::App& app, std::function<ExitCode()>& chosen) {
    const auto wanted = std::make_shared<Wanted>();
    CLI::App* const command = app.add_subcommand(
        "make-certificate", "Make a key and a certificate that it has signed itself, for HTTPS");
    command->footer("");
    command->add_option("CERTIFICATE", wanted->certificate, "File to make for the certificate")
        ->type_name("")
        ->required();
    command->add_option("KEY", wanted->key, "File to make for the key; its owner alone can read it")
        ->type_name("")
        ->required();
    CLI::Validator certifiable(
        [](const std::string& name) {
            return http::canBeCertified(name) ? std::string()
                                              : "no host name and no address: '" + name + "'";
        },
        "");
    command
        ->add_option("--name", wanted->names,
                     "A host name or address of the server, besides those of this machine "
                     "(repeatable)")
        ->type_name("HOST")
        ->expected(1)
        ->take_all()
        ->check(certifiable);
    command->callback([wanted, &chosen] { chosen = [wanted] { return make(*wanted); }; });
}

void declarePasswd(CLI::App& app, std::function<ExitCode()>& chosen) {
    const auto settings = std::make_shared<PasswordSettings>();
    CLI::App* const command = app.add_subcommand(
        "passwd", "Add a user to a file for --users, or change password and role");
    command->add_option("FILE", settings->file, "The file; it is made if it is not there")
        ->type_name("")
        ->required();
    command->add_option("USER", settings->user, "The name of the user")->type_name("")->required();
    const std::map<std::string, users::Role> roles{{"read", users::Role::Read},
                                                   {"write", users::Role::Write}};
    command
        ->add_option("--role", settings->role,
                     "What the user may do (default: as before; a new one may read)")
        ->type_name("read|write")
        ->transform(CLI::CheckedTransformer(roles).description(""));
    CLI::Option* const none = command->add_flag("--no-password", settings->noPassword,
                                                "Let the user in by a certificate only");
    command->add_flag("--remove", settings->remove, "Remove the user")->excludes(none);
    command->footer(
        "The password is asked for twice on a terminal; otherwise it is the first line\n"
        "of standard input.");
    command->callback(
        [settings, &chosen] { chosen = [settings] { return changePassword(*settings); }; });
}

} // namespace embedded::cimhost
