#include "service/Jobs.h"

#include "service/Guid.h"
#include "service/ServiceError.h"

#include <utility>

namespace brevint::service {

Jobs::Jobs(unsigned unfinishedPolls) : unfinishedPolls_(unfinishedPolls) {}

std::string Jobs::Add(const User& owner, Work work) {
    std::string id = NewGuid();
    const std::lock_guard lock(mutex_);
    Job& job = jobs_[id];
    job.ownerId = owner.id;
    job.work = std::move(work);
    if (unfinishedPolls_ == 0)
        Finish(job);
    return id;
}

JobReport Jobs::Poll(const std::string& id, const User& user) {
    const std::lock_guard lock(mutex_);
    const auto entry = jobs_.find(id);
    if (entry == jobs_.end() || entry->second.ownerId != user.id)
        throw ItemNotFound();
    Job& job = entry->second;
    if (job.work) {
        if (job.polls == unfinishedPolls_)
            Finish(job);
        else
            job.report.state = job.polls++ == 0 ? JobState::Queued : JobState::Running;
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
