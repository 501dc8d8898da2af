#pragma once

#include <string>
#include <vector>

namespace brevint::cli {

/// Text in columns, each as wide as its widest cell. What is wider than 255 columns is cut.
class Table {
public:
    enum class Align { Left, Right };

    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit Table(std::vector<Column> columns);

    /// One cell per column; UTF-8 in whatever state, made harmless here.
    void AddRow(std::vector<std::string> cells);

    /// The heading and the rows, in order, without blanks at their ends.
    std::vector<std::string> Lines() const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows; ///< The headings come first.
};

} // namespace brevint::cli
