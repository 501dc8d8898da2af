// The commands that do one and the same thing with each of the items named.

#include "brevint/CheckInOutResponse.h"
#include "brevint/DeleteResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/commands/Command.h"
#include "cli/run/Outcomes.h"
#include "support/Utf8.h"

namespace brevint::cli {

namespace {

/// Carries out one call for an item.
using ItemCall = Outcome (*)(Service& service, const std::string& item, const std::wstring& id);

class ItemCommand : public Command {
public:
    ItemCommand(const char* items, ItemCall call) : m_description(items), m_call(call) {}

    void AddOptions(OptionList& options) override {
        options.Required("items", m_items, kItemType, m_description);
    }

    ExitCode Run(Context& context) override {
        return ForEachItem(context, m_items, [this, &context](const std::string& item) {
            const std::wstring id = context.Items().Id(item);
            Outcome outcome = m_call(context.TheService(), item, id);
            outcome.document["id"] = Utf8::ToNarrow(id);
            return outcome;
        });
    }

private:
    const char* m_description;
    ItemCall m_call;
    std::vector<std::string> m_items;
};

/// A call that changes the item, told in the past: "Deleted", "deleted".
template <auto Operation>
Outcome Change(Service& service, const std::string& item, const std::wstring& id,
               const std::string& done, const std::string& undone) {
    service.Call(item + " cannot be " + undone + ".",
                 [id](Service& at) { return (at.Repository().get()->*Operation)(at.Url(), id); });
    return {done + " " + item, nlohmann::json::object()};
}

Outcome CheckIn(Service& service, const std::string& item, const std::wstring& id) {
    return Change<&IRepositoryProxy::CheckIn>(service, item, id, "Checked in", "checked in");
}

Outcome CheckOut(Service& service, const std::string& item, const std::wstring& id) {
    return Change<&IRepositoryProxy::CheckOut>(service, item, id, "Checked out", "checked out");
}

Outcome Remove(Service& service, const std::string& item, const std::wstring& id) {
    return Change<&IRepositoryProxy::Delete>(service, item, id, "Deleted", "deleted");
}

Outcome TellPath(Service& service, const std::string& item, const std::wstring& id) {
    const std::string path = AskPath(service, id, item);
    return {path, {{"path", path}}};
}

constexpr char kFiles[] = "Files, by identifier or path";
constexpr char kAnyItems[] = "Files and folders, by identifier or path";

} // namespace

std::unique_ptr<Command> MakeCheckIn() {
    return std::make_unique<ItemCommand>(kFiles, CheckIn);
}

std::unique_ptr<Command> MakeCheckOut() {
    return std::make_unique<ItemCommand>(kFiles, CheckOut);
}

std::unique_ptr<Command> MakePath() {
    return std::make_unique<ItemCommand>(kAnyItems, TellPath);
}

std::unique_ptr<Command> MakeRemove() {
    return std::make_unique<ItemCommand>(kAnyItems, Remove);
}

} // namespace brevint::cli
