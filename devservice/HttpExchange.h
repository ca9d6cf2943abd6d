#pragma once

#include "ByteStream.h"
#include "ContentHash.h"
#include "Faults.h"
#include "Reply.h"
#include "RequestLog.h"

#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/parser.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace DevService {

/// The connection is unusable: the client has disconnected, perhaps in the middle of a request.
class ConnectionLost : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One request and its reply on a connection, read and written piece by piece. Blocking, for one thread.
class HttpExchange {
public:
    /// @param io_buffer bytes read ahead; lives as long as the connection
    HttpExchange(ByteStream& io_stream, boost::beast::flat_buffer& io_buffer);

    /// Records the request under that host's name, and applies its fault.
    void Observe(std::string_view i_host, RequestLog& io_log, Faults& io_faults);

    /// Reads up to the body. @returns false when the client has closed the connection instead
    /// @throws ConnectionLost for what isn't HTTP
    bool ReadHead();

    std::string_view Method() const;
    std::string_view Target() const;

    /// The value of the first header with that name, ignoring case; its bytes as received.
    std::optional<std::string_view> HeaderValue(std::string_view i_name) const;

    /// The announced size of the body; empty when it comes in chunks.
    std::optional<std::uint64_t> BodySize() const;

    /// Fills the piece as far as there is body. @returns 0 at its end
    /// @throws ConnectionLost when the client disconnects
    std::size_t ReadBody(std::span<char> o_piece);

    /// The rest of the body in memory. @throws std::length_error when it is larger than any argument can be
    std::string ReadWholeBody();

    /// What goes wrong with this request, if anything.
    const std::optional<Fault>& PlannedFault() const { return m_fault; }

    /// Reads what is left of the request, records it, and answers.
    void Send(Reply i_reply);

    /// Records a request whose connection was lost before its end. Call it when everything the request had begun is
    /// undone, so that whoever sees the record sees no other trace.
    void RecordLoss();

    /// Whether the connection serves another request after the reply.
    bool IsKeptAlive() const { return m_is_kept_alive; }

private:
    using Parser = boost::beast::http::request_parser<boost::beast::http::buffer_body>;

    /// Reads until the buffer holds the whole head. @returns its size; 0 when the connection was closed before it
    std::size_t BufferHead();
    void SkipBody();
    [[noreturn]] void DropRequest();
    void Record(unsigned i_status, bool i_is_complete);
    std::string ReplyHead(const Reply& i_reply) const;
    void SendBody(Reply& io_reply, std::string i_head);
    void Write(std::string_view i_bytes);

    ByteStream& m_stream;
    boost::beast::flat_buffer& m_buffer;
    Parser m_parser;
    RequestRecord m_record;
    Sha256 m_body_hash;
    std::optional<Fault> m_fault;
    RequestLog* m_log = nullptr; ///< until the request is in it
    Faults* m_faults = nullptr;
    bool m_is_continue_due = false; ///< the client waits for "100 Continue" before it sends the body
    bool m_is_kept_alive = true;
};

} // namespace DevService
