#include "users/Accounts.h"

#include "text/KeyedHash.h"
#include "users/Password.h"

#include <algorithm>
#include <arpa/inet.h>
#include <map>
#include <utility>

namespace embedded::users {

/// Users as they were read; immutable.
class Accounts::Users {
  public:
    explicit Users(std::vector<User> users) {
        for (User& user : users) {
            if (user.hash != noPassword)
                _hashes.push_back(user.hash);
            std::string name = user.name;
            _byName.emplace(std::move(name), std::move(user));
        }
        if (_hashes.empty())
            _hashes.push_back(hashed("nobody's"));
    }

    const User* find(const std::string& name) const {
        const auto found = _byName.find(name);
        return found == _byName.end() ? nullptr : &found->second;
    }
    /// A hash that costs what those of users do: that of one of them, for each name the same.
    const std::string& decoy(const std::string& name) const {
        return _hashes[text::keyedHash(name) % _hashes.size()];
    }

  private:
    std::map<std::string, User> _byName;
    std::vector<std::string> _hashes;
};

Accounts::Accounts(std::vector<User> users, std::function<Clock::time_point()> now)
    : _now(std::move(now)), _users(std::make_shared<const Users>(std::move(users))) {}

Verdict Accounts::recall(const Credentials& credentials, std::string_view address) {
    return recall(credentials, address, _digest(credentials));
}

Verdict Accounts::recall(const Credentials& credentials, std::string_view address,
                         const std::string& digest) {
    const Clock::time_point now = _now();
    const threads::Lock lock(_mutex);
    const User* const user = _users->find(credentials.name);
    const Clock::time_point* const until = _remembered.find(digest);
    if (user != nullptr && until != nullptr && *until > now) {
        _remembered.touch(digest) = now + limits::rememberedTime;
        return {Outcome::Remembered, user->role};
    }
    const std::chrono::seconds wait = std::max(_slowNames.wait(credentials.name, now),
                                               _slowAddresses.wait(networkOf(address), now));
    if (wait.count() > 0)
        return {Outcome::TooEarly, Role::Read, wait};
    return {Outcome::Unverified};
}

Verdict Accounts::verify(const Credentials& credentials, std::string_view address) {
    const std::string digest = _digest(credentials);
    const Verdict known = recall(credentials, address, digest);
    if (known.outcome != Outcome::Unverified)
        return known;
    const std::shared_ptr<const Users> users = this->users();
    const User* const user = users->find(credentials.name);
    const bool hasPassword = user != nullptr && user->hash != noPassword;
    const bool matched =
        matches(credentials.password, hasPassword ? user->hash : users->decoy(credentials.name));
    const Clock::time_point now = _now();
    const threads::Lock lock(_mutex);
    if (matched && hasPassword) {
        _slowNames.forget(credentials.name);
        if (_users == users)
            _remembered.touch(digest) = now + limits::rememberedTime;
        return {Outcome::Verified, user->role};
    }
    _slowNames.failed(credentials.name, now);
    _slowAddresses.failed(networkOf(address), now);
    return {user != nullptr ? Outcome::WrongPassword : Outcome::UnknownUser};
}

std::optional<Role> Accounts::roleOf(const std::string& name) const {
    const std::shared_ptr<const Users> users = this->users();
    const User* const user = users->find(name);
    return user == nullptr ? std::nullopt : std::optional(user->role);
}

void Accounts::replace(std::vector<User> users) {
    auto made = std::make_shared<const Users>(std::move(users));
    const threads::Lock lock(_mutex);
    _users = std::move(made);
    _remembered.clear();
}

std::shared_ptr<const Accounts::Users> Accounts::users() const {
    const threads::Lock lock(_mutex);
    return _users;
}

std::string networkOf(std::string_view address) {
    in6_addr bytes{};
    if (::inet_pton(AF_INET6, std::string(address).c_str(), &bytes) != 1)
        return std::string(address);
    if (IN6_IS_ADDR_V4MAPPED(&bytes))
        return std::string(address.substr(address.rfind(':') + 1));
    return {reinterpret_cast<const char*>(bytes.s6_addr), 8};
}

} // namespace embedded::users
