#include "brevint/ICreateFolderResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/commands/Command.h"
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

class MakeDirectory : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("parent", m_parent, kItemType,
                         "Folder to make it in, by identifier or path");
        options.Required("name", m_name, "NAME", "Name of the new folder");
    }

    ExitCode Run(Context& context) override {
        const std::wstring parentId = context.Items().Id(m_parent);
        const auto response = context.TheService().Call(
            "The folder \"" + m_name + "\" cannot be made.",
            [parentId, name = EscapeName(m_name)](Service& service) {
                return service.Repository()->CreateFolder(service.Url(), parentId, name);
            });
        const std::string id = Utf8::ToNarrow(response->GetFolderId());
        context.Out().Line(id + "  " + m_name);
        context.Out().Document(
            {{"id", id}, {"parentId", Utf8::ToNarrow(parentId)}, {"name", m_name}});
        return ExitCode::Success;
    }

private:
    std::string m_parent;
    std::string m_name;
};

} // namespace

std::unique_ptr<Command> MakeMakeDirectory() {
    return std::make_unique<MakeDirectory>();
}

} // namespace brevint::cli
