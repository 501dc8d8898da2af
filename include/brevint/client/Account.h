#pragma once

#include "brevint/client/Detail.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brevint {

/// A user's role.
enum class Role : std::int32_t {
    Unknown = BREVINT_ROLE_UNKNOWN,
    Administrator = BREVINT_ROLE_ADMINISTRATOR,
    User = BREVINT_ROLE_USER
};

/// Who is signed in.
struct Identity {
    std::string name;
    std::string portalUrl; ///< Of the portal that vouches for the user.
    Role role = Role::Unknown;
};

/// The versions of a service.
struct Versions {
    std::string service;
    std::vector<std::string> applications; ///< Of the desktop application it works with.
};

/// One template.
struct Template {
    std::string id;
    std::string key; ///< Of its type.
    std::string name;
    std::string description;
    std::string category;
    std::string createdBy;
    std::string created; ///< As the service wrote it.
    std::optional<std::chrono::sys_seconds> createdTime;
};

namespace detail {

inline Identity ToIdentity(const brevint_identity& identity) {
    return {.name = Text(identity.name),
            .portalUrl = Text(identity.portal_url),
            .role = static_cast<Role>(identity.role)};
}

inline Versions ToVersions(const brevint_versions& versions) {
    return {.service = Text(versions.service),
            .applications = {versions.applications,
                             versions.applications + versions.application_count}};
}

inline std::vector<Template> ToTemplates(const brevint_templates* templates) {
    std::vector<Template> result;
    brevint_template record = Initial(brevint_template_init);
    for (std::size_t index = 0; brevint_templates_get(templates, index, &record) != 0; ++index) {
        result.push_back({.id = Text(record.id),
                          .key = Text(record.key),
                          .name = Text(record.name),
                          .description = Text(record.description),
                          .category = Text(record.category),
                          .createdBy = Text(record.created_by),
                          .created = Text(record.created),
                          .createdTime = Time(record.created_time)});
    }
    return result;
}

} // namespace detail

} // namespace brevint
