#pragma once

#include "Refusal.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace DevService {

/// The outcomes of a call that does one thing to many items. A refused entry does not affect the others.
class BatchResult {
public:
    /// The largest number of entries in one call.
    static constexpr std::size_t max_size = 1000;

    /// Executes one entry. @param i_step returns the members of its success as JSON, or throws RouteError
    template <class Step>
    void Add(Step i_step) {
        m_json += m_count++ == 0 ? R"("entries": [)" : ", ";
        try {
            m_json += R"({".tag": "success", )" + i_step() + "}";
        } catch (const RouteError& error) {
            m_json += R"({".tag": "failure", "failure": )" + error.ErrorJson() + "}";
        }
    }

    std::size_t Count() const { return m_count; }

    /// The member of the reply that has an entry for each Add.
    std::string Entries() const { return m_count == 0 ? R"("entries": [])" : m_json + "]"; }

private:
    std::string m_json;
    std::size_t m_count = 0;
};

/// The batches of one account whose outcome clients must poll for. They are executed when launched; only the answer
/// waits. Thread-safe.
class AsyncJobs {
public:
    /// The reply to a call: the outcome of a single entry at once, the id of a job for any other number.
    std::string Launch(const BatchResult& i_result);

    /// The reply to a poll: "in progress" the first time, then the outcome.
    /// @throws RouteError invalid_async_job_id
    std::string Check(const std::string& i_id);

private:
    struct Job {
        std::string id;
        std::string outcome;
        bool is_told = false; ///< whether "in progress" has been answered
    };

    std::mutex m_mutex;
    std::deque<Job> m_jobs; ///< the newest last
};

} // namespace DevService
