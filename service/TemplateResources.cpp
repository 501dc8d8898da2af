// The templates of the template repository, by the folder that they lie in.

#include "base/Ascii.h"
#include "service/FormFields.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/Text.h"
#include "service/XmlWriter.h"

namespace brevint::service {

namespace {

HttpReply ListTemplates(const Call& call, const Repository& repository) {
    const FormFields query = ReadQuery(call.request.query);
    const auto key = query.Single("key");
    if (query.Single("source") != "templates" || !key) {
        throw BadRequest("The query must hold source=templates and a key.");
    }

    XmlWriter xml;
    xml.Open("ResponseData");
    for (const auto& [item, category] : repository.Templates()) {
        if (!key->empty() && !base::EqualsIgnoreCase(category, *key)) {
            continue;
        }
        // Texts that users wrote are HTML in this listing.
        xml.Open("Item")
            .Element("UniqueId", item.id)
            .Element("Created", FormatUtc(item.created))
            .Element("CreatedBy", HtmlEscape(item.createdBy))
            .Element("Category", HtmlEscape(category))
            .Element("Description", HtmlEscape(item.description))
            .Element("Name", HtmlEscape(item.name.substr(0, item.name.rfind('.'))))
            .Element("TemplateKey", HtmlEscape(base::ToLower(category)))
            .Close();
    }
    xml.Close();
    return XmlReply(xml.Document());
}

} // namespace

void AddTemplateResources(Router& router, ServiceState& state) {
    router.Add({"GET", "Analysis/Types", Access::SignedIn, "`?source=templates&key=FOLDER`",
                "`Item` for each template in folders of that name; all when the key is empty. "
                "Names and descriptions are HTML text"},
               [&state](const Call& call) { return ListTemplates(call, state.repository); });
}

} // namespace brevint::service
