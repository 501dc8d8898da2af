#include "service/Misbehaviour.h"

#include "service/Text.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace brevint::service {

namespace {

using Number = std::uint64_t;
using Break = Misbehaviour::Break;

constexpr MisbehaviourRow kRows[] = {
    {"silent", "BYTES", "Nothing comes after so many bytes of content; the connection stays open",
     [](Misbehaviour& m, Number n) {
         m.breakOff = Break::Silence, m.breakAfter = n;
     }},
    {"cut", "BYTES", "The connection ends after so many bytes of content",
     [](Misbehaviour& m, Number n) {
         m.breakOff = Break::Cut, m.breakAfter = n;
     }},
    {"reset", "BYTES", "The connection is reset after so many bytes of content",
     [](Misbehaviour& m, Number n) {
         m.breakOff = Break::Reset, m.breakAfter = n;
     }},
    {"slow", "BYTES", "So many bytes of content pass in a second",
     [](Misbehaviour& m, Number n) {
         m.bytesPerSecond = n;
     }},
    {"unavailable", "SECONDS", "The status is 503, and Retry-After asks to wait for so long",
     [](Misbehaviour& m, Number n) {
         m.retryAfter = n;
     }},
    {"changed", "", "A download finds a file with another ETag than the one before",
     [](Misbehaviour& m, Number) {
         m.changesFile = true;
     }},
    {"session-end", "", "The request is answered, but its session is at an end",
     [](Misbehaviour& m, Number) {
         m.endsSession = true;
     }},
    {"requests", "N", "All this concerns the first N requests; then all is well",
     [](Misbehaviour& m, Number n) {
         m.requests = n;
     }},
};

} // namespace

std::span<const MisbehaviourRow> AllMisbehaviours() {
    return kRows;
}

void ReadMisbehaviour(std::string_view text, Misbehaviour& misbehaviour) {
    const auto equals = text.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const auto row = std::ranges::find(kRows, text.substr(0, equals), &MisbehaviourRow::name);
    if (row == std::end(kRows) || row->value.empty() == hasValue) {
        throw std::invalid_argument("there is no misbehaviour \"" + std::string(text) + "\"");
    }
    row->set(misbehaviour, hasValue ? ReadNumber(text.substr(equals + 1)) : 0);
}

void Conduct::Set(const Misbehaviour& misbehaviour) {
    const std::lock_guard lock(m_mutex);
    m_misbehaviour = misbehaviour;
}

Misbehaviour Conduct::Next() {
    const std::lock_guard lock(m_mutex);
    if (m_misbehaviour.requests == 0) {
        return {};
    }
    --m_misbehaviour.requests;
    return m_misbehaviour;
}

} // namespace brevint::service
