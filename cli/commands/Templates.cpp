#include "base/Hex.h"
#include "brevint/ITemplateProxy.h"
#include "brevint/TemplateInfo.h"
#include "brevint/TemplateResponse.h"
#include "cli/commands/Command.h"
#include "cli/output/Table.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

namespace {

class Templates : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("type", m_type, "TYPE", "Type of the templates");
    }

    ExitCode Run(Context& context) override {
        const auto response = context.TheService().Call(
            "The templates of the type \"" + m_type + "\" cannot be listed.",
            // The library puts the type into the address as it is given.
            [type = Utf8::ToWide(base::PercentEncode(m_type))](Service& service) {
                return service.Templates()->GetTemplates(service.Url().c_str(), type.c_str());
            });
        Table table({{"Category"}, {"Created"}, {"Created by"}, {"Name"}, {"Description"}});
        nlohmann::json documents = nlohmann::json::array();
        std::vector<CTemplateInfo*> records;
        response->GetTemplateMetadata(records);
        for (CTemplateInfo* record : records) {
            const std::unique_ptr<CTemplateInfo> info(record);
            const auto text = [](const std::wstring& wide) {
                return Utf8::ToNarrow(wide);
            };
            table.AddRow({text(info->GetCategory()), text(info->GetCreated()),
                          text(info->GetCreatedBy()), text(info->GetName()),
                          text(info->GetDescription())});
            documents.push_back({{"id", text(info->GetId())},
                                 {"key", text(info->GetKey())},
                                 {"name", text(info->GetName())},
                                 {"category", text(info->GetCategory())},
                                 {"description", text(info->GetDescription())},
                                 {"created", text(info->GetCreated())},
                                 {"createdBy", text(info->GetCreatedBy())}});
        }
        context.Out().Print(table);
        context.Out().Document({{"templates", std::move(documents)}});
        return ExitCode::Success;
    }

private:
    std::string m_type;
};

} // namespace

std::unique_ptr<Command> MakeTemplates() {
    return std::make_unique<Templates>();
}

} // namespace brevint::cli
