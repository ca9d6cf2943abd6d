#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

#include "FaultPlan.h"
#include "TlsAuthority.h"

namespace Storm {

/// The requests through a proxy, by kind of fault; `None` counts those without one.
using FaultCounts = std::array<std::uint64_t, fault_kind_count>;

/// A proxy between one client and the service: answers CONNECT as the service does, terminates TLS with the service's
/// own certificate, and injects faults. Each connection has a thread. The plans depend only on the seed and the order
/// of the client's requests.
class FaultProxy {
public:
    /// Starts listening. @param i_service_port the service's, on the loopback interface
    /// @param i_without faults to leave out: their requests succeed
    FaultProxy(DevService::TlsAuthority& io_authority, std::uint16_t i_service_port, std::set<FaultKind> i_without);
    ~FaultProxy();
    FaultProxy(const FaultProxy&) = delete;
    FaultProxy& operator=(const FaultProxy&) = delete;

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }

    /// From here on requests get this seed's faults.
    void Raise(std::uint64_t i_seed);
    /// From here on there are no faults.
    void Calm();

    FaultCounts Counts() const;
    /// How many requests had a fault that may make their call fail.
    std::uint64_t HarmCount() const;
    /// Waits until no connection is left, for a client that was killed. @throws std::runtime_error if it takes too long
    void WaitForQuiet();
    /// The requests since the last call and their faults, one line each.
    std::string TakeLog();

private:
    class Link;

    void Accept();
    void Note(std::string_view i_line);
    bool IsQuietWithin(std::chrono::seconds i_time) const;
    FaultPlan Plan(std::string_view i_target);

    DevService::TlsAuthority& m_authority;
    std::uint16_t m_service_port;
    std::set<FaultKind> m_without;
    boost::asio::io_context m_events;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::list<Link> m_links;
    std::atomic<int> m_open_links = 0;

    mutable std::mutex m_mutex; ///< for the members below
    Dice m_dice{0};
    bool m_is_stormy = false;
    FaultCounts m_counts{};
    std::string m_log;

    std::thread m_thread; ///< last, because it uses all the others
};

} // namespace Storm
