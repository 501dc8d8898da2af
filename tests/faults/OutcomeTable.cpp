#include "tests/faults/OutcomeTable.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

namespace brevint::test {

namespace {

constexpr std::string_view kTarget = BREVINT_TARGET;
constexpr std::string_view kOtherTarget = kTarget == "Linux" ? "Windows" : "Linux";
const std::string kBoth = "both";

std::string Line(const OutcomeRow& row, std::string_view target) {
    std::string line = "| " + row[0] + " | " + std::string(target);
    for (std::size_t i = 1; i < row.size(); ++i) {
        line += " | " + row[i];
    }
    return line + " |";
}

OutcomeRow Cells(const std::string& line) {
    OutcomeRow cells;
    for (std::size_t at = 2, end; (end = line.find(" |", at)) != line.npos; at = end + 3) {
        cells.push_back(line.substr(at, end - at));
    }
    return cells;
}

} // namespace

void ExpectDocumented(const OutcomeRow& headings, const std::vector<OutcomeRow>& rows) {
    std::ifstream file(BREVINT_OUTCOMES);
    std::ostringstream before, after;
    std::vector<std::string> found;
    std::map<std::string, OutcomeRow> others; // the rows that hold for the other target
    const std::string header = Line(headings, "on");
    std::string line;
    while (std::getline(file, line) && line != header) {
        before << line << '\n';
    }
    ASSERT_TRUE(file) << "no table with " << header;
    std::getline(file, line);
    const std::string rule = line;
    while (std::getline(file, line) && line.starts_with('|')) {
        found.push_back(line);
        auto cells = Cells(line);
        const auto target = cells.at(1);
        cells.erase(cells.begin() + 1);
        if (target != kTarget) {
            others[cells[0]] = cells;
        }
    }
    std::vector<std::string> lines;
    for (const OutcomeRow& row : rows) {
        const auto other = others.find(row[0]);
        const bool same = other != others.end() && other->second == row;
        lines.push_back(Line(row, same ? kBoth : kTarget));
        if (other != others.end() && !same) {
            lines.push_back(Line(other->second, kOtherTarget));
            // Linux first, whichever target writes.
            if (kTarget != "Linux") {
                std::swap(lines.back(), *(lines.end() - 2));
            }
        }
    }
    if (!std::getenv("BREVINT_WRITE_OUTCOMES")) {
        EXPECT_EQ(found, lines) << "BREVINT_WRITE_OUTCOMES=1 puts the table right";
        return;
    }
    after << line << '\n' << file.rdbuf();
    file.close();
    std::ofstream out(BREVINT_OUTCOMES, std::ios::binary);
    out << before.str() << header << '\n' << rule << '\n';
    for (const auto& each : lines) {
        out << each << '\n';
    }
    out << after.str();
}

} // namespace brevint::test
