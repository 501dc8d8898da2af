#include "bench/BaselineParse.h"

#include "bench/Documents.h"

#include <libxml/parser.h>

namespace {

void Parse(const std::vector<char>& document) {
    xmlDoc* parsed = xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                   nullptr, XML_PARSE_COMPACT);
    Require(parsed, "not parsed");
    xmlFreeDoc(parsed);
}

void ParseOften(const std::vector<char>& document, std::size_t count, Stopwatch& watch) {
    watch.Start();
    for (std::size_t i = 0; i < count; ++i) {
        Parse(document);
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
