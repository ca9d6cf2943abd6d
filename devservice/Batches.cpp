#include "Batches.h"

#include <algorithm>
#include <utility>

#include "Encoding.h"

namespace DevService {

std::string AsyncJobs::Launch(const BatchResult& i_result) {
    constexpr std::size_t IdBytes = 33;
    constexpr std::size_t MaxKeptJobs = 100;
    Job job{"dbjid:" + RandomText(IdBytes), R"({".tag": "complete", )" + i_result.Entries() + "}"};
    if (i_result.Count() == 1)
        return job.outcome;
    std::string reply = R"({".tag": "async_job_id", "async_job_id": ")" + job.id + R"("})";
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() > MaxKeptJobs)
        m_jobs.pop_front();
    return reply;
}

std::string AsyncJobs::Check(const std::string& i_id) {
    const std::lock_guard lock(m_mutex);
    const auto job = std::ranges::find(m_jobs, i_id, &Job::id);
    if (job == m_jobs.end())
        throw RouteError({"invalid_async_job_id"});
    return std::exchange(job->is_told, true) ? job->outcome : R"({".tag": "in_progress"})";
}

} // namespace DevService
