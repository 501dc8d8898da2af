#include "service/Guid.h"

#include "base/Hex.h"

#include <random>

namespace brevint::service {

namespace {

constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

} // namespace

std::optional<std::string> ParseGuid(std::string_view text) {
    if (text.size() != kForm.size()) {
        return std::nullopt;
    }
    std::string guid = base::ToLower(text);
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        if (kForm[i] == '-' ? guid[i] != '-' : base::HexValue(guid[i]) < 0) {
            return std::nullopt;
        }
    }
    return guid;
}

std::string NewGuid() {
    // Identifiers need to differ, not to be secret, and thousands may be wanted at once.
    thread_local std::mt19937_64 generator = [] {
        std::random_device source;
        std::seed_seq seed{source(), source(), source(), source()};
        return std::mt19937_64(seed);
    }();
    std::string guid;
    for (char place : kForm) {
        guid += place == '-' ? '-' : base::kHexDigits[generator() & 15];
    }
    guid[14] = '4'; // the version digit of a random identifier
    return guid;
}

} // namespace brevint::service
