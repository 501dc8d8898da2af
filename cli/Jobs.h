#pragma once

#include "brevint/IJobResponse.h"
#include "cli/Outcomes.h"

#include <optional>
#include <string>

namespace brevint::cli {

/// Which call a job came from; it decides how the job's failures are read.
enum class JobKind { Upload, Overwrite };

/// Asks once. The identifier of the item that a finished job has made; nothing while it goes on.
/// Throws a Failure, with `summary`, for a job that has failed.
std::optional<std::string> PollJob(Context& context, JobKind kind, const std::wstring& jobId,
                                   const std::string& summary);

/// The same, but waits for the end. `name` is what the job works on.
std::string AwaitJob(Context& context, JobKind kind, const std::wstring& jobId,
                     const std::string& name, const std::string& summary);

/// What comes of a file that has been sent: its job's end, or its identifier unless `wait`.
Outcome FinishSending(Context& context, JobKind kind, const IJobResponse& sent, bool wait,
                      const std::string& name, const std::string& summary);

} // namespace brevint::cli
