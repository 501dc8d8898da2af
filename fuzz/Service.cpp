#include "fuzz/Fuzz.h"
#include "service/ByteRange.h"
#include "service/FormFields.h"
#include "service/JsonReader.h"
#include "service/MultipartReader.h"
#include "service/ServiceError.h"

using namespace brevint::service;

// Reads the body as one kind of it.
template <class Reader>
static void Read(Reader reader) try {
    reader();
} catch (const ServiceError&) {
    // Nothing to do: all refusals are of this type.
}

// A media type and, on the next lines, a body.
void Fuzz(std::string_view input) {
    const std::string_view type = TakeLine(input);
    const auto range = ReadRange(type, input.size());
    Require(!range || range->offset + range->length <= input.size());
    Read([&] { ReadQuery(input); });
    Read([&] { ReadForm(type, input).Single("a"); });
    Read([&] {
        MultipartReader reader(type, [](std::string_view) {});
        reader.Take(input);
        reader.End();
    });
    Read([&] { JsonReader(type, input, {"a"}).Guids("a"); });
    Read([&] { JsonReader(type, input, {"a"}).Integer("a"); });
}
