#include "cli/commands/Command.h"
#include "cli/transfer/Jobs.h"

namespace brevint::cli {

namespace {

class Job : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("job", m_jobId, "JOB",
                         "Identifier of the job, as put and replace print it");
        options.Choice("--of", m_command, "COMMAND", {"put", "replace"},
                       "Command that the job came from");
        options.Flag("--wait", m_wait, "Wait until the job has ended");
    }

    ExitCode Run(Context& context) override {
        const std::wstring jobId = CheckIdentifier(m_jobId);
        const JobKind kind = m_command == "put" ? JobKind::Upload : JobKind::Overwrite;
        const std::string summary = "The job " + m_jobId + " has failed, or cannot be asked for.";
        const std::optional<std::string> itemId =
            m_wait ? AwaitJob(context, kind, jobId, "job " + m_jobId, summary)
                   : PollJob(context, kind, jobId, summary);
        nlohmann::json document = {{"jobId", m_jobId}, {"finished", itemId.has_value()}};
        if (itemId) {
            document["id"] = *itemId;
        }
        context.Out().Line(itemId ? "finished  " + *itemId : "not finished yet");
        context.Out().Document(document);
        return ExitCode::Success;
    }

private:
    std::string m_jobId;
    std::string m_command = "put";
    bool m_wait = false;
};

} // namespace

std::unique_ptr<Command> MakeJob() {
    return std::make_unique<Job>();
}

} // namespace brevint::cli
