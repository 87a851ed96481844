#include "users/Password.h"

#include "limits/Limits.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <crypt.h>
#include <memory>
#include <openssl/crypto.h>
#include <stdexcept>
#include <system_error>

namespace embedded::users {
namespace {

constexpr const char* yescrypt = "$y$";

static_assert(limits::password < CRYPT_MAX_PASSPHRASE_SIZE, "the library cuts or refuses others");

/// What the library works in: large, and left without a trace of the password.
class Workspace {
  public:
    Workspace() : _data(std::make_unique<crypt_data>()) {}
    ~Workspace() { OPENSSL_cleanse(_data.get(), sizeof *_data); }
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// The hash of `password` with method, cost and salt of `setting`. Throws std::runtime_error.
    std::string hash(std::string password, const std::string& setting) {
        const char* const hash = ::crypt_r(password.c_str(), setting.c_str(), _data.get());
        OPENSSL_cleanse(password.data(), password.size());
        // A failure is told by a text that is no hash, and not reliably by errno.
        if (hash == nullptr || hash[0] == '*')
            throw std::runtime_error(
                "a password cannot be hashed: no memory, or a setting that the "
                "crypt library does not take");
        return hash;
    }

  private:
    std::unique_ptr<crypt_data> _data;
};

bool isOfHash(char c) {
    return c > ' ' && c < 0x7F && c != ':' && c != '*' && c != '!' && c != '\\' && c != ';';
}

/// A method, and how long what stands behind its last '$' is: a hash that was cut off would keep
/// out its user, who could not know why.
struct Method {
    std::string_view prefix;
    std::size_t last;
};
constexpr std::array<Method, 6> methods{
    {{yescrypt, 43}, {"$gy$", 43}, {"$7$", 43}, {"$6$", 86}, {"$2b$", 53}, {"$2y$", 53}}};

} // namespace

std::string passwordFault(std::string_view password) {
    if (password.empty())
        return "an empty password is none";
    if (password.size() > limits::password)
        return "a password has " + std::to_string(limits::password) + " bytes at most";
    if (text::findInvalidUtf8(password) != std::string_view::npos)
        return "a password has to be UTF-8";
    if (text::visible(password) != password)
        return "a password has no control characters";
    return {};
}

std::string hashed(std::string_view password) {
    const std::string fault = passwordFault(password);
    if (!fault.empty())
        throw std::invalid_argument(fault);
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> setting{};
    if (::crypt_gensalt_rn(yescrypt, 0, nullptr, 0, setting.data(), setting.size()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "no salt for a password");
    return Workspace().hash(std::string(password), setting.data());
}

bool matches(std::string_view password, const std::string& hash) {
    const bool possible = passwordFault(password).empty();
    const std::string own =
        Workspace().hash(possible ? std::string(password) : std::string("?"), hash);
    return CRYPTO_memcmp(own.data(), hash.data(), std::min(own.size(), hash.size())) == 0 &&
           own.size() == hash.size() && possible;
}

std::string hashFault(const std::string& hash) {
    if (hash.empty() || !std::all_of(hash.begin(), hash.end(), isOfHash) ||
        ::crypt_checksalt(hash.c_str()) != CRYPT_SALT_OK)
        return "not a hash of a method that crypt(5) knows and thinks safe";
    const auto starts = [&](const Method& method) {
        return hash.compare(0, method.prefix.size(), method.prefix) == 0;
    };
    const auto* const method = std::find_if(methods.begin(), methods.end(), starts);
    if (method == methods.end())
        return "not a hash of a method that is known here, such as yescrypt ($y$)";
    if (hash.size() - hash.rfind('$') - 1 != method->last)
        return "a hash that is cut off or too long";
    return {};
}

} // namespace embedded::users
