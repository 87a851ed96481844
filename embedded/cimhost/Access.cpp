#include "cimhost/Access.h"

#include "cimhost/Log.h"
#include "limits/Limits.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <embedding/Text.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>

namespace embedded::cimhost {
namespace {

using http::Answer;
using http::Reply;
using http::Request;
using Pegasus::embedding::Caller;
using users::Credentials;
using users::Outcome;
using users::Verdict;

constexpr const char* challenge = R"(Basic realm="cimhost", charset="UTF-8")";

/// A name that a client gave, as a line of the log can have it: nothing in it looks like the rest
/// of the line.
std::string quoted(const std::string& name) {
    std::string shown = text::visible(name.substr(0, limits::userName));
    for (std::size_t at = 0; (at = shown.find('"', at)) != std::string::npos; at += 4)
        shown.replace(at, 1, "\\x22");
    return '"' + shown + (name.size() > limits::userName ? "..." : "") + '"';
}

class Access {
  public:
    Access(AccessRules rules, Answering answering)
        : _rules(std::move(rules)), _answering(std::move(answering)) {}

    Answer answer(Request&& request) {
        if (!_rules.accounts)
            return withoutUsers(std::move(request));
        if (!request.peer.certificateName.empty())
            return withCertificate(std::move(request));
        const auto isAuthorization = [](const auto& field) {
            return text::equalIgnoringCase(field.first, "Authorization");
        };
        const auto fields =
            std::count_if(request.fields.begin(), request.fields.end(), isAuthorization);
        if (fields == 0 && _rules.anonymousRead)
            return _answering(std::move(request), {Pegasus::String(), false});
        if (fields == 0)
            return unauthorized();
        const std::optional<Credentials> credentials =
            users::basicCredentials(*http::findField(request.fields, "Authorization"));
        if (!credentials || fields != 1) {
            tell(request, "refused: no credentials of the scheme Basic, or no valid ones");
            return unauthorized();
        }
        return withCredentials(std::move(request), *credentials);
    }

  private:
    Answer withoutUsers(Request&& request) {
        if (http::findField(request.fields, "Authorization") != nullptr &&
            !_ignoredTold.exchange(true))
            warnOften("credentials",
                      request.peer.address +
                          " sends credentials; nobody looks at them, as there are no "
                          "users (--users); this is told once");
        return _answering(std::move(request), Caller());
    }

    Answer withCertificate(Request&& request) {
        const std::string name = request.peer.certificateName;
        if (const std::optional<users::Role> role = _rules.accounts->roleOf(name))
            return admitted(std::move(request), name, *role);
        tell(request, "certificate of " + quoted(name) + " refused: no such user");
        return Reply{403, "Forbidden"};
    }

    Answer withCredentials(Request&& request, const Credentials& credentials) {
        const Verdict known = _rules.accounts->recall(credentials, request.peer.address);
        if (known.outcome != Outcome::Unverified)
            return judged(known, std::move(request), credentials.name);
        std::shared_ptr<const void> waiting = _waiting;
        if (_waiting.use_count() - 1 > long{limits::placesToVerify + limits::waitingToBeVerified}) {
            tell(request, "user " + quoted(credentials.name) +
                              " turned away: too many passwords wait to be verified");
            return unavailable(std::chrono::seconds(1));
        }
        auto verify = [this, credentials, waiting = std::move(waiting),
                       request = std::move(request)]() mutable {
            const Verdict verdict = _rules.accounts->verify(credentials, request.peer.address);
            return judged(verdict, std::move(request), credentials.name);
        };
        return http::Work(std::move(verify), {_rules.lane});
    }

    Answer judged(const Verdict& verdict, Request&& request, const std::string& name) const {
        if (verdict.outcome == Outcome::Remembered)
            return admitted(std::move(request), name, verdict.role);
        const std::string user = "user " + quoted(name);
        switch (verdict.outcome) {
        case Outcome::Verified:
            spdlog::info("{}: {} verified", request.peer.address, user);
            return admitted(std::move(request), name, verdict.role);
        case Outcome::TooEarly:
            tell(request, user + " turned away: too early after failures");
            return unavailable(verdict.retryAfter);
        case Outcome::WrongPassword:
            tell(request, user + " refused: wrong password");
            return unauthorized();
        default:
            tell(request, user + " refused: no such user");
            return unauthorized();
        }
    }

    Answer admitted(Request&& request, const std::string& user, users::Role role) const {
        return _answering(std::move(request),
                          {Pegasus::embedding::fromUtf8(user), role == users::Role::Write});
    }

    static Reply unauthorized() {
        return Reply{401, "Unauthorized", {{"WWW-Authenticate", challenge}}};
    }

    static Reply unavailable(std::chrono::seconds time) {
        return Reply{503, "Service Unavailable", {{"Retry-After", std::to_string(time.count())}}};
    }

    static void tell(const Request& request, const std::string& what) {
        warnOften("users", request.peer.address + ": " + what);
    }

    const AccessRules _rules;
    const Answering _answering;
    /// Whoever waits for a password to be verified has a copy: as many wait as there are copies.
    const std::shared_ptr<const void> _waiting = std::make_shared<char>();
    std::atomic<bool> _ignoredTold{false};
};

} // namespace

http::Handler guarded(const AccessRules& rules, Answering answering) {
    const auto access = std::make_shared<Access>(rules, std::move(answering));
    return [access](Request&& request) { return access->answer(std::move(request)); };
}

} // namespace embedded::cimhost
