#include "brevint/ErrorDescription.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr ErrorDescription kDescriptions[] = {
#define BREVINT_ERROR_CODE(code, name, kind, calls, meaning, hint)                                 \
    {code, #name, calls, meaning, hint},
#include "resources/ErrorCodes.inc"
#undef BREVINT_ERROR_CODE
};

} // namespace

const ErrorDescription* DescribeError(double code) noexcept {
    const auto* const row = std::ranges::find(kDescriptions, code, &ErrorDescription::code);
    return row == std::end(kDescriptions) ? nullptr : row;
}
