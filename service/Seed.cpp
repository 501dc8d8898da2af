#include "service/Seed.h"

#include <utility>

namespace brevint::service {

namespace {

using namespace std::chrono_literals;

// Plants items that all belong to one user and bear one date.
class Planter {
public:
    Planter(Repository& repository, const User& owner) : m_repository(repository), m_owner(owner) {}

    std::string Folder(std::string_view parentId, std::string name, std::string description = {},
                       bool isPublic = true) {
        return Plant(parentId, std::move(name), std::move(description), nullptr, isPublic);
    }

    void File(std::string_view parentId, std::string name, std::shared_ptr<const Blob> content,
              std::string description = {}) {
        Plant(parentId, std::move(name), std::move(description), std::move(content), true);
    }

    void File(std::string_view parentId, std::string name, std::string text,
              std::string description = {}) {
        File(parentId, std::move(name), MakeBlob(std::move(text)), std::move(description));
    }

private:
    std::string Plant(std::string_view parentId, std::string name, std::string description,
                      std::shared_ptr<const Blob> content, bool isPublic) {
        Item item;
        item.parentId = parentId;
        item.ownerId = m_owner.id;
        item.name = std::move(name);
        item.description = std::move(description);
        item.created = std::chrono::sys_days(2024y / 3 / 1) + 9h + 30min;
        item.createdBy = m_owner.name;
        item.modified = std::chrono::sys_days(2024y / 3 / 4) + 16h + 5min + 12s;
        item.isPublic = isPublic;
        item.content = std::move(content);
        return m_repository.Seed(std::move(item));
    }

    Repository& m_repository;
    const User& m_owner;
};

} // namespace

void SeedRepository(Repository& repository, const ServiceOptions& options) {
    Planter plant(repository, kUsers.front());
    const auto projects = Repository::kProjectRootId;
    const auto templates = Repository::kTemplateRootId;

    const std::string bridge = plant.Folder(projects, "Bridge", "Survey & repair <2024>");
    plant.File(bridge, "Bridge.project", "bridge project\n");
    plant.File(bridge, "Notes.txt", "Span 3 needs a second look.\n", "First inspection");
    plant.File(bridge, "Überblick — 概要.txt", "Grüße\n", "Übersicht der Spannweiten");
    plant.File(bridge, "R&D 'plan' [draft].txt", "a < b && b > c\n", "\"quoted\" & <tagged>");
    plant.File(bridge, "Empty.txt", std::string());
    plant.Folder(bridge, "Фото 📷");
    const std::string archive = plant.Folder(projects, "Archive", "Closed projects", false);
    plant.File(archive, "Block.bin", MakePatternBlob(100'000));

    const std::string reports = plant.Folder(templates, "Reports");
    plant.File(reports, "Cost & time.template", "cost and time\n", "Costs < budget, in €");
    plant.File(reports, "Übergabe.template", "handover\n");
    const std::string plans = plant.Folder(templates, "Plans");
    plant.File(plans, "Inspection.template", "inspection\n", "Yearly inspection");

    for (const auto& [name, size] : options.patternFiles) {
        plant.File(projects, name, MakePatternBlob(size));
    }
    if (options.manyFiles > 0) {
        const std::string many = plant.Folder(projects, "Many");
        for (std::size_t i = 1; i <= options.manyFiles; ++i) {
            plant.File(many, "File " + std::to_string(i) + ".txt", "number " + std::to_string(i));
        }
    }
}

} // namespace brevint::service
