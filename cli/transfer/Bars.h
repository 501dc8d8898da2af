#pragma once

#include "cli/transfer/Display.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brevint::cli {

/// " 45%"; blanks where the whole is not known.
std::string Percentage(const Status& status);

/// "12.3 MiB of 27.0 MiB, 3.1 MiB/s, 0:05 left", as far as it is known.
std::string Amounts(const Status& status);

/// One line for a terminal that is `columns` wide: the name, a bar, and what is known in numbers.
/// What there is no room for is left out, the name last.
std::string BarLine(const Status& status, std::size_t columns);

/// A bar for each file that runs, and one for all if there are several.
class Bars final : public Display {
public:
    explicit Bars(const Output& out) : m_out(out) {}
    ~Bars() override;

    std::optional<std::chrono::milliseconds> Period() const override;
    void Show(const Overview& overview) override;
    void Hide() override;

private:
    std::string TakeAway() const;

    const Output& m_out;
    std::vector<std::size_t> m_widths; ///< Of the lines that are shown.
};

} // namespace brevint::cli
