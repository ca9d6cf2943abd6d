#include "ServiceClient.h"

#include <boost/asio/read.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/read.hpp>

#include <limits>
#include <stdexcept>

namespace asio = boost::asio;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;

ServiceClient::ServiceClient(std::uint16_t i_port, const std::string& i_authority_pem, std::string_view i_host)
    : m_host(i_host), m_context(asio::ssl::context::tls_client), m_stream(m_events, m_context) {
    m_stream.next_layer().connect({asio::ip::address_v4::loopback(), i_port});
    asio::write(m_stream.next_layer(), asio::buffer("CONNECT " + m_host + ":443 HTTP/1.1\r\n\r\n"));
    http::response_parser<http::empty_body> parser;
    http::read_header(m_stream.next_layer(), m_buffer, parser);
    if (parser.get().result_int() != 200)
        throw std::runtime_error("CONNECT was refused");
    m_buffer.clear();
    m_context.add_certificate_authority(asio::buffer(i_authority_pem));
    // The stream was made with the context before the authority was in it; both share the store.
    m_stream.set_verify_mode(asio::ssl::verify_peer);
    m_stream.set_verify_callback(asio::ssl::host_name_verification(m_host));
    // What the macro SSL_set_tlsext_host_name does, without its casts.
    SSL_ctrl(m_stream.native_handle(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name, m_host.data());
    m_stream.handshake(asio::ssl::stream_base::client);
}

void ServiceClient::Send(std::string_view i_bytes) {
    asio::write(m_stream, asio::buffer(i_bytes.data(), i_bytes.size()));
}

Answer ServiceClient::Receive(boost::system::error_code& o_error) {
    http::response_parser<http::string_body> parser;
    parser.body_limit(std::numeric_limits<std::uint64_t>::max());
    http::read(m_stream, m_buffer, parser, o_error);
    return parser.release();
}

Answer ServiceClient::Receive() {
    boost::system::error_code error;
    Answer answer = Receive(error);
    if (error)
        throw boost::system::system_error(error);
    return answer;
}

Answer ServiceClient::Get(std::string_view i_target, std::string_view i_headers) {
    std::string request = "GET ";
    request.append(i_target).append(" HTTP/1.1\r\nHost: ").append(m_host).append("\r\n").append(i_headers);
    Send(request.append("\r\n"));
    return Receive();
}

Answer ServiceClient::Post(std::string_view i_target, std::string_view i_headers, std::string_view i_body) {
    std::string request = "POST ";
    request.append(i_target).append(" HTTP/1.1\r\nHost: ").append(m_host).append("\r\n").append(i_headers);
    request += "content-length:" + std::to_string(i_body.size()) + "\r\n\r\n";
    Send(request.append(i_body));
    return Receive();
}

void ServiceClient::Drop() {
    m_stream.next_layer().close();
}

std::string ExchangeClear(std::uint16_t i_port, std::string_view i_bytes) {
    asio::io_context events;
    tcp::socket socket(events);
    socket.connect({asio::ip::address_v4::loopback(), i_port});
    asio::write(socket, asio::buffer(i_bytes.data(), i_bytes.size()));
    socket.shutdown(tcp::socket::shutdown_send);
    std::string reply;
    boost::system::error_code end;
    asio::read(socket, asio::dynamic_buffer(reply), end);
    return reply;
}
