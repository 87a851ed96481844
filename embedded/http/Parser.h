// Beast's parser, which here fills a Request. It copies each byte once.
#pragma once

#include "http/Message.h"

#include <boost/beast/http/basic_parser.hpp>

#include <cstdint>
#include <utility>

namespace embedded::http {

class Parser : public boost::beast::http::basic_parser<true> {
  public:
    Request& request() { return _request; }

  private:
    using Error = boost::beast::error_code;
    using View = boost::beast::string_view;
    using Field = boost::beast::http::field;

    static std::string text(View view) { return {view.data(), view.size()}; }

    void on_request_impl(boost::beast::http::verb, View verb, View target, int version,
                         Error&) override {
        _request.verb = text(verb);
        _request.target = text(target);
        _request.version = static_cast<unsigned>(version);
        _request.fields.reserve(12); // what most clients send
    }
    // Fields after the body are ignored (RFC 9110 clause 6.5.1: only fields that are known to be
    // safe there may be merged into the header, and this server knows none).
    void on_field_impl(Field, View name, View value, Error&) override {
        if (!is_header_done())
            _request.fields.emplace_back(text(name), text(value));
    }
    void on_body_init_impl(const boost::optional<std::uint64_t>& length, Error&) override {
        _request.body.reserve(static_cast<std::size_t>(length.value_or(0))); // within the limit
    }
    std::size_t on_body_impl(View body, Error&) override {
        _request.body.append(body.data(), body.size());
        return body.size();
    }
    std::size_t on_chunk_body_impl(std::uint64_t, View body, Error& error) override {
        return on_body_impl(body, error);
    }
    void on_response_impl(int, View, int, Error&) override {}
    void on_header_impl(Error&) override {}
    void on_chunk_header_impl(std::uint64_t, View, Error&) override {}
    void on_finish_impl(Error&) override {}

    Request _request;
};

} // namespace embedded::http
