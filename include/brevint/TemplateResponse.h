#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/ITemplateResponse.h"

/// The templates that the service offers. Keeps the parsed reply until the next parse.
class BREVINT_API CTemplateResponse : public CBaseResponse, public ITemplateResponse {
public:
    CTemplateResponse();
    ~CTemplateResponse() override;

    void ParseServerResponse() override;
    void GetTemplateMetadata(std::vector<CTemplateInfo*>& templates) override;

    /// Text of the first node at `childPath` below `node`, character entities resolved; empty when
    /// there is none.
    std::wstring GetChildNodeValue(const char* childPath, _xmlNode* node) const;

private:
    XmlDocPtr m_document;
};
