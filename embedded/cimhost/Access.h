// Decides who may ask this server, and who may write.
#pragma once

#include "http/Message.h"
#include "users/Accounts.h"

#include <embedding/Operation.h>

#include <functional>
#include <memory>

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
/// No line of the log has a password. Thread-safety: as `answering`.
http::Handler guarded(const AccessRules& rules, Answering answering);

} // namespace embedded::cimhost
