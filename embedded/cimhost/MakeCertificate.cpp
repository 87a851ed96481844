// cimhost make-certificate: what HTTPS needs, for the desk.
#include "cimhost/Commands.h"
#include "cimhost/Directory.h"
#include "cimhost/Summary.h"
#include "http/SelfSigned.h"
#include "routing/Router.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace embedded::cimhost {
namespace {

struct Wanted {
    std::filesystem::path certificate;
    std::filesystem::path key;
    std::vector<std::string> names;
};

// This machine's, and those by which it calls itself.
std::vector<std::string> ownNames() {
    std::vector<std::string> names = {"localhost", "127.0.0.1", "::1"};
    const std::string host = utf8(routing::localHostName());
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

} // namespace embedded::cimhost
