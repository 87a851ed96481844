// Decides who a client is, and what he may do.
#pragma once

#include "limits/Limits.h"
#include "threads/Locks.h"
#include "users/Backoff.h"
#include "users/Credentials.h"
#include "users/LruCache.h"
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

/// All users. Verified credentials are remembered for a while. Failed attempts slow their name and
/// their address down, but never a user who is remembered. No call waits: an attempt that comes too
/// early is refused at once, and does not count as a failure. An unknown user costs as much time as
/// a known one.
///
/// Thread-safety: all functions may be called from several threads at once.
class Accounts {
  public:
    using Clock = std::chrono::steady_clock;
    explicit Accounts(std::vector<User> users, std::function<Clock::time_point()> now = Clock::now);

    /// The verdict, or Unverified if a hash has to be computed first. Takes next to no time.
    /// `address` is the client's.
    Verdict recall(const Credentials& credentials, std::string_view address);
    /// As recall(), but computes the hash if necessary, which takes some hundredths of a second;
    /// never returns Unverified. Throws std::bad_alloc, or std::runtime_error if the hash cannot be
    /// computed; that does not count as a failure of the user.
    Verdict verify(const Credentials& credentials, std::string_view address);
    /// The role of a user who has proved his identity in another way; none if there is no such
    /// user.
    std::optional<Role> roleOf(const std::string& name) const;
    /// Replaces all users, and forgets all remembered credentials. Nothing changes if it throws.
    void replace(std::vector<User> users);

  private:
    class Users;

    Verdict recall(const Credentials& credentials, std::string_view address,
                   const std::string& digest);
    std::shared_ptr<const Users> users() const;

    const std::function<Clock::time_point()> _now;
    const Digester _digest;
    mutable threads::Mutex _mutex;
    std::shared_ptr<const Users> _users GUARDED_BY(_mutex);
    // Until when verified credentials are remembered, by their digests, so that the hash of a
    // password, which is slow on purpose, is not computed for each request.
    LruCache<std::string, Clock::time_point> _remembered GUARDED_BY(_mutex){limits::remembered};
    Backoff _slowNames GUARDED_BY(_mutex);
    Backoff _slowAddresses GUARDED_BY(_mutex);
};

/// The key by which failures from `address` are counted: the address, or the /64 network of an IPv6
/// address, since a client can choose any address in that.
std::string networkOf(std::string_view address);

} // namespace embedded::users
