#include "HttpExchange.h"

#include "Encoding.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

namespace DevService {

namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

/// Large pieces: a transfer's cost is mostly the number of system calls.
constexpr std::size_t piece_size = std::size_t{256} << 10;

/// Up to this size, copying is cheaper than a separate system call.
constexpr std::size_t small_piece_size = std::size_t{16} << 10;

/// Far above any argument of the service, far below what would hurt.
constexpr std::size_t max_argument_size = std::size_t{16} << 20;

std::string_view View(boost::beast::string_view i_text) {
    return {i_text.data(), i_text.size()};
}

boost::beast::string_view View(std::string_view i_text) {
    return {i_text.data(), i_text.size()};
}

bool HasHeader(const Reply& i_reply, std::string_view i_name) {
    return std::ranges::any_of(i_reply.headers, [&](const Header& i_header) {
        return boost::beast::iequals(View(std::string_view(i_header.first)), View(i_name));
    });
}

/// The next piece of a reply's body, which stays valid until the next call.
std::string_view NextPiece(Reply& io_reply, std::uint64_t i_offset, std::size_t i_size, std::vector<char>& io_buffer) {
    if (!io_reply.file)
        return std::string_view(io_reply.body).substr(i_offset, i_size);
    io_buffer.resize(i_size);
    io_reply.file->stream.read(io_buffer.data(), static_cast<std::streamsize>(i_size));
    return {io_buffer.data(), static_cast<std::size_t>(io_reply.file->stream.gcount())};
}

} // namespace

HttpExchange::HttpExchange(ByteStream& io_stream, boost::beast::flat_buffer& io_buffer)
    : m_stream(io_stream), m_buffer(io_buffer) {
    m_parser.body_limit(std::numeric_limits<std::uint64_t>::max()); // files of any size
    m_parser.header_limit(static_cast<std::uint32_t>(m_buffer.max_size()));
}

std::size_t HttpExchange::BufferHead() {
    constexpr std::string_view end_mark = "\r\n\r\n";
    while (true) {
        const std::string_view buffered(static_cast<const char*>(m_buffer.data().data()), m_buffer.size());
        if (const std::size_t end = buffered.find(end_mark); end != buffered.npos)
            return end + end_mark.size();
        const std::size_t room = std::min(small_piece_size, m_buffer.max_size() - m_buffer.size());
        boost::system::error_code error;
        m_buffer.commit(room > 0 ? m_stream.read_some(m_buffer.prepare(room), error) : 0);
        if (error && m_buffer.size() == 0)
            return 0;
        if (error || room == 0)
            throw ConnectionLost("the request's head did not come to an end");
    }
}

bool HttpExchange::ReadHead() {
    const std::size_t size = BufferHead();
    if (size == 0)
        return false;
    // Kept as received: parsing loses spaces and bytes that tests want to see.
    m_record.head.assign(static_cast<const char*>(m_buffer.data().data()), size);
    m_record.line = m_record.head.substr(0, m_record.head.find("\r\n"));
    boost::beast::error_code parse_error;
    m_parser.put(asio::buffer(m_record.head), parse_error);
    m_buffer.consume(size);
    if ((parse_error && parse_error != http::error::need_buffer) || !m_parser.is_header_done())
        throw ConnectionLost("the request isn't HTTP");
    m_is_kept_alive = m_parser.keep_alive();
    m_is_continue_due = boost::beast::iequals(m_parser.get()[http::field::expect], "100-continue");
    return true;
}

void HttpExchange::Observe(std::string_view i_host, RequestLog& io_log, Faults& io_faults) {
    m_record.host = i_host;
    m_log = &io_log;
    m_faults = &io_faults;
    m_fault = io_faults.Match(Target());
}

std::string_view HttpExchange::Method() const {
    return View(m_parser.get().method_string());
}

std::string_view HttpExchange::Target() const {
    return View(m_parser.get().target());
}

std::optional<std::string_view> HttpExchange::HeaderValue(std::string_view i_name) const {
    const auto header = m_parser.get().find(View(i_name));
    if (header == m_parser.get().end())
        return std::nullopt;
    return View(header->value());
}

std::optional<std::uint64_t> HttpExchange::BodySize() const {
    if (m_parser.chunked())
        return std::nullopt;
    const auto size = m_parser.content_length();
    return size ? std::uint64_t{*size} : 0;
}

std::size_t HttpExchange::ReadBody(std::span<char> o_piece) {
    if (m_parser.is_done())
        return 0;
    if (std::exchange(m_is_continue_due, false))
        Write("HTTP/1.1 100 Continue\r\n\r\n");
    std::size_t wanted = o_piece.size();
    if (m_fault && m_fault->drop_after) {
        wanted = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, *m_fault->drop_after - m_record.body_size));
        if (wanted == 0)
            DropRequest();
    }
    auto& body = m_parser.get().body();
    body.data = o_piece.data();
    body.size = wanted;
    boost::beast::error_code error;
    while (body.size > 0 && !m_parser.is_done() && !error)
        http::read_some(m_stream, m_buffer, m_parser, error);
    const std::string_view piece(o_piece.data(), wanted - body.size);
    m_body_hash.Add(piece);
    m_record.body_size += piece.size();
    m_record.body.append(piece.substr(0, RequestLog::max_body_size - m_record.body.size()));
    if (error && error != http::error::need_buffer)
        throw ConnectionLost("the request's body did not come to an end");
    return piece.size();
}

std::string HttpExchange::ReadWholeBody() {
    std::string body;
    std::vector<char> piece(BodySize().value_or(piece_size) < piece_size ? small_piece_size : piece_size);
    while (const std::size_t size = ReadBody(piece)) {
        body.append(piece.data(), size);
        if (body.size() > max_argument_size)
            throw std::length_error("the request body is too big");
    }
    return body;
}

void HttpExchange::SkipBody() {
    std::vector<char> piece(m_parser.is_done() ? 0 : piece_size);
    while (ReadBody(piece) > 0) {
    }
}

void HttpExchange::DropRequest() {
    // Some clients repeat a request forever if the connection closes without a byte of reply.
    Write("HTTP/1.1 500 Request dropped\r\n");
    throw ConnectionLost("dropped as the fault says");
}

void HttpExchange::Record(unsigned i_status, bool i_is_complete) {
    if (!m_log)
        return;
    const std::string digest = m_body_hash.Finish();
    m_record.body_sha256 = Hex({reinterpret_cast<const unsigned char*>(digest.data()), digest.size()});
    m_record.status = i_status;
    m_record.is_complete = i_is_complete;
    std::exchange(m_log, nullptr)->Add(std::move(m_record));
}

void HttpExchange::RecordLoss() {
    Record(0, false);
}

void HttpExchange::Send(Reply i_reply) {
    SkipBody();
    constexpr unsigned http11 = 11; // older clients don't support chunks
    i_reply.is_chunked &= m_parser.get().version() >= http11;
    if (m_fault)
        m_fault->ApplyTo(i_reply);
    if (m_fault && m_fault->truncate_at && *m_fault->truncate_at < i_reply.BodySize())
        m_is_kept_alive = false;
    Record(i_reply.status, true); // first: whoever has the reply may look for the record
    if (m_fault && m_fault->delay.count() > 0)
        m_faults->Pause(m_fault->delay);
    SendBody(i_reply, ReplyHead(i_reply));
}

std::string HttpExchange::ReplyHead(const Reply& i_reply) const {
    std::string head = "HTTP/1.1 " + std::to_string(i_reply.status) + ' ' + std::string(i_reply.Reason()) + "\r\n";
    const auto add = [&](std::string_view i_name, std::string_view i_value) {
        head.append(i_name).append(": ").append(i_value).append("\r\n");
    };
    for (const auto& [name, value] : i_reply.headers)
        add(name, value);
    if (i_reply.is_chunked)
        add("Transfer-Encoding", "chunked");
    else if (!HasHeader(i_reply, "Content-Length"))
        add("Content-Length", std::to_string(i_reply.BodySize()));
    if (!m_is_kept_alive && !m_fault)
        add("Connection", "close");
    return head + "\r\n";
}

void HttpExchange::SendBody(Reply& io_reply, std::string i_head) {
    const Fault fault = m_fault.value_or(Fault());
    const std::uint64_t size = io_reply.BodySize();
    const std::uint64_t end = std::min(size, fault.truncate_at.value_or(size));
    const std::size_t usual_size = io_reply.is_chunked ? small_piece_size : piece_size;
    const std::size_t step = fault.piece_size > 0 ? fault.piece_size : usual_size;
    std::vector<char> buffer;
    std::string out = std::move(i_head); // sent together with the next bytes
    for (std::uint64_t offset = 0; offset < end;) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(step, end - offset));
        const std::string_view piece = NextPiece(io_reply, offset, wanted, buffer);
        if (piece.empty())
            throw ConnectionLost("the file became shorter while it was sent");
        if (io_reply.is_chunked) {
            char chunk_size[32];
            out.append(chunk_size,
                       static_cast<std::size_t>(std::snprintf(chunk_size, sizeof chunk_size, "%zx\r\n", piece.size())));
        }
        const bool is_small = piece.size() <= small_piece_size;
        if (is_small)
            out += piece;
        Write(out);
        out.clear();
        if (!is_small)
            Write(piece);
        if (io_reply.is_chunked)
            out = "\r\n";
        offset += piece.size();
        if (fault.pause.count() > 0 && offset < end)
            m_faults->Pause(fault.pause);
    }
    if (io_reply.is_chunked && end == size)
        out += "0\r\n\r\n";
    Write(out);
}

void HttpExchange::Write(std::string_view i_bytes) {
    boost::system::error_code error;
    asio::write(m_stream, asio::buffer(i_bytes.data(), i_bytes.size()), error);
    if (error)
        throw ConnectionLost("the client went before it had its reply");
}

} // namespace DevService
