#include "brevint/TemplateInfo.h"

CTemplateInfo::CTemplateInfo() = default;

CTemplateInfo::CTemplateInfo(const std::wstring& name, const std::wstring& id,
                             const std::wstring& key, const std::wstring& created,
                             const std::wstring& createdBy, const std::wstring& description,
                             const std::wstring& category)
    : m_created(created), m_createdBy(createdBy), m_category(category), m_description(description),
      m_name(name), m_key(key), m_id(id) {}

CTemplateInfo::~CTemplateInfo() = default;

const std::wstring& CTemplateInfo::GetCreated() const {
    return m_created;
}

const std::wstring& CTemplateInfo::GetCreatedBy() const {
    return m_createdBy;
}

const std::wstring& CTemplateInfo::GetCategory() const {
    return m_category;
}

const std::wstring& CTemplateInfo::GetDescription() const {
    return m_description;
}

const std::wstring& CTemplateInfo::GetName() const {
    return m_name;
}

const std::wstring& CTemplateInfo::GetKey() const {
    return m_key;
}

const std::wstring& CTemplateInfo::GetId() const {
    return m_id;
}

void CTemplateInfo::SetCreated(const std::wstring& value) {
    m_created = value;
}

void CTemplateInfo::SetCreatedBy(const std::wstring& value) {
    m_createdBy = value;
}

void CTemplateInfo::SetCategory(const std::wstring& value) {
    m_category = value;
}

void CTemplateInfo::SetDescription(const std::wstring& value) {
    m_description = value;
}

void CTemplateInfo::SetName(const std::wstring& value) {
    m_name = value;
}

void CTemplateInfo::SetKey(const std::wstring& value) {
    m_key = value;
}

void CTemplateInfo::SetId(const std::wstring& value) {
    m_id = value;
}
