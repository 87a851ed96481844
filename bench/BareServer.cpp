// An HTTP server that does nothing but HTTP: it reads a request with Boost.Beast and answers bytes
// that it was given. The target of the request ("/0", "/1", ...) says which.
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using Error = boost::system::error_code;

namespace {

using Replies = std::vector<std::string>;

class Connection : public std::enable_shared_from_this<Connection> {
  public:
    Connection(tcp::socket socket, const Replies& replies)
        : _socket(std::move(socket)), _replies(replies) {}

    void read() {
        _request = {};
        http::async_read(_socket, _in, _request,
                         [self = shared_from_this()](const Error& error, std::size_t) {
                             if (!error)
                                 self->write();
                         });
    }

  private:
    void write() {
        const std::size_t which =
            std::strtoul(std::string(_request.target()).c_str() + 1, nullptr, 10);
        asio::async_write(_socket, asio::buffer(_replies[which % _replies.size()]),
                          [self = shared_from_this()](const Error& error, std::size_t) {
                              if (!error)
                                  self->read();
                          });
    }

    tcp::socket _socket;
    const Replies& _replies;
    boost::beast::flat_buffer _in;
    http::request<http::string_body> _request;
};

void accept(tcp::acceptor& acceptor, const Replies& replies) {
    acceptor.async_accept([&](const Error& error, tcp::socket socket) {
        if (!error) {
            socket.set_option(tcp::no_delay(true));
            std::make_shared<Connection>(std::move(socket), replies)->read();
        }
        accept(acceptor, replies);
    });
}

int usage(const char* program) {
    std::cerr
        << "usage: " << program << " THREADS PORT-FILE REPLY-FILE...\n"
        << "Listens on a free port of 127.0.0.1, writes it to PORT-FILE, and answers a request\n"
        << "for /0 with the bytes of the first REPLY-FILE, for /1 with those of the second, ...\n"
        << "Ends when its standard input does.\n";
    return 2;
}

} // namespace

int main(int count, char** arguments) {
    const int threads = count > 3 ? std::atoi(arguments[1]) : 0;
    if (threads < 1)
        return usage(arguments[0]);
    Replies replies;
    for (int i = 3; i < count; ++i) {
        std::ifstream in(arguments[i], std::ios::binary);
        std::ostringstream bytes;
        if (!in || !(bytes << in.rdbuf())) {
            std::cerr << arguments[0] << ": " << arguments[i] << ": cannot be read, or is empty\n";
            return 1;
        }
        replies.push_back(bytes.str());
    }
    asio::io_context io(threads);
    tcp::acceptor acceptor(io, {asio::ip::address_v4::loopback(), 0});
    accept(acceptor, replies);
    const std::string unfinished = std::string(arguments[2]) + ".new";
    std::ofstream(unfinished) << acceptor.local_endpoint().port() << std::endl;
    if (std::rename(unfinished.c_str(), arguments[2]) != 0) {
        std::cerr << arguments[0] << ": " << arguments[2] << ": cannot be written\n";
        return 1;
    }
    std::vector<std::thread> pool;
    for (int i = 0; i < threads; ++i)
        pool.emplace_back([&io] { io.run(); });
    while (std::cin.get() != EOF) {
    }
    io.stop();
    for (std::thread& thread : pool)
        thread.join();
    return 0;
}
