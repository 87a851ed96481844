// A TCP client that sends what it is told, well-formed or not, and waits no longer than a test
// should take.
#pragma once

#include <cstdint>
#include <string>

namespace embedded::http::test {

/// The first field of every reply, see RawClient::reply().
extern const std::string date;

class RawClient {
  public:
    /// Connects to 127.0.0.1, from there or from `source`. Throws std::system_error when nobody
    /// listens.
    explicit RawClient(std::uint16_t port, const char* source = "127.0.0.1");
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

  private:
    /// Adds to _buffered; false at the end or after the time.
    bool more();

    int _socket;
    bool _timedOut = false;
    std::string _buffered;
};

} // namespace embedded::http::test
