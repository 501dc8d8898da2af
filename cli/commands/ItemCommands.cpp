// The commands that do one and the same thing with each of the items named.

#include "brevint/CheckInOutResponse.h"
#include "brevint/DeleteResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/run/Outcomes.h"
#include "support/Utf8.h"

namespace brevint::cli {

namespace {

/// A call that changes each item, told in the past: "Deleted", "deleted".
template <auto Operation>
ExitCode ChangeItems(Context& context, const std::string& done, const std::string& undone) {
    return ForEachItem(context, context.Settings().items, [&](const std::string& item) {
        const std::wstring id = context.Items().Id(item);
        context.TheService().Call(item + " cannot be " + undone + ".", [id](Service& service) {
            return (service.Repository().get()->*Operation)(service.Url(), id);
        });
        return Outcome{done + " " + item, {{"id", Utf8::ToNarrow(id)}}};
    });
}

} // namespace

ExitCode RunCheckIn(Context& context) {
    return ChangeItems<&IRepositoryProxy::CheckIn>(context, "Checked in", "checked in");
}

ExitCode RunCheckOut(Context& context) {
    return ChangeItems<&IRepositoryProxy::CheckOut>(context, "Checked out", "checked out");
}

ExitCode RunRemove(Context& context) {
    return ChangeItems<&IRepositoryProxy::Delete>(context, "Deleted", "deleted");
}

ExitCode RunPath(Context& context) {
    return ForEachItem(context, context.Settings().items, [&](const std::string& item) {
        const std::wstring id = context.Items().Id(item);
        const std::string path = AskPath(context.TheService(), id, item);
        return Outcome{path, {{"id", Utf8::ToNarrow(id)}, {"path", path}}};
    });
}

} // namespace brevint::cli
