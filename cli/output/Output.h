#pragma once

#include "cli/output/Failure.h"
#include "cli/output/Table.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace brevint::cli {

/// What the program says: results on standard output, either as lines or as one JSON document, and
/// failures on standard error. Everything is made harmless for terminals here.
class Output {
public:
    explicit Output(bool json) : m_json(json) {}

    bool IsJson() const { return m_json; }

    /// Lines without their ends; nothing happens in JSON mode.
    void Lines(const std::vector<std::string>& lines) const;
    void Line(const std::string& line) const { Lines({line}); }

    /// The table, its heading set off where there are colours.
    void Print(const Table& table) const;

    /// The run's only document; nothing happens in line mode.
    void Document(const nlohmann::json& document) const;

    /// The failure's account on standard error, in both modes. Throws nothing when that is closed:
    /// the exit code tells of the failure too.
    void Report(const Failure& failure) const;

private:
    bool m_json;
};

/// The failure as it stands in documents.
nlohmann::json ToJson(const Failure& failure);

} // namespace brevint::cli
