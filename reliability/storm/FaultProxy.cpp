#include "FaultProxy.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

namespace Storm {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;
using TlsStream = asio::ssl::stream<tcp::socket&>;

namespace {

constexpr std::string_view head_end = "\r\n\r\n";

/// The connection ends here, because the plan says so or the other side closed it.
class LinkEnds : public std::runtime_error {
public:
    explicit LinkEnds(bool i_is_reset) : std::runtime_error("the connection ends"), is_reset(i_is_reset) {}
    bool is_reset;
};

/// A request's head, and as much of its body as arrived with it.
struct RequestHead {
    std::string bytes; ///< the whole head
    std::string body;
    std::uint64_t body_size = 0;

    std::string_view Target() const {
        const std::size_t begin = bytes.find(' ') + 1;
        return std::string_view(bytes).substr(begin, bytes.find(' ', begin) - begin);
    }
};

std::uint64_t AnnouncedSize(std::string_view i_head) {
    std::string lower(i_head);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char i_c) { return static_cast<char>(std::tolower(i_c)); });
    constexpr std::string_view name = "\r\ncontent-length:";
    std::size_t begin = lower.find(name);
    if (begin == lower.npos)
        return 0;
    begin = lower.find_first_not_of(' ', begin + name.size());
    std::uint64_t size = 0;
    std::from_chars(lower.data() + begin, lower.data() + lower.size(), size);
    return size;
}

/// @returns false if the other side closed the connection before the first byte
template <class Stream>
bool ReadHead(Stream& io_stream, std::string& io_ahead, RequestHead& o_head) {
    boost::system::error_code error;
    const std::size_t size = asio::read_until(io_stream, asio::dynamic_buffer(io_ahead), head_end, error);
    if (error)
        return false;
    o_head.bytes = io_ahead.substr(0, size);
    o_head.body_size = AnnouncedSize(o_head.bytes);
    const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(o_head.body_size, io_ahead.size() - size));
    o_head.body = io_ahead.substr(size, taken);
    io_ahead.erase(0, size + taken);
    return true;
}

template <class Stream>
void ReadBody(Stream& io_stream, RequestHead& io_head, std::uint64_t i_size) {
    const std::size_t have = io_head.body.size();
    if (i_size <= have)
        return;
    io_head.body.resize(static_cast<std::size_t>(i_size));
    asio::read(io_stream, asio::buffer(io_head.body.data() + have, io_head.body.size() - have));
}

template <class Stream>
void Write(Stream& io_stream, std::string_view i_bytes) {
    asio::write(io_stream, asio::buffer(i_bytes.data(), i_bytes.size()));
}

std::string ChunksOf(std::string_view i_body, std::size_t i_size) {
    std::string chunks;
    for (std::size_t at = 0; at < i_body.size(); at += i_size) {
        const std::string_view piece = i_body.substr(at, i_size);
        char size[32];
        const auto end = std::to_chars(size, size + sizeof size, piece.size(), 16).ptr;
        chunks.append(size, end).append("\r\n").append(piece).append("\r\n");
    }
    return chunks + "0\r\n\r\n";
}

std::string Bytes(const WireReply& i_reply, std::size_t i_chunk_size) {
    std::string bytes = "HTTP/1.1 " + std::to_string(i_reply.status) + " " + i_reply.reason + "\r\n";
    for (const auto& [name, value] : i_reply.headers)
        bytes.append(name).append(": ").append(value).append("\r\n");
    if (i_reply.is_chunked)
        return bytes + "Transfer-Encoding: chunked\r\n\r\n" + ChunksOf(i_reply.body, i_chunk_size);
    return bytes + "Content-Length: " + std::to_string(i_reply.body.size()) + "\r\n\r\n" + i_reply.body;
}

/// The service's end of a connection.
class Upstream {
public:
    Upstream(std::uint16_t i_port, std::string_view i_host) : m_socket(m_events), m_stream(m_socket, m_context) {
        m_socket.connect({asio::ip::address_v4::loopback(), i_port});
        m_socket.set_option(tcp::no_delay(true));
        Write(m_socket, "CONNECT " + std::string(i_host) + " HTTP/1.1\r\n\r\n");
        std::string ahead;
        RequestHead head;
        if (!ReadHead(m_socket, ahead, head) || !head.bytes.starts_with("HTTP/1.1 200"))
            throw LinkEnds(false);
        m_stream.handshake(asio::ssl::stream_base::client);
    }

    void Send(std::string_view i_bytes) { Write(m_stream, i_bytes); }

    WireReply Receive() {
        http::response_parser<http::string_body> parser;
        parser.body_limit(std::uint64_t{1} << 32);
        http::read(m_stream, m_buffer, parser);
        WireReply reply;
        reply.is_chunked = parser.chunked();
        reply.status = parser.get().result_int();
        reply.reason = std::string(parser.get().reason());
        for (const auto& field : parser.get())
            if (field.name() != http::field::content_length && field.name() != http::field::transfer_encoding)
                reply.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
        reply.body = std::move(parser.get().body());
        return reply;
    }

private:
    asio::io_context m_events;
    asio::ssl::context m_context{asio::ssl::context::tls_client}; // The service is our own: there is nothing to verify.
    tcp::socket m_socket;
    TlsStream m_stream;
    boost::beast::flat_buffer m_buffer;
};

} // namespace

/// One connection of the client.
class FaultProxy::Link {
public:
    Link(tcp::socket i_socket, FaultProxy& io_proxy) : m_socket(std::move(i_socket)), m_proxy(io_proxy) {
        ++m_proxy.m_open_links;
        m_thread = std::thread([this] { Run(); });
    }
    ~Link() { m_thread.join(); }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    bool IsDone() const { return m_is_done; }

    void Interrupt() {
        const std::lock_guard lock(m_socket_mutex);
        boost::system::error_code ignored;
        if (m_socket.is_open())
            m_socket.shutdown(tcp::socket::shutdown_both, ignored);
    }

private:
    void Run() {
        bool is_reset = false;
        try {
            m_socket.set_option(tcp::no_delay(true));
            Serve();
        } catch (const LinkEnds& end) {
            is_reset = end.is_reset;
        } catch (const std::exception&) {
            is_reset = true; // The client or the service broke off.
        }
        const std::lock_guard lock(m_socket_mutex);
        boost::system::error_code ignored;
        if (is_reset)
            m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
        m_socket.close(ignored);
        --m_proxy.m_open_links;
        m_is_done = true;
    }

    void Serve() {
        std::string ahead;
        RequestHead connect;
        if (!ReadHead(m_socket, ahead, connect))
            return;
        Upstream upstream(m_proxy.m_service_port, connect.Target());
        Write(m_socket, "HTTP/1.1 200 Connection established\r\n\r\n");
        TlsStream tls(m_socket, m_proxy.m_authority.ServerContext());
        tls.handshake(asio::ssl::stream_base::server);
        RequestHead request;
        while (ReadHead(tls, ahead, request))
            Exchange(tls, upstream, request);
    }

    void Exchange(TlsStream& io_client, Upstream& io_upstream, RequestHead& io_request) {
        const FaultPlan plan = m_proxy.Plan(io_request.Target());
        if (plan.kind == FaultKind::CutRequest)
            CutRequest(io_client, io_upstream, io_request, plan);
        ReadBody(io_client, io_request, io_request.body_size);
        WireReply reply = plan.reply;
        if (!plan.IsMade()) {
            io_upstream.Send(io_request.bytes);
            io_upstream.Send(io_request.body);
            WireReply real = io_upstream.Receive();
            if (!plan.ReplacesReply())
                reply = std::move(real);
        }
        SendReply(io_client, std::move(reply), plan);
    }

    [[noreturn]] void CutRequest(TlsStream& io_client, Upstream& io_upstream, RequestHead& io_request,
                                 const FaultPlan& i_plan) {
        const std::uint64_t size = io_request.bytes.size() + io_request.body_size;
        const std::uint64_t cut = i_plan.cut % (i_plan.cuts_near_begin ? io_request.bytes.size() + 1 : size);
        m_proxy.Note("    the request ends after byte " + std::to_string(cut) + " of " + std::to_string(size) +
                     (i_plan.is_reset ? " with a reset\n" : "\n"));
        if (cut > io_request.bytes.size())
            ReadBody(io_client, io_request, cut - io_request.bytes.size());
        io_upstream.Send((io_request.bytes + io_request.body).substr(0, static_cast<std::size_t>(cut)));
        throw LinkEnds(i_plan.is_reset);
    }

    void SendReply(TlsStream& io_client, WireReply i_reply, const FaultPlan& i_plan) {
        std::size_t chunk_size = 16'384;
        if (i_plan.kind == FaultKind::Chunks || (i_plan.kind == FaultKind::CutReply && i_plan.is_chunked)) {
            i_reply.is_chunked = true;
            chunk_size = i_plan.piece_size;
        }
        if (i_plan.kind == FaultKind::WrongLength)
            ChangeLength(i_reply.body, i_plan);
        std::string bytes = Bytes(i_reply, chunk_size);
        if (i_plan.kind == FaultKind::CutReply) {
            const std::size_t head = bytes.find(head_end) + head_end.size();
            bytes.resize(i_plan.cut % (i_plan.cuts_near_begin ? head : bytes.size()));
            m_proxy.Note("    the reply ends after byte " + std::to_string(bytes.size()) +
                         (i_plan.is_reset ? " with a reset\n" : "\n"));
        }
        if (i_plan.kind == FaultKind::Delay)
            std::this_thread::sleep_for(i_plan.pause);
        if (i_plan.kind == FaultKind::Drip)
            Drip(io_client, bytes, i_plan);
        else
            Write(io_client, bytes);
        if (i_plan.kind == FaultKind::CutReply)
            throw LinkEnds(i_plan.is_reset);
    }

    static void ChangeLength(std::string& io_body, const FaultPlan& i_plan) {
        if (i_plan.is_reset && !io_body.empty())
            io_body.resize(io_body.size() - 1 - i_plan.cut % io_body.size());
        else
            io_body.append(1 + i_plan.cut % 3'000, 'x');
    }

    /// A few pieces with pauses, the rest at once: no reply takes longer than a client waits.
    static void Drip(TlsStream& io_client, std::string_view i_bytes, const FaultPlan& i_plan) {
        constexpr int most_drips = 8;
        for (int drips = 0; drips < most_drips && i_plan.piece_size < i_bytes.size(); ++drips) {
            Write(io_client, i_bytes.substr(0, i_plan.piece_size));
            i_bytes.remove_prefix(i_plan.piece_size);
            std::this_thread::sleep_for(i_plan.pause);
        }
        Write(io_client, i_bytes);
    }

    tcp::socket m_socket;
    FaultProxy& m_proxy;
    std::mutex m_socket_mutex;
    std::atomic<bool> m_is_done = false;
    std::thread m_thread; ///< last, because it uses all the others
};

FaultProxy::FaultProxy(DevService::TlsAuthority& io_authority, std::uint16_t i_service_port,
                       std::set<FaultKind> i_without)
    : m_authority(io_authority)
    , m_service_port(i_service_port)
    , m_without(std::move(i_without))
    , m_acceptor(m_events, tcp::endpoint(asio::ip::address_v4::loopback(), 0)) {
    Accept();
    m_thread = std::thread([this] { m_events.run(); });
}

FaultProxy::~FaultProxy() {
    m_events.stop();
    m_thread.join();
    for (Link& link : m_links)
        link.Interrupt();
}

void FaultProxy::Accept() {
    m_acceptor.async_accept([this](const boost::system::error_code& i_error, tcp::socket i_socket) {
        m_links.remove_if([](const Link& i_link) { return i_link.IsDone(); });
        if (!i_error)
            m_links.emplace_back(std::move(i_socket), *this);
        Accept();
    });
}

void FaultProxy::Note(std::string_view i_line) {
    const std::lock_guard lock(m_mutex);
    m_log += i_line;
}

FaultPlan FaultProxy::Plan(std::string_view i_target) {
    const std::lock_guard lock(m_mutex);
    FaultPlan plan;
    if (m_is_stormy)
        plan = DrawFault(m_dice, i_target);
    if (m_without.contains(plan.kind))
        plan = FaultPlan();
    ++m_counts.at(static_cast<std::size_t>(plan.kind));
    m_log.append("  request ").append(i_target);
    if (plan.kind != FaultKind::None)
        m_log.append(": ").append(NameOf(plan.kind));
    if (plan.ReplacesReply())
        m_log.append(" (")
            .append(std::to_string(plan.reply.status))
            .append(" ")
            .append(plan.reply.body.substr(0, 80))
            .append(")");
    m_log += '\n';
    return plan;
}

void FaultProxy::Raise(std::uint64_t i_seed) {
    const std::lock_guard lock(m_mutex);
    m_dice = Dice(i_seed);
    m_is_stormy = true;
}

void FaultProxy::Calm() {
    const std::lock_guard lock(m_mutex);
    m_is_stormy = false;
}

FaultCounts FaultProxy::Counts() const {
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

std::uint64_t FaultProxy::HarmCount() const {
    const std::lock_guard lock(m_mutex);
    std::uint64_t count = 0;
    for (std::size_t kind = 0; kind < fault_kind_count; ++kind)
        if (!IsHarmless(static_cast<FaultKind>(kind)))
            count += m_counts.at(kind);
    return count;
}

bool FaultProxy::IsQuietWithin(std::chrono::seconds i_time) const {
    const auto end = std::chrono::steady_clock::now() + i_time;
    while (m_open_links > 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return m_open_links == 0;
}

void FaultProxy::WaitForQuiet() {
    using std::chrono::seconds;
    if (IsQuietWithin(seconds(2)))
        return;
    // The wine server sometimes keeps a socket of a killed program, for which a call was waiting.
    asio::post(m_events, [this] {
        for (Link& link : m_links)
            link.Interrupt();
    });
    if (!IsQuietWithin(seconds(20)))
        throw std::runtime_error("connections of a client that has ended are still open");
}

std::string FaultProxy::TakeLog() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_log, {});
}

} // namespace Storm
