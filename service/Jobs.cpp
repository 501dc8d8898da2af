#include "service/Jobs.h"

#include "service/Guid.h"
#include "service/ServiceError.h"

#include <utility>

namespace brevint::service {

Jobs::Jobs(unsigned unfinishedPolls) : m_unfinishedPolls(unfinishedPolls) {}

std::string Jobs::Add(const User& owner, Work work) {
    std::string id = NewGuid();
    const std::lock_guard lock(m_mutex);
    Job& job = m_jobs[id];
    job.ownerId = owner.id;
    job.work = std::move(work);
    if (m_unfinishedPolls == 0) {
        Finish(job);
    }
    return id;
}

JobReport Jobs::Poll(const std::string& id, const User& user) {
    const std::lock_guard lock(m_mutex);
    const auto entry = m_jobs.find(id);
    if (entry == m_jobs.end() || entry->second.ownerId != user.id) {
        throw ItemNotFound();
    }
    Job& job = entry->second;
    if (job.work) {
        if (job.polls == m_unfinishedPolls) {
            Finish(job);
        } else {
            job.report.state = job.polls++ == 0 ? JobState::Queued : JobState::Running;
        }
    }
    return job.report;
}

void Jobs::Finish(Job& job) {
    try {
        job.report = {JobState::Finished, job.work()};
    } catch (const ServiceError& failure) {
        job.report = {JobState::Failed, failure.what()};
    }
    job.work = nullptr;
}

} // namespace brevint::service
