#pragma once

#include "Connection.h"
#include "Service.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <cstdint>
#include <list>

namespace DevService {

/// Accepts connections on the loopback interface, each served by a thread.
class Server {
public:
    /// Listens from here on. @param i_port 0: a free one
    /// @throws boost::system::system_error when the port is taken
    Server(Service& io_service, std::uint16_t i_port);

    std::uint16_t Port() const;

    /// For waiting for other events, such as signals, on the accepting thread.
    boost::asio::io_context& Events() { return m_events; }

    /// Serves until `Stop`; then ends all connections and their threads.
    void Run();

    /// From any thread.
    void Stop();

private:
    void Accept();
    void Serve(boost::asio::ip::tcp::socket i_socket);

    Service& m_service;
    boost::asio::io_context m_events;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::list<Connection> m_connections;
};

} // namespace DevService
