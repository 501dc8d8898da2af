#pragma once

#include "cli/output/Failure.h"
#include "cli/output/Table.h"

#include <brevint/client/StopToken.h>
#include <nlohmann/json_fwd.hpp>

#include <string>
#include <utility>
#include <vector>

namespace brevint::cli {

/// Standard output cannot be written, or nobody reads it any more.
struct OutputFailure : Failure {
    explicit OutputFailure(Failure failure) : Failure(std::move(failure)) {}
};

/// What the program says: results on standard output, either as lines or as one JSON document, and
/// failures on standard error. Everything is made harmless for terminals here.
class Output {
public:
    /// With `events` everything on standard error is JSON too, one document a line. Once the token
    /// has been stopped, whoever does not read is not waited for.
    explicit Output(bool json, bool events = false, StopToken stop = {})
        : m_json(json), m_events(events), m_stop(std::move(stop)) {}

    bool IsJson() const { return m_json; }

    /// Lines without their ends; nothing happens in JSON mode. As with all results, an
    /// OutputFailure is thrown when they cannot be written.
    void Lines(const std::vector<std::string>& lines) const;
    void Line(const std::string& line) const { Lines({line}); }

    /// The table, its heading set off where there are colours.
    void Print(const Table& table) const;

    /// The run's only document; nothing happens in line mode.
    void Document(const nlohmann::json& document) const;

    /// The failure's account on standard error, in both modes. Throws nothing when that is closed:
    /// the exit code tells of the failure too.
    void Report(const Failure& failure) const;

    /// A line for people on standard error, where that takes no events. Throws nothing, likewise.
    void Remark(const std::string& line) const;

    /// A line for programs on standard error, where that takes events, likewise.
    void Event(const nlohmann::json& event) const;

    /// What steers the terminal at standard error, likewise.
    void Draw(const std::string& text) const;

private:
    void Write(const std::string& text) const;

    bool m_json;
    bool m_events;
    StopToken m_stop;
};

/// The failure as it stands in documents.
nlohmann::json ToJson(const Failure& failure);

} // namespace brevint::cli
