// Decides who may ask this server, and who may write.
#pragma once

#include "http/Message.h"
#include "users/Accounts.h"

#include <embedding/Operation.h>

#include <functional>
#include <memory>
#include <string>

namespace embedded::cimhost {

struct AccessRules {
    std::shared_ptr<users::Accounts> accounts; ///< null: there are no users
    bool anonymousRead = false;                ///< clients without credentials may read
    unsigned lane = 0;                         ///< the lane in which passwords are verified
};

/// Answers a request of a caller.
using Answering = std::function<http::Answer(http::Request&&, const Pegasus::embedding::Caller&)>;

/// A handler that passes the requests of those who may ask to `answering`.
///
/// Without accounts every client may ask and write, and has no name; credentials are ignored, and
/// the log says so once. With accounts each request needs a user, who is known by a certificate,
/// which counts first, or by credentials of the scheme Basic. Others get a 401, or a 403 if they
/// have a certificate. A client gets a 503 if he has to wait after failures, or if too many
/// passwords wait to be verified. A user's role says whether he may write.
///
/// `log` takes a line and its kind, of which there are few. No line has a password. Thread-safety:
/// as `answering` and `log`.
http::Handler guarded(const AccessRules& rules, Answering answering,
                      std::function<void(const std::string& kind, const std::string& line)> log);

/// What is wrong with a port that other machines can reach (`isRemote`), encrypted (`isSecure`) or
/// not, with users or without; empty if nothing is.
std::string exposureFault(bool isRemote, bool isSecure, bool hasUsers);

} // namespace embedded::cimhost
