#include "cli/Command.h"
#include "cli/Jobs.h"

namespace brevint::cli {

namespace {

class Job : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("job", jobId_, "JOB",
                         "Identifier of the job, as put and replace print it");
        options.Choice("--of", command_, "COMMAND", {"put", "replace"},
                       "Command that the job came from");
        options.Flag("--wait", wait_, "Wait until the job has ended");
    }

    ExitCode Run(Context& context) override {
        const std::wstring jobId = CheckIdentifier(jobId_);
        const JobKind kind = command_ == "put" ? JobKind::Upload : JobKind::Overwrite;
        const std::string summary = "The job " + jobId_ + " has failed, or cannot be asked for.";
        const std::optional<std::string> itemId =
            wait_ ? AwaitJob(context, kind, jobId, "job " + jobId_, summary)
                  : PollJob(context, kind, jobId, summary);
        nlohmann::json document = {{"jobId", jobId_}, {"finished", itemId.has_value()}};
        if (itemId) {
            document["id"] = *itemId;
        }
        context.Out().Line(itemId ? "finished  " + *itemId : "not finished yet");
        context.Out().Document(document);
        return ExitCode::Success;
    }

private:
    std::string jobId_;
    std::string command_ = "put";
    bool wait_ = false;
};

} // namespace

std::unique_ptr<Command> MakeJob() {
    return std::make_unique<Job>();
}

} // namespace brevint::cli
