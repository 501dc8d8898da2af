#pragma once

#include "brevint/Export.h"

#include <string>

/// One template that the service offers: a plain record. All texts are as the server means them,
/// character entities resolved.
class BREVINT_API CTemplateInfo {
public:
    CTemplateInfo();
    CTemplateInfo(const std::wstring& name, const std::wstring& id, const std::wstring& key,
                  const std::wstring& created, const std::wstring& createdBy,
                  const std::wstring& description, const std::wstring& category);

    const std::wstring& GetCreated() const;
    const std::wstring& GetCreatedBy() const;
    const std::wstring& GetCategory() const;
    const std::wstring& GetDescription() const;
    const std::wstring& GetName() const;
    const std::wstring& GetKey() const;
    const std::wstring& GetId() const;

    void SetCreated(const std::wstring& value);
    void SetCreatedBy(const std::wstring& value);
    void SetCategory(const std::wstring& value);
    void SetDescription(const std::wstring& value);
    void SetName(const std::wstring& value);
    void SetKey(const std::wstring& value);
    void SetId(const std::wstring& value);

private:
    std::wstring m_created;
    std::wstring m_createdBy;
    std::wstring m_category;
    std::wstring m_description;
    std::wstring m_name;
    std::wstring m_key;
    std::wstring m_id;
};
