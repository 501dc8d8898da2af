#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

namespace brevint::cli {

ExitCode RunMakeDirectory(Context& context) {
    const Options& options = context.Settings();
    const Item parent = context.TheItems().Find(options.folder).item;
    const std::string id = context.Ask("The folder \"" + options.name + "\" cannot be made.",
                                       [&](Client& client, const CallOptions& limits) {
                                           return client.CreateFolder(parent, options.name, limits);
                                       });
    context.Out().Line(id + "  " + options.name);
    context.Out().Document({{"id", id}, {"parentId", parent.id}, {"name", options.name}});
    return ExitCode::Success;
}

} // namespace brevint::cli
