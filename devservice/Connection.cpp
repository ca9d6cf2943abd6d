#include "Connection.h"

#include "Api.h"
#include "Control.h"
#include "SignInPages.h"

#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>

#include <string>

namespace DevService {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;

namespace {

/// The longest head of a request, and the limit for reading ahead.
constexpr std::size_t buffer_size = std::size_t{128} << 10;

Reply AnswerClear(HttpExchange& io_exchange, Service& io_service) {
    if (io_exchange.Target().starts_with(Control::prefix))
        return Control(io_service).Answer(io_exchange);
    return Reply::PlainText("devservice: use this address as the proxy for HTTPS\n", 404);
}

Reply AnswerHost(HttpExchange& io_exchange, Service& io_service, Host i_host) {
    io_exchange.Observe(HostName(i_host), io_service.requests, io_service.faults);
    const std::optional<Fault>& fault = io_exchange.PlannedFault();
    if (fault && fault->IsMade()) {
        Reply made;
        made.status = 200;
        return made;
    }
    if (i_host == Host::Web)
        return SignInPages(io_service).Answer(io_exchange);
    return Api(io_service).Answer(io_exchange, i_host);
}

} // namespace

Connection::Connection(tcp::socket i_socket, Service& io_service)
    : m_socket(std::move(i_socket)), m_buffer(buffer_size), m_service(io_service), m_thread([this] { Run(); }) {}

Connection::~Connection() {
    m_thread.join();
}

void Connection::Interrupt() {
    const std::lock_guard lock(m_socket_mutex);
    boost::system::error_code ignored;
    if (m_socket.is_open())
        m_socket.shutdown(tcp::socket::shutdown_both, ignored);
}

void Connection::Run() {
    bool is_reset = false;
    try {
        boost::system::error_code ignored;
        m_socket.set_option(tcp::no_delay(true), ignored);
        ServeClear();
    } catch (const std::exception&) {
        is_reset = true; // the client disconnected or sent no HTTP; there is nobody to answer
    }
    Close(is_reset);
    m_is_done = true;
}

void Connection::ServeClear() {
    PlainStream stream(m_socket);
    while (true) {
        HttpExchange exchange(stream, m_buffer);
        if (!exchange.ReadHead())
            return;
        if (exchange.Method() == "CONNECT") {
            // Its headers, tokens among them, are forgotten here.
            if (const auto host = AnswerConnect(stream, exchange.Target()))
                ServeHost(*host);
            return;
        }
        exchange.Send(AnswerClear(exchange, m_service));
        if (!exchange.IsKeptAlive())
            return;
    }
}

void Connection::ServeHost(Host i_host) {
    asio::ssl::stream<tcp::socket&> tls(m_socket, m_service.authority.ServerContext());
    boost::system::error_code error;
    tls.handshake(asio::ssl::stream_base::server, m_buffer.data(), error); // with what was read ahead
    m_buffer.clear();
    if (error)
        return; // the client does not trust us, or has disconnected
    TlsStream stream(tls);
    while (true) {
        HttpExchange exchange(stream, m_buffer);
        if (!exchange.ReadHead())
            return;
        try {
            exchange.Send(AnswerHost(exchange, m_service, i_host));
        } catch (const ConnectionLost&) {
            exchange.RecordLoss();
            throw;
        }
        if (!exchange.IsKeptAlive())
            return;
    }
}

std::optional<Host> Connection::AnswerConnect(ByteStream& io_stream, std::string_view i_target) {
    constexpr std::string_view port = ":443";
    std::optional<Host> host;
    if (i_target.ends_with(port))
        host = FindHost(i_target.substr(0, i_target.size() - port.size()));
    const std::string_view reply = host ? "HTTP/1.1 200 Connection established\r\n\r\n"
                                        : "HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    asio::write(io_stream, asio::buffer(reply.data(), reply.size()));
    return host;
}

void Connection::Close(bool i_is_reset) {
    const std::lock_guard lock(m_socket_mutex);
    boost::system::error_code ignored;
    if (i_is_reset)
        m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
    m_socket.close(ignored);
}

} // namespace DevService
