// Requests, replies, and the handler that makes a reply from a request.
#pragma once

#include "http/Fields.h"

#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace embedded::http {

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
    Fields fields;
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

} // namespace embedded::http
