#pragma once

#include "ByteStream.h"
#include "Hosts.h"
#include "HttpExchange.h"
#include "Service.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>

#include <atomic>
#include <mutex>
#include <string_view>
#include <thread>

namespace DevService {

/// One client's connection, served by its own thread: plain requests to the control interface, or a CONNECT to one of
/// the hosts and the requests to that host through TLS.
class Connection {
public:
    Connection(boost::asio::ip::tcp::socket i_socket, Service& io_service);

    /// Waits for the thread.
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool IsDone() const { return m_is_done; }

    /// Makes the thread end soon. From any thread.
    void Interrupt();

private:
    void Run();
    void ServeClear();
    void ServeHost(Host i_host);

    /// Answers "CONNECT host:443". @returns the host if it is one of ours
    std::optional<Host> AnswerConnect(ByteStream& io_stream, std::string_view i_target);

    /// Closes the connection; a lost one with a reset, so that the client cannot mistake it for a proper end.
    void Close(bool i_is_reset);

    boost::asio::ip::tcp::socket m_socket;
    boost::beast::flat_buffer m_buffer;
    Service& m_service;
    std::mutex m_socket_mutex; ///< closing and interrupting
    std::atomic<bool> m_is_done = false;
    std::thread m_thread; ///< last: it uses all the others
};

} // namespace DevService
