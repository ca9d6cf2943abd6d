#pragma once

#include <array>
#include <atomic>
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

/// What passed a proxy, by kind of fault; `None` counts the requests without one.
using FaultCounts = std::array<std::uint64_t, fault_kind_count>;

/// Stands between one client and the service: answers CONNECT as the service does, ends TLS with the service's own
/// certificate, and lets requests meet with faults. Each connection has a thread. The plans follow from the seed and
/// the order of the client's requests alone.
class FaultProxy {
public:
    /// Listens from here on. @param i_service_port the service's, on the loopback interface
    /// @param i_without faults that are left out: their requests go well
    FaultProxy(DevService::TlsAuthority& io_authority, std::uint16_t i_service_port, std::set<FaultKind> i_without);
    ~FaultProxy();
    FaultProxy(const FaultProxy&) = delete;
    FaultProxy& operator=(const FaultProxy&) = delete;

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }

    /// From here on requests meet with the faults of that seed.
    void Raise(std::uint64_t i_seed);
    /// From here on all goes well.
    void Calm();

    FaultCounts Counts() const;
    /// How many requests have met with a fault that may make their call fail.
    std::uint64_t HarmCount() const;
    /// Waits until no connection is left, for a client that has ended. @throws std::runtime_error after too long
    void WaitForQuiet() const;
    /// The requests since the last call and their faults, one line each.
    std::string TakeLog();

private:
    class Link;

    void Accept();
    void Note(std::string_view i_line);
    FaultPlan Plan(std::string_view i_target);

    DevService::TlsAuthority& m_authority;
    std::uint16_t m_service_port;
    std::set<FaultKind> m_without;
    boost::asio::io_context m_events;
    boost::asio::ip::tcp::acceptor m_acceptor;
    std::list<Link> m_links;
    std::atomic<int> m_open_links = 0;

    mutable std::mutex m_mutex; ///< for what follows
    Dice m_dice{0};
    bool m_is_stormy = false;
    FaultCounts m_counts{};
    std::string m_log;

    std::thread m_thread; ///< last: it uses all the others
};

} // namespace Storm
