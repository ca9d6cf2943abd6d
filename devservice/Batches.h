#pragma once

#include "Refusal.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace DevService {

/// What became of the entries of a call that does one thing to many items. One that is refused leaves the others alone.
class BatchResult {
public:
    /// Most entries of one call.
    static constexpr std::size_t max_size = 1000;

    /// Does one entry. @param i_step returns the members of its success as JSON, or throws RouteError
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

    /// The member of the reply that holds an entry for each Add.
    std::string Entries() const { return m_count == 0 ? R"("entries": [])" : m_json + "]"; }

private:
    std::string m_json;
    std::size_t m_count = 0;
};

/// The batches of one account whose outcome clients have to ask for. They are done when they are launched; only the
/// answer waits. Thread-safe.
class AsyncJobs {
public:
    /// The reply to a call: the outcome of a single entry at once, the id of a job for any other number.
    std::string Launch(const BatchResult& i_result);

    /// The reply to the question for a job: that it is in progress the first time, the outcome from then on.
    /// @throws RouteError invalid_async_job_id
    std::string Check(const std::string& i_id);

private:
    struct Job {
        std::string id;
        std::string outcome;
        bool is_told = false; ///< that it is in progress
    };

    std::mutex m_mutex;
    std::deque<Job> m_jobs; ///< the newest last
};

} // namespace DevService
