// What comes in and what goes out, and who makes the one from the other.
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

/// Appends the next piece of a body to `out`; false: there is no more, and nothing was appended.
/// Called on an I/O thread, so a piece is made without waiting and is no larger than a fraction of
/// a millisecond's work (64 KiB, say); a piece is asked for when the one before it is written. May
/// be destroyed before it has come to its end. If it throws, the connection ends without the last
/// chunk.
using BodySource = std::function<bool(std::string& out)>;

/// The server adds Date, and what the connection needs (the content length when it is not among
/// `fields`, Transfer-Encoding, Connection when it closes); everything else is the handler's.
struct Reply {
    unsigned status = 200;
    std::string reason = "OK";
    Fields fields;
    std::string body = {}; ///< the whole body, or its first piece when there is a `rest`
    /// What follows `body`, sent in chunks; there is no content length among `fields` then. To a
    /// client that knows no chunks (HTTP/1.0) everything is sent whole, up to a limit.
    BodySource rest = nullptr;
};

struct Answer;

/// What takes its time, or may wait, and so is done on a worker thread.
struct Work {
    /// `make` answers with a reply, or with further work, of other lanes. What it throws becomes a
    /// 500 and a line in the log.
    template <class Make>
    Work(Make how, std::vector<unsigned> where = {}, std::function<Reply()> tooLate = nullptr)
        : make(std::move(how)), lanes(std::move(where)), late(std::move(tooLate)) {}

    std::function<Answer()> make;
    /// The lanes (Options::lanes) in which it takes a place while it is done, each once.
    std::vector<unsigned> lanes;
    /// What is replied when it has waited for its places for Options::laneWait; none: a 503. Called
    /// on an I/O thread.
    std::function<Reply()> late;
};

/// A reply, or the work that makes it.
struct Answer : std::variant<Reply, Work> {
    using std::variant<Reply, Work>::variant;
};

/// Called on an I/O thread, several at once, and must not block: what may do so is returned as
/// Work. What it throws becomes a 500 and a line in the log.
using Handler = std::function<Answer(Request&&)>;

} // namespace embedded::http
