#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What the service answered.
using Answer = boost::beast::http::response<boost::beast::http::string_body>;

/// A client's connection to one of the hosts: CONNECT to the service, then TLS with its certificate verified.
class ServiceClient {
public:
    ServiceClient(std::uint16_t i_port, const std::string& i_authority_pem, std::string_view i_host);

    /// Sends bytes as they are.
    void Send(std::string_view i_bytes);

    /// Reads one reply. @param o_error set, and the answer cut off, when it does not come to its end
    Answer Receive(boost::system::error_code& o_error);
    Answer Receive();

    /// Sends a GET. @param i_headers whole lines, each with its "\r\n"
    Answer Get(std::string_view i_target, std::string_view i_headers = {});

    /// Sends a POST with that body. @param i_headers whole lines, each with its "\r\n"
    Answer Post(std::string_view i_target, std::string_view i_headers, std::string_view i_body);

    /// Disconnects abruptly.
    void Drop();

private:
    std::string m_host;
    boost::asio::io_context m_events;
    boost::asio::ssl::context m_context;
    boost::asio::ssl::stream<boost::asio::ip::tcp::socket> m_stream;
    boost::beast::flat_buffer m_buffer;
};

/// Sends bytes in the clear and returns all that comes back until the service closes the connection.
std::string ExchangeClear(std::uint16_t i_port, std::string_view i_bytes);
