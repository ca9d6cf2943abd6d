#include "Server.h"

#include <system_error>

namespace DevService {

namespace asio = boost::asio;
using tcp = asio::ip::tcp;

Server::Server(Service& io_service, std::uint16_t i_port)
    : m_service(io_service), m_acceptor(m_events, tcp::endpoint(asio::ip::address_v4::loopback(), i_port)) {}

std::uint16_t Server::Port() const {
    return m_acceptor.local_endpoint().port();
}

void Server::Run() {
    Accept();
    m_events.run();
    m_service.faults.Stop();
    for (Connection& connection : m_connections)
        connection.Interrupt();
    m_connections.clear();
}

void Server::Stop() {
    m_events.stop();
}

void Server::Accept() {
    m_acceptor.async_accept([this](const boost::system::error_code& i_error, tcp::socket i_socket) {
        m_connections.remove_if([](const Connection& i_connection) { return i_connection.IsDone(); });
        if (!i_error)
            Serve(std::move(i_socket));
        Accept();
    });
}

void Server::Serve(tcp::socket i_socket) {
    try {
        m_connections.emplace_back(std::move(i_socket), m_service);
    } catch (const std::system_error&) {
        // No thread is available: turn this client away, and go on serving the others.
    }
}

} // namespace DevService
