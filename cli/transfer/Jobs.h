#pragma once

#include "cli/run/Outcomes.h"

#include <optional>
#include <string>

namespace brevint::cli {

/// Which call a job comes from; it decides how its failures are read.
enum class JobKind { Upload, Overwrite };

/// Asks once. The identifier of the item that a finished job has made; nothing while it goes on.
/// Throws a Failure, with `summary`, for a job that has failed.
std::optional<std::string> PollJob(Context& context, JobKind kind, const std::wstring& jobId,
                                   const std::string& summary);

/// The same, but waits for the end. `name` is what the job works on.
std::string AwaitJob(Context& context, JobKind kind, const std::wstring& jobId,
                     const std::string& name, const std::string& summary);

/// Sends a local file, for the folder or file with the identifier `target`, and tells what comes of
/// it: the end of the service's job, or its identifier unless `wait`. Failures begin with
/// `summary`.
Outcome SendFile(Context& context, JobKind kind, const std::wstring& target,
                 const std::string& file, bool wait, const std::string& summary);

} // namespace brevint::cli
