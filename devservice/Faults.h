#pragma once

#include "JsonText.h"
#include "Reply.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace DevService {

/// What goes wrong with one request. All parts can be combined.
struct Fault {
    // The reply:
    std::optional<unsigned> status;
    std::string reason;
    std::vector<Header> headers;
    std::optional<std::string> body;
    bool is_real = false; ///< the call is executed; the members above replace those parts of its reply

    // Its transfer:
    std::chrono::milliseconds delay{0};       ///< before the reply
    std::optional<std::uint64_t> truncate_at; ///< bytes of the body before the connection is closed
    std::chrono::milliseconds pause{0};       ///< between the pieces of the body
    std::size_t piece_size = 0;               ///< 0: as usual
    bool is_chunked = false;

    // The request:
    std::optional<std::uint64_t> drop_after; ///< bytes of the request's body before the connection is reset

    /// Whether the reply is made up, so that the call is not executed.
    bool IsMade() const { return !is_real && (status || body); }

    void ApplyTo(Reply& io_reply) const;
};

/// The rules for faults; set by tests. Thread-safe.
class Faults {
public:
    /// Adds a rule. @throws BadArguments for an invalid one
    void Add(std::string_view i_json);
    void Clear();

    /// The fault for a request to `i_target`, counting it against the first rule that applies.
    std::optional<Fault> Match(std::string_view i_target);

    /// Waits; returns at once when the service stops.
    void Pause(std::chrono::milliseconds i_time);
    void Stop();

private:
    struct Rule {
        std::string path; ///< the beginning of the target, without its leading slash
        std::uint64_t skip = 0;
        std::uint64_t times = 1; ///< 0: forever
        Fault fault;
    };

    std::mutex m_mutex;
    std::condition_variable m_stopping;
    bool m_is_stopping = false;
    std::list<Rule> m_rules;
};

} // namespace DevService
