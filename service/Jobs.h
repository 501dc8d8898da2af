#pragma once

#include "service/User.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace brevint::service {

/// The values are the service's own: they travel in the job's document.
enum class JobState { Queued = 0, Running = 1, Finished = 2, Failed = 3 };

struct JobReport {
    JobState state = JobState::Queued;
    std::string details; ///< The item that a finished job made, or why a job failed.
};

/// Jobs advance when they are polled, so that whoever polls sees the same states every time:
/// queued, then running, then the end. Thread-safe.
class Jobs {
public:
    /// Does the job and returns the id of its item; throws ServiceError when it fails.
    using Work = std::function<std::string()>;

    /// A job's first `unfinishedPolls` polls find it unfinished, the next one ends it. With 0 a job
    /// is done as soon as it is added.
    explicit Jobs(unsigned unfinishedPolls);

    /// The new job's id.
    std::string Add(const User& owner, Work work);

    /// Throws ServiceError when `user` has no job of that id.
    JobReport Poll(const std::string& id, const User& user);

private:
    struct Job {
        std::string ownerId;
        Work work; ///< Empty once it is done.
        unsigned polls = 0;
        JobReport report;
    };

    static void Finish(Job& job);

    const unsigned m_unfinishedPolls;
    std::mutex m_mutex;
    std::map<std::string, Job> m_jobs;
};

} // namespace brevint::service
