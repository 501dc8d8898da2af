// Writes what is made from the table of error codes: "header" the constants of
// brevint/ErrorCodes.h, "table" the rows of docs/error-codes.md.

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iostream>
#include <ranges>
#include <string>
#include <string_view>

namespace {

struct Row {
    int code;
    std::string_view name;
    std::string_view calls;
    std::string_view meaning;
    std::string_view hint;
};

constexpr Row kRows[] = {
#define BREVINT_ERROR_CODE(code, name, kind, calls, meaning, hint)                                 \
    {code, #name, calls, meaning, hint},
#include "resources/ErrorCodes.inc"
#undef BREVINT_ERROR_CODE
};

static_assert(std::ranges::adjacent_find(kRows, std::greater_equal(), &Row::code) ==
                  std::ranges::end(kRows),
              "The codes stand in their order, and none is given out twice.");

/// As lines of a doc comment that fit the formatter's width.
void WriteComment(std::string_view text) {
    constexpr std::size_t kWidth = 96;
    while (text.size() > kWidth) {
        const std::size_t blank = text.rfind(' ', kWidth);
        std::cout << "/// " << text.substr(0, blank) << '\n';
        text.remove_prefix(blank + 1);
    }
    std::cout << "/// " << text << '\n';
}

void WriteHeader() {
    std::cout
        << "#pragma once\n\n"
           "// Written by scripts/write-tables from resources/ErrorCodes.inc.\n\n"
           "/// Names of the numbers that IReadOnlyResponse::GetErrorCode returns. DescribeError\n"
           "/// (brevint/ErrorDescription.h) tells what each means.\n"
           "namespace ErrorCode {\n\n";
    for (const Row& row : kRows) {
        WriteComment("Calls: " + std::string(row.calls) + ". Meaning: " + std::string(row.meaning) +
                     '.');
        std::cout << "inline constexpr double " << row.name << " = " << row.code << ";\n";
    }
    std::cout << "\n} // namespace ErrorCode\n";
}

void WriteTable() {
    std::cout
        << "| code | name | calls | meaning | what the user can do |\n|---|---|---|---|---|\n";
    for (const Row& row : kRows) {
        std::cout << "| " << row.code << " | `" << row.name << "` | " << row.calls << " | "
                  << row.meaning << " | " << row.hint << " |\n";
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view wanted = argc == 2 ? argv[1] : "";
    if (wanted == "header") {
        WriteHeader();
    } else if (wanted == "table") {
        WriteTable();
    } else {
        std::cerr << "usage: brevint_write_error_codes header|table\n";
        return 2;
    }
}
