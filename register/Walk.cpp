#include "register/Situation.h"

#include "register/Process.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace registering {
namespace {

using Json = nlohmann::json;

constexpr const char* program = "serverprofile-walk";
// What it ends with (its manual page).
constexpr int whole = 0;
constexpr int notWhole = 1;
constexpr int notReached = 3;
// Enough to see what is wrong; it says the rest itself.
constexpr std::size_t mostWrongs = 5;
constexpr std::size_t mostOfAText = 300;

// The program: beside this one, or in PATH; empty if there is none.
std::filesystem::path findWalk() {
    std::error_code ignored;
    std::vector<std::filesystem::path> directories = directoriesOf(environment("PATH"), "");
    directories.insert(directories.begin(),
                       std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path());
    return findFile(program, directories, true);
}

// Where the server answers clients on this machine; empty if it cannot be found out.
std::string urlOf(const Server& server) {
    using Row = std::array<const char*, 4>;
    for (const auto& [enabled, port, scheme, usualPort] :
         {Row{"enableHttpConnection", "httpPort", "http", "5988"},
          Row{"enableHttpsConnection", "httpsPort", "https", "5989"}})
        if (server.configured(enabled) == "true") {
            const std::string configured = server.configured(port);
            return std::string(scheme) +
                   "://127.0.0.1:" + (configured.empty() ? usualPort : configured);
        }
    return "";
}

// A text of the server's, on one line.
std::string shown(const Json& object, const char* key) {
    const auto at = object.find(key);
    std::string text = at == object.end() || !at->is_string() ? "" : at->get<std::string>();
    if (text.size() > mostOfAText)
        text = text.substr(0, mostOfAText) + "...";
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
    return text;
}

void sayWrongs(const Json& verdict, const std::string& nameSpace, const std::string& byHand,
               Report& report) {
    std::size_t said = 0;
    for (const Json& wrong : verdict.at("wrongs"))
        for (const Json& problem : wrong.at("problems")) {
            if (++said > mostWrongs)
                continue;
            const std::string advice = shown(problem, "advice");
            report.wrong("a client's walk in " + nameSpace + ": " + shown(wrong, "command") + ": " +
                             shown(problem, "text"),
                         advice.empty() ? "ask again with that command, or see " + byHand : advice);
        }
    if (said == 0)
        report.wrong("a client's walk in " + nameSpace + ": " + shown(verdict, "error"),
                     "see " + byHand);
    if (said > mostWrongs)
        report.note(std::to_string(said - mostWrongs) + " more are wrong in " + nameSpace + ": " +
                    byHand);
}

void checkWalk(const Job& job, const Arguments& command, const std::string& nameSpace) {
    Report& report = job.report;
    const std::string byHand = commandText({program, "--namespace", nameSpace, command.back()}) +
                               " (with --user or --ca-file where the server wants them)";
    const Outcome outcome = job.server.ask(command);
    const auto notTried = [&](const std::string& why) {
        report.note("whether a client's walk is whole in " + nameSpace + " was not found out: " +
                    why + "; say with --url where the server answers clients, or try " + byHand);
    };
    if (outcome.exitCode != whole && outcome.exitCode != notWhole && outcome.exitCode != notReached)
        return notTried(describe(outcome));
    try {
        const Json verdict = Json::parse(outcome.out);
        if (outcome.exitCode == notReached)
            notTried(shown(verdict, "error"));
        else if (verdict.at("whole").get<bool>())
            report.ok("a client's walk is whole in " + nameSpace + ": " +
                      verdict.at("questions").dump() + " questions");
        else
            sayWrongs(verdict, nameSpace, byHand, report);
    } catch (const Json::exception& error) {
        notTried(std::string("what ") + program + " says is not understood: " + error.what());
    }
}

} // namespace

void checkWalks(const Job& job, const Situation& situation) {
    const auto& [settings, content, server, report] = job;
    const std::filesystem::path walk = findWalk();
    const std::string url = settings.url.empty() ? urlOf(server) : settings.url;
    if (walk.empty() || url.empty()) {
        report.note(std::string("whether a client's walk is whole was not found out: ") +
                    (walk.empty() ? std::string("there is no ") + program +
                                        " beside this program or in PATH; install it"
                                  : "the server's configuration does not say where it answers "
                                    "clients; say it with --url"));
        return;
    }
    for (const Place& place : situation.places)
        if (place.served && interruptedBy() == 0)
            checkWalk(job,
                      {walk, "--json", "--timeout", std::to_string(settings.timeout), "--namespace",
                       place.nameSpace, url},
                      place.nameSpace);
}

} // namespace registering
