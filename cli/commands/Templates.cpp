#include "base/Hex.h"
#include "brevint/ITemplateProxy.h"
#include "brevint/TemplateInfo.h"
#include "brevint/TemplateResponse.h"
#include "cli/output/Table.h"
#include "cli/run/Context.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunTemplates(Context& context) {
    const std::string& type = context.Settings().type;
    const auto response = context.TheService().Call(
        "The templates of the type \"" + type + "\" cannot be listed.",
        // The library puts the type into the address as it is given.
        [wide = Utf8::ToWide(base::PercentEncode(type))](Service& service) {
            return service.Templates()->GetTemplates(service.Url().c_str(), wide.c_str());
        });
    Table table({{"Category"}, {"Created"}, {"Created by"}, {"Name"}, {"Description"}});
    nlohmann::json documents = nlohmann::json::array();
    for (const CTemplateInfo& info :
         TakeRecords(*response, &CTemplateResponse::GetTemplateMetadata)) {
        const auto text = [](const std::wstring& wide) {
            return Utf8::ToNarrow(wide);
        };
        table.AddRow({text(info.GetCategory()), text(info.GetCreated()), text(info.GetCreatedBy()),
                      text(info.GetName()), text(info.GetDescription())});
        documents.push_back({{"id", text(info.GetId())},
                             {"key", text(info.GetKey())},
                             {"name", text(info.GetName())},
                             {"category", text(info.GetCategory())},
                             {"description", text(info.GetDescription())},
                             {"created", text(info.GetCreated())},
                             {"createdBy", text(info.GetCreatedBy())}});
    }
    context.Out().Print(table);
    context.Out().Document({{"templates", std::move(documents)}});
    return ExitCode::Success;
}

} // namespace brevint::cli
