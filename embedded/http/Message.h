// Requests and replies: their header fields, the handlers between them, and replies as bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace embedded::http {

/// Header fields in the order in which they came or shall go; names keep their spelling.
using Fields = std::vector<std::pair<std::string, std::string>>;

/// The value of the first field named `name` (case ignored), or nullptr.
const std::string* findField(const Fields& fields, const std::string& name);

/// A field value of the form `value; name=value; ...` (RFC 9110 clause 5.6.6), quotes removed.
struct Parametrized {
    std::string value;
    Fields parameters;
};

Parametrized parametrized(const std::string& text);

/// `text` with its %-escapes resolved; throws std::invalid_argument for one that is not two
/// hexadecimal digits.
std::string percentDecoded(const std::string& text);

/// `text` with everything escaped but the unreserved characters of RFC 3986 clause 2.3.
std::string percentEncoded(const std::string& text);

/// Who sent a request, as far as the connection tells.
struct Peer {
    std::string address;         ///< a number, without the port; empty: already gone
    bool isSecure = false;       ///< the request came over TLS
    std::string certificateName; ///< the CN of the certificate that it proved to have; empty: none
};

struct Request {
    std::string verb; ///< "POST", "M-POST", ... as it came
    std::string target;
    unsigned version = 11; ///< 10 or 11
    Fields fields;
    std::string body;
    Peer peer = {};
};

/// Appends the next piece of a body to `out`, or returns false, with nothing appended, at the end.
/// The server calls it on an I/O thread, when it has written the piece before: it must not wait,
/// and one piece should take a fraction of a millisecond (64 KiB, say). The server may destroy it
/// before the end. If it throws, the server closes the connection without the last chunk.
using BodySource = std::function<bool(std::string& out)>;

/// The server adds Date, Content-Length (unless it is among `fields`) or Transfer-Encoding, and
/// Connection when it closes; the handler sets everything else.
struct Reply {
    unsigned status = 200;
    std::string reason = "OK";
    Fields fields = {};
    std::string body = {}; ///< the whole body, or its first piece when there is a `rest`
    /// What follows `body`, in chunks; `fields` must have no content length then. A client that
    /// knows no chunks (HTTP/1.0) gets everything whole, up to a limit.
    BodySource rest = nullptr;
};

struct Answer;

/// Makes a reply on a worker thread, because that takes time or may wait.
struct Work {
    /// `make` returns a reply, or further work in other lanes. If it throws, the client gets a 500
    /// and the log a line.
    template <class Make>
    Work(Make how, std::vector<unsigned> where = {}, std::function<Reply()> tooLate = nullptr)
        : make(std::move(how)), lanes(std::move(where)), late(std::move(tooLate)) {}

    std::function<Answer()> make;
    /// The lanes (Options::lanes) in which the work takes a place while it runs, each once.
    std::vector<unsigned> lanes;
    /// Makes the reply if the work has waited for its places for Options::laneWait; without it, the
    /// client gets a 503. Called on an I/O thread.
    std::function<Reply()> late;
};

/// A reply, or the work that makes it.
struct Answer : std::variant<Reply, Work> {
    using std::variant<Reply, Work>::variant;
};

/// The server calls it on several I/O threads at once. It must not block: what may block is
/// returned as Work. If it throws, the client gets a 500 and the log a line.
using Handler = std::function<Answer(Request&&)>;

/// Sees a reply before it is sent, and may put another source in the place of its `rest`.
using ReplyWatch = std::function<void(Reply& reply)>;

/// Calls `watch` with each request, then `handler`, and then, on the thread that made the reply,
/// what `watch` returned. Thread-safety: as `handler` and `watch`.
Handler watched(Handler handler, std::function<ReplyWatch(const Request&)> watch);

/// What the Connection field of a reply says; Silent leaves it out, which an HTTP/1.1 client
/// reads as "stays open".
enum class Persistence { Silent, KeepAlive, Close };

/// The header of `reply` with the empty line that ends it: Date unless `date` is empty, the reply's
/// fields as they are, Content-Length (unless it is among the fields) or Transfer-Encoding, then
/// Connection. Throws std::invalid_argument for a reason or field that contains a line end, and for
/// a content length of a body in pieces.
std::string wireHeader(const Reply& reply, Persistence persistence, std::string_view date = {});

/// HOST:PORT as a URL has it (RFC 3986 clause 3.2): an IPv6 address stands in brackets.
std::string authority(const std::string& host, std::uint16_t port);

/// `time` as the value of a Date field (IMF-fixdate, RFC 9110 clause 5.6.7): English and in GMT,
/// whatever the locale and the time zone.
std::string httpDate(std::time_t time);

/// The text of the exception that is being handled. REQUIRES: called within a catch clause.
std::string thrownText();

} // namespace embedded::http
