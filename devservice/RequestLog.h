#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

namespace DevService {

/// One request as it came over the wire, and the reply's status.
struct RequestRecord {
    std::string host;
    std::string line; ///< the request line, without its line break
    std::string head; ///< line and headers byte by byte, with all line breaks
    std::uint64_t body_size = 0;
    std::string body_sha256;
    std::string body;        ///< its first bytes
    unsigned status = 0;     ///< 0: never answered
    bool is_complete = true; ///< whether the whole announced body came
};

/// The requests since the last clearing, in the order of their answers. Thread-safe.
class RequestLog {
public:
    /// Bytes of a body that are kept; the hash covers all of it.
    static constexpr std::size_t max_body_size = std::size_t{1} << 20;

    /// The oldest records are dropped when all together have more bytes than this.
    static constexpr std::size_t max_total_size = std::size_t{256} << 20;

    void Add(RequestRecord i_record);
    void Clear();

    /// An array of objects; bytes above 0x7F appear as the characters U+0080 to U+00FF.
    std::string Json() const;

private:
    mutable std::mutex m_mutex;
    std::deque<RequestRecord> m_records;
    std::size_t m_total_size = 0;
};

} // namespace DevService
