#include "Batches.h"

#include "Encoding.h"

#include <algorithm>
#include <utility>

namespace DevService {

std::string AsyncJobs::Launch(const BatchResult& i_result) {
    constexpr std::size_t id_bytes = 33;
    constexpr std::size_t max_kept_jobs = 100;
    Job job{"dbjid:" + RandomText(id_bytes), R"({".tag": "complete", )" + i_result.Entries() + "}"};
    if (i_result.Count() == 1)
        return job.outcome;
    std::string reply = R"({".tag": "async_job_id", "async_job_id": ")" + job.id + R"("})";
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() > max_kept_jobs)
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
