#pragma once

#include <string>
#include <vector>

namespace brevint::test {

/// A row: what happens, and the outcomes.
using OutcomeRow = std::vector<std::string>;

/// Compares what this target has shown with the table under these headings in the documentation,
/// whose second column says for which target a row holds. A table that differs is a failed test; or
/// it is put right, when the environment has BREVINT_WRITE_OUTCOMES.
void ExpectDocumented(const OutcomeRow& headings, const std::vector<OutcomeRow>& rows);

} // namespace brevint::test
