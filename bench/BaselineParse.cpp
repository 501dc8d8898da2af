#include "bench/BaselineParse.h"

#include "bench/Documents.h"

#include <libxml/parser.h>

void Parse(const char* document, std::size_t size) {
    xmlDoc* parsed =
        xmlReadMemory(document, static_cast<int>(size), nullptr, nullptr, XML_PARSE_COMPACT);
    Require(parsed, "not parsed");
    xmlFreeDoc(parsed);
}

namespace {

void ParseOften(const std::vector<char>& document, std::size_t count, Stopwatch& watch) {
    watch.Start();
    for (std::size_t i = 0; i < count; ++i) {
        Parse(document.data(), document.size());
    }
    watch.Stop();
}

} // namespace

void ParseListing(const TaskArguments& arguments, Stopwatch& watch) {
    ParseOften(ListingDocument(arguments.size), arguments.count, watch);
}

void ParseErrorReply(const TaskArguments& arguments, Stopwatch& watch) {
    ParseOften(ErrorDocument(), arguments.count, watch);
}
