// Who may ask this server, and who may write.
#pragma once

#include "http/Message.h"
#include "users/Accounts.h"

#include <embedding/Operation.h>

#include <functional>
#include <memory>
#include <string>

namespace embedded::cimhost {

struct AccessRules {
    std::shared_ptr<users::Accounts> accounts; ///< null: nobody is asked who he is
    bool anonymousRead = false;                ///< who does not say who he is may read
    unsigned lane = 0;                         ///< in which passwords are verified
};

/// Answers a request of a caller.
using Answering = std::function<http::Answer(http::Request&&, const Pegasus::embedding::Caller&)>;

/// A handler that lets `answering` answer those who may ask.
///
/// Without accounts everybody may ask and write, and has no name; what a client says of who it is
/// is not looked at, and the log says so once. With accounts each request comes from a user, by a
/// certificate, which is looked at first, or by credentials of the scheme Basic. Others get a 401,
/// those with a certificate a 403; who has to wait after failures, or comes while too many
/// passwords wait to be verified, a 503. What users may is told by their role.
///
/// `log` takes a line for whoever runs the server, and the kind of line that it is, one of few.
/// Neither has a password. Thread-safety: as `answering` and `log`.
http::Handler guarded(const AccessRules& rules, Answering answering,
                      std::function<void(const std::string& kind, const std::string& line)> log);

/// What is wrong with a port that others than this machine can reach (`isRemote`), encrypted
/// (`isSecure`) or not, with users or without; empty: nothing.
std::string exposureFault(bool isRemote, bool isSecure, bool hasUsers);

} // namespace embedded::cimhost
