#pragma once

#include "cli/output/Failure.h"
#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brevint::cli {

/// What came of one of several items.
struct ItemOutcome {
    std::string line = {}; ///< For people; may be empty.
    /// Further members for programs.
    nlohmann::json document = nlohmann::json::object();
    std::optional<Failure> failure = {};
    bool isToldOfFailure = true; ///< On standard error; the document tells of it in any case.
};

/// Collects what came of each of a command's items. Each is told when it is settled; the document
/// has them in the order in which they were added.
class Outcomes {
public:
    explicit Outcomes(Context& context) : m_context(context) {}

    /// An item as the command line calls it. Returns its number.
    std::size_t Add(const std::string& text);

    void Settle(std::size_t number, const ItemOutcome& outcome);

    /// Carries out what settles the item, and takes a Failure that it throws for what came of it.
    void Settle(std::size_t number, const std::function<ItemOutcome()>& work);

    /// Whether the user has had enough.
    bool IsInterrupted() const;

    /// Prints the document. The result is that of the first failure, or of the interruption.
    ExitCode End();

private:
    struct Result {
        nlohmann::json document;
        ExitCode exitCode = ExitCode::Success;
    };

    Context& m_context;
    std::vector<Result> m_results;
};

/// Does `work` for every item that the texts name, patterns expanded. Tells each outcome, a failure
/// too, and goes on with the next; only an interruption ends the round.
ExitCode ForEachItem(Context& context, const std::vector<std::string>& texts,
                     const std::function<ItemOutcome(const NamedItem&)>& work);

} // namespace brevint::cli
