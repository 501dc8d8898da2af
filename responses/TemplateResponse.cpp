#include "brevint/TemplateResponse.h"

#include "brevint/ErrorCodes.h"
#include "brevint/TemplateInfo.h"
#include "responses/AllOrNone.h"
#include "responses/ErrorMessages.h"
#include "support/HtmlUnescape.h"
#include "support/Xml.h"

CTemplateResponse::CTemplateResponse() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
    };
    AddExactMessages(kExact);
}

CTemplateResponse::~CTemplateResponse() = default;

void CTemplateResponse::ParseServerResponse() {
    m_document = ParseReply();
    if (m_document) {
        JudgeByMessage(m_document.get());
    }
}

void CTemplateResponse::GetTemplateMetadata(std::vector<CTemplateInfo*>& templates) {
    const bool haveAll = AppendAllOrNone(templates, [&] {
        std::vector<_xmlNode*> nodes;
        SimpleDoXPath("//Item", m_document.get(), nodes);
        templates.reserve(templates.size() + nodes.size());
        for (_xmlNode* node : nodes) {
            auto info = std::make_unique<CTemplateInfo>();
            info->SetId(GetChildNodeValue("UniqueId", node));
            info->SetCreated(GetChildNodeValue("Created", node));
            info->SetCreatedBy(GetChildNodeValue("CreatedBy", node));
            info->SetCategory(GetChildNodeValue("Category", node));
            info->SetDescription(GetChildNodeValue("Description", node));
            info->SetName(GetChildNodeValue("Name", node));
            info->SetKey(GetChildNodeValue("TemplateKey", node));
            templates.push_back(info.release());
        }
    });
    if (!haveAll) {
        SetErrorCode(ErrorCode::EmptyReply);
    }
}

std::wstring CTemplateResponse::GetChildNodeValue(const char* childPath, _xmlNode* node) const {
    return BaseHlpr::HtmlUnescape(GetWideNodeValue(SimpleDoXPath(childPath, node)).c_str());
}
