#include "brevint/CheckInOutResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/Command.h"
#include "cli/Outcomes.h"
#include "cli/Utf8.h"
#include "cli/Verdict.h"

#include <CLI/CLI.hpp>

namespace brevint::cli {

namespace {

class CheckIn : public Command {
public:
    void AddOptions(CLI::App& app) override {
        app.add_option("items", items_, "Files, by identifier or path")->required();
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, items_, [&context](const std::string& item) {
            const std::wstring id = context.Items().Id(item);
            Service& service = context.TheService();
            const std::unique_ptr<CCheckInOutResponse> response(
                service.Repository()->CheckIn(service.Url(), id));
            RequireSuccess(response.get(), item + " cannot be checked in.");
            return Outcome{"Checked in " + item, {{"id", ToUtf8(id)}}};
        });
    }

private:
    std::vector<std::string> items_;
};

} // namespace

std::unique_ptr<Command> MakeCheckIn() {
    return std::make_unique<CheckIn>();
}

} // namespace brevint::cli
