#pragma once

#include "brevint/Export.h"

#include <string>

/// One template that the service offers: a plain record. All texts are as the server means them,
/// character entities resolved.
class BREVINT_API CTemplateInfo {
public:
    CTemplateInfo();
    /// A record that holds these texts.
    CTemplateInfo(const std::wstring& name, const std::wstring& id, const std::wstring& key,
                  const std::wstring& created, const std::wstring& createdBy,
                  const std::wstring& description, const std::wstring& category);
    ///@{
    /// A plain value.
    CTemplateInfo(const CTemplateInfo&) = default;
    CTemplateInfo(CTemplateInfo&&) = default;
    CTemplateInfo& operator=(const CTemplateInfo&) = default;
    CTemplateInfo& operator=(CTemplateInfo&&) = default;
    ///@}
    virtual ~CTemplateInfo();

    /// When the template was made.
    const std::wstring& GetCreated() const;
    /// Who made it.
    const std::wstring& GetCreatedBy() const;
    /// The category that the server has put it in.
    const std::wstring& GetCategory() const;
    /// Text for people.
    const std::wstring& GetDescription() const;
    /// Name, for people.
    const std::wstring& GetName() const;
    /// Key of its type.
    const std::wstring& GetKey() const;
    /// Identifier.
    const std::wstring& GetId() const;

    ///@{
    /// Stores what the getter of that name returns.
    void SetCreated(const std::wstring& value);
    void SetCreatedBy(const std::wstring& value);
    void SetCategory(const std::wstring& value);
    void SetDescription(const std::wstring& value);
    void SetName(const std::wstring& value);
    void SetKey(const std::wstring& value);
    void SetId(const std::wstring& value);
    ///@}

private:
    std::wstring m_created;
    std::wstring m_createdBy;
    std::wstring m_category;
    std::wstring m_description;
    std::wstring m_name;
    std::wstring m_key;
    std::wstring m_id;
};
