#include "support/RootElement.h"

#include "support/Limits.h"
#include "support/Utf8.h"

#include <algorithm>
#include <libxml/xmlreader.h>
#include <memory>
#include <string>

bool HasRootElement(std::string_view document, std::string_view name) {
    // What may stand before the root is bounded, and libxml2 counts bytes by int.
    constexpr std::size_t kEnough = 2 * Limits::kLongestDeclarations;
    const std::string beginning = Utf8::Repaired(document.substr(0, kEnough));
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
        xmlReaderForMemory(beginning.data(), static_cast<int>(beginning.size()), nullptr, "UTF-8",
                           XML_PARSE_IGNORE_ENC | XML_PARSE_NONET | XML_PARSE_NOERROR |
                               XML_PARSE_NOWARNING),
        xmlFreeTextReader);
    while (reader && xmlTextReaderRead(reader.get()) == 1) {
        if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT) {
            const xmlChar* const found = xmlTextReaderConstName(reader.get());
            return found && reinterpret_cast<const char*>(found) == name;
        }
    }
    return false;
}
