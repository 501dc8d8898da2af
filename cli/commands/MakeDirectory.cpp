#include "brevint/ICreateFolderResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/run/Context.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

/// The name as it stands between the quotation marks of a JSON string, where the library puts it as
/// it is given.
std::wstring EscapeName(const std::string& name) {
    const std::string quoted =
        nlohmann::json(name).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return Utf8::ToWide(std::string_view(quoted).substr(1, quoted.size() - 2));
}

} // namespace

ExitCode RunMakeDirectory(Context& context) {
    const Options& options = context.Settings();
    const std::wstring parentId = context.Items().Id(options.folder);
    const auto response = context.TheService().Call(
        "The folder \"" + options.name + "\" cannot be made.",
        [parentId, name = EscapeName(options.name)](Service& service) {
            return service.Repository()->CreateFolder(service.Url(), parentId, name);
        });
    const std::string id = Utf8::ToNarrow(response->GetFolderId());
    context.Out().Line(id + "  " + options.name);
    context.Out().Document(
        {{"id", id}, {"parentId", Utf8::ToNarrow(parentId)}, {"name", options.name}});
    return ExitCode::Success;
}

} // namespace brevint::cli
