#include "cli/output/Table.h"

#include "cli/terminal/DisplayWidth.h"
#include "cli/terminal/SafeText.h"

#include <utf8.h>

#include <algorithm>
#include <utility>

namespace brevint::cli {

namespace {

/// A name that a file can have fits, one that a service makes up to fill the memory does not.
constexpr std::size_t kWidestCell = 255;

/// The text, or as much of its beginning as a cell holds and "…".
std::string Cut(const std::string& text) {
    if (text.size() <= kWidestCell) {
        return text; // no character has more columns than bytes
    }
    std::size_t width = 0;
    auto cut = text.begin();
    for (auto next = text.begin(); next != text.end();) {
        const auto start = next;
        utf8::next(next, text.end());
        width += DisplayWidth(std::string(start, next));
        if (width > kWidestCell) {
            return std::string(text.begin(), cut) + "\u2026";
        }
        if (width < kWidestCell) {
            cut = next;
        }
    }
    return text;
}

} // namespace

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {
    std::vector<std::string> headings;
    headings.reserve(m_columns.size());
    for (const Column& column : m_columns) {
        headings.push_back(column.heading);
    }
    AddRow(std::move(headings));
}

void Table::AddRow(std::vector<std::string> cells) {
    cells.resize(m_columns.size());
    for (std::string& cell : cells) {
        cell = Cut(Neutralise(cell));
    }
    m_rows.push_back(std::move(cells));
}

std::vector<std::string> Table::Lines() const {
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    }
    std::vector<std::string> lines;
    for (const auto& row : m_rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - DisplayWidth(row[i]), ' ');
            const bool right = m_columns[i].align == Align::Right;
            line += (i == 0 ? "" : "  ") + (right ? padding + row[i] : row[i] + padding);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace brevint::cli
