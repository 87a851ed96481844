// Who a client is, and what he may do.
#pragma once

#include "threads/Locks.h"
#include "users/Backoff.h"
#include "users/CredentialCache.h"
#include "users/Credentials.h"
#include "users/UsersFile.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::users {

enum class Outcome {
    Remembered,    ///< the user was verified a short time ago
    Verified,      ///< the password is his
    Unverified,    ///< verify() would tell
    WrongPassword, ///< also if the user has none
    UnknownUser,
    TooEarly, ///< there were failures, and the time to wait after them is not over
};

struct Verdict {
    Outcome outcome;
    Role role = Role::Read;             ///< of Remembered and Verified
    std::chrono::seconds retryAfter{0}; ///< of TooEarly
};

/// The users that there are. What was verified is remembered for a while; who fails, by name or by
/// address, is slowed, but never whom it remembers. Nobody waits here: who comes too early is told
/// so, and it does not count as a failure. An unknown user costs what a known one does.
///
/// Thread-safety: all functions may be called from several threads at once.
class Accounts {
  public:
    using Clock = std::chrono::steady_clock;
    explicit Accounts(std::vector<User> users, std::function<Clock::time_point()> now = Clock::now);

    /// What can be said without looking at a hash. Takes no time to speak of. `address`: the
    /// client's.
    Verdict recall(const Credentials& credentials, std::string_view address);
    /// Looks at the hash if recall() says Unverified; never answers that. Takes some hundredths of
    /// a second. Throws std::bad_alloc, or std::runtime_error
    /// if the hash cannot be computed; that is no failure of the user.
    Verdict verify(const Credentials& credentials, std::string_view address);
    /// The role of a user who has proved otherwise who he is; none if there is no such user.
    std::optional<Role> roleOf(const std::string& name) const;
    /// From now on there are these users; what was remembered is forgotten. Nothing changes if it
    /// throws.
    void replace(std::vector<User> users);

  private:
    class Users;

    Verdict recall(const Credentials& credentials, std::string_view address,
                   const CredentialCache::Digest& digest);
    std::shared_ptr<const Users> users() const;

    const std::function<Clock::time_point()> _now;
    const Digester _digest;
    mutable threads::Mutex _mutex;
    std::shared_ptr<const Users> _users GUARDED_BY(_mutex);
    CredentialCache _remembered GUARDED_BY(_mutex);
    Backoff _slowNames GUARDED_BY(_mutex);
    Backoff _slowAddresses GUARDED_BY(_mutex);
};

/// Whom an address stands for when it is slowed: itself, but of IPv6 the network of 64 bits, in
/// which a client may have any address that it likes.
std::string networkOf(std::string_view address);

} // namespace embedded::users
