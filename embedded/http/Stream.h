// A client's socket, with TLS over it or without.
#pragma once

#include "http/Tls.h"

#include <boost/asio/basic_stream_socket.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/system/error_code.hpp>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace embedded::http {

/// Reads and writes the plain text of the conversation, one read or write at a time. It meets
/// Asio's requirements of a stream, so that Asio's functions can use it.
///
/// Thread-safety: none.
class Stream {
  public:
    using executor_type = boost::asio::io_context::executor_type;
    using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp, executor_type>;
    using Error = boost::system::error_code;

    /// `tls`: for TLS, else null. Throws std::bad_alloc.
    Stream(Socket socket, const TlsContext* tls);

    executor_type get_executor() { return _socket.get_executor(); }
    /// The socket beneath TLS.
    Socket& socket() { return _socket; }
    bool isSecure() const { return _tls.has_value(); }

    /// Comes before the first read or write. REQUIRES: isSecure().
    template <class Handler>
    void async_handshake(Handler&& handler) {
        _tls->async_handshake(boost::asio::ssl::stream_base::server,
                              std::forward<Handler>(handler));
    }
    template <class Buffers, class Handler>
    void async_read_some(const Buffers& buffers, Handler&& handler) {
        if (_tls)
            _tls->async_read_some(buffers, std::forward<Handler>(handler));
        else
            _socket.async_read_some(buffers, std::forward<Handler>(handler));
    }
    template <class Buffers, class Handler>
    void async_write_some(const Buffers& buffers, Handler&& handler) {
        if (_tls)
            _tls->async_write_some(buffers, std::forward<Handler>(handler));
        else
            _socket.async_write_some(buffers, std::forward<Handler>(handler));
    }

    /// The last bytes to write to the socket, so that the client knows that nothing is missing
    /// (close_notify); empty without TLS or before the end of its handshake. Nothing may be read or
    /// written through the stream afterwards. The stream owns the text.
    std::string_view farewell() noexcept;

    /// After the handshake: the common name (CN) in the subject of the certificate that the client
    /// has proved to own. Empty if the client has no certificate, or the subject has no CN,
    /// several, or one that is not a line of UTF-8. REQUIRES: isSecure().
    std::string peerName();
    /// Why the handshake has failed with `error`, for the log.
    std::string handshakeProblem(const Error& error);
    /// Whether the client speaks HTTP where `error` says that TLS was expected.
    static bool isPlainHttp(const Error& error);

  private:
    Socket _socket;
    std::optional<boost::asio::ssl::stream<Socket&>> _tls;
    std::array<char, 128> _farewell; // longer than any alert
};

} // namespace embedded::http
