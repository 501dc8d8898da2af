#include "cli/output/Table.h"
#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunTemplates(Context& context) {
    const std::string& type = context.Settings().type;
    Table table({{"Category"}, {"Created"}, {"Created by"}, {"Name"}, {"Description"}});
    nlohmann::json documents = nlohmann::json::array();
    const std::vector<Template> templates =
        context.Ask("The templates of the type \"" + type + "\" cannot be listed.",
                    [&](Client& client, const CallOptions& limits) {
                        return client.GetTemplates(type, limits);
                    });
    for (const Template& record : templates) {
        table.AddRow(
            {record.category, record.created, record.createdBy, record.name, record.description});
        documents.push_back({{"id", record.id},
                             {"key", record.key},
                             {"name", record.name},
                             {"category", record.category},
                             {"description", record.description},
                             {"created", record.created},
                             {"createdBy", record.createdBy}});
    }
    context.Out().Print(table);
    context.Out().Document({{"templates", std::move(documents)}});
    return ExitCode::Success;
}

} // namespace brevint::cli
