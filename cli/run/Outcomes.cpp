#include "cli/run/Outcomes.h"

#include <algorithm>
#include <utility>

namespace brevint::cli {

std::size_t Outcomes::Add(const std::string& text) {
    m_results.push_back({{{"item", text}, {"ok", true}}});
    return m_results.size() - 1;
}

void Outcomes::Settle(std::size_t number, const ItemOutcome& outcome) {
    Result& result = m_results[number];
    result.document.update(outcome.document);
    if (outcome.failure) {
        result.exitCode = outcome.failure->exitCode;
        result.document["ok"] = false;
        result.document["error"] = ToJson(*outcome.failure);
        if (outcome.isToldOfFailure) {
            m_context.Out().Report(*outcome.failure);
        }
    } else if (!outcome.line.empty()) {
        m_context.Out().Line(outcome.line);
    }
}

void Outcomes::Settle(std::size_t number, const std::function<ItemOutcome()>& work) {
    ItemOutcome outcome;
    try {
        outcome = work();
    } catch (...) {
        outcome.failure = CurrentFailure();
    }
    Settle(number, outcome);
}

bool Outcomes::IsInterrupted() const {
    return std::ranges::any_of(
        m_results, [](const Result& result) { return result.exitCode == ExitCode::Interrupted; });
}

ExitCode Outcomes::End() {
    ExitCode exitCode = IsInterrupted() ? ExitCode::Interrupted : ExitCode::Success;
    nlohmann::json documents = nlohmann::json::array();
    for (Result& result : m_results) {
        exitCode = exitCode == ExitCode::Success ? result.exitCode : exitCode;
        documents.push_back(std::move(result.document));
    }
    m_context.Out().Document({{"results", std::move(documents)}});
    return exitCode;
}

ExitCode ForEachItem(Context& context, const std::vector<std::string>& texts,
                     const std::function<ItemOutcome(const NamedItem&)>& work) {
    Outcomes outcomes(context);
    for (const std::string& text : texts) {
        std::vector<NamedItem> items;
        try {
            items = context.TheItems().Expand({text});
        } catch (...) {
            outcomes.Settle(outcomes.Add(text), ItemOutcome{.failure = CurrentFailure()});
        }
        for (const NamedItem& item : items) {
            if (!outcomes.IsInterrupted()) {
                outcomes.Settle(outcomes.Add(item.text), [&] { return work(item); });
            }
        }
        if (outcomes.IsInterrupted()) {
            break;
        }
    }
    return outcomes.End();
}

} // namespace brevint::cli
