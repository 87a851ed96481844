// A TCP or TLS client that sends what it is told, well-formed or not, and waits no longer than a
// test should take.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

struct ssl_ctx_st; // OpenSSL's SSL_CTX and SSL
struct ssl_st;
struct ssl_session_st;

namespace embedded::http::test {

/// The first field of every reply, see RawClient::reply().
inline const std::string date = "Date: now\r\n";

using ClientTls = std::shared_ptr<ssl_ctx_st>;

/// A client's side of TLS: any server will do. With `certificate` and `key` (PEM): the client's.
ClientTls clientTls(const std::string& certificate = "", const std::string& key = "");
/// What a client uses where a test does not say: nothing, or, where everything goes over TLS, that.
ClientTls usualTls();

class RawClient {
  public:
    /// Connects to 127.0.0.1, from there or from `source`, and shakes hands if there is `tls`.
    /// Throws std::system_error when nobody listens.
    explicit RawClient(std::uint16_t port, const char* source = "127.0.0.1",
                       const ClientTls& tls = usualTls());
    RawClient(std::uint16_t port, const ClientTls& tls) : RawClient(port, "127.0.0.1", tls) {}
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    /// Sends all of `bytes`; false when the other side does not take them any more.
    bool send(const std::string& bytes);
    /// No more will be sent; replies can still be read.
    void closeSending();
    /// Closes so that the other side sees a reset, not an end.
    void reset();

    /// One reply: header and, by its content length, body. What came if the end came before. A Date
    /// field that says a time as it should reads `date`, here and in rest().
    std::string reply(bool withBody = true);
    /// Everything until the other side closes; ends with "(timeout)" when it does not.
    std::string rest();
    /// Exactly `size` bytes, or fewer if the end comes before.
    std::string read(std::size_t size);
    /// Whether the other side closes without sending anything more.
    bool closed();
    /// Whether it neither sends nor closes for a tenth of a second.
    bool hearsNothing() const;
    /// Shakes hands where the constructor has not; with `ticket`, as who was there before.
    void shakeHands(std::shared_ptr<ssl_st> tls, ssl_session_st* ticket = nullptr);
    /// OpenSSL's, to see more; null without TLS.
    ssl_st* tls() const { return _tls.get(); }
    /// What was wrong with the handshake; empty: nothing.
    const std::string& handshakeError() const { return _handshakeError; }
    /// Whether the other side has said, over TLS, that nothing more comes (close_notify).
    bool hasFarewell() const;

  private:
    /// Up to `size` bytes, 0 at the end, less than 0 for an error.
    long receive(char* bytes, std::size_t size);
    /// Whether something can be received within `time`.
    bool isReadable(std::chrono::milliseconds time) const;
    /// Adds to _buffered; false at the end or after the time.
    bool more();

    int _socket;
    std::shared_ptr<ssl_st> _tls;
    std::string _handshakeError;
    bool _timedOut = false;
    std::string _buffered;
};

} // namespace embedded::http::test
