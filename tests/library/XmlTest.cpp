#include "support/Xml.h"
#include "support/SimpleXPathHelper.h"

#include <gtest/gtest.h>
#include <libxml/globals.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace brevint::test {
namespace {

XmlDocPtr Parse(const std::string& text, MarkupMode mode = MarkupMode::Strict) {
    return XmlDocPtr(ParseXML(text.c_str(), -1, mode));
}

int allocationsLeft = INT_MAX; ///< that succeed, unless they are large

void* Allocate(std::size_t size) {
    return allocationsLeft-- > 0 && size < 100'000 ? std::malloc(size) : nullptr;
}
void* Reallocate(void* block, std::size_t size) {
    return allocationsLeft-- > 0 ? std::realloc(block, size) : nullptr;
}
char* Duplicate(const char* text) {
    void* const copy = Allocate(std::strlen(text) + 1);
    return copy ? std::strcpy(static_cast<char*>(copy), text) : nullptr;
}

TEST(XmlDocuments, AreWholeOrNoneWhenMemoryRunsOut) {
    const std::string document = "<a b='1' xmlns:n='u'><!-- c --><d e='f'/><n:g/><?h i?>" +
                                 std::string(9'000, 'x') + "<![CDATA[<]]><j>&lt;</j></a>";
    xmlFreeFunc release = nullptr;
    xmlMallocFunc allocate = nullptr;
    xmlReallocFunc reallocate = nullptr;
    xmlStrdupFunc duplicate = nullptr;
    xmlMemGet(&release, &allocate, &reallocate, &duplicate);
    const auto parseWith = [&](int allocations, const std::string& text, MarkupMode mode) {
        allocationsLeft = allocations;
        xmlMemSetup(release, Allocate, Reallocate, Duplicate);
        XmlDocPtr parsed = Parse(text, mode);
        xmlMemSetup(release, allocate, reallocate, duplicate);
        return parsed;
    };
    testing::internal::CaptureStderr();
    for (int count = 0; count == 0 || allocationsLeft < 0; ++count) {
        const XmlDocPtr parsed = parseWith(count, document, MarkupMode::Strict);
        const auto text = GetNodeValue(SimpleDoXPath("/a", parsed.get()));
        EXPECT_EQ(text, parsed ? std::string(9'000, 'x') + "<<" : "") << count;
        EXPECT_TRUE(parsed || allocationsLeft < 0);
    }
    // A page is not begun where its tree might not find room.
    EXPECT_NE(parseWith(INT_MAX, "<html>", MarkupMode::Tolerant), nullptr);
    EXPECT_EQ(parseWith(INT_MAX, "<html>" + document, MarkupMode::Tolerant), nullptr);
    testing::internal::GetCapturedStderr();
}

TEST(XmlNodes, AreFoundInDocumentOrder) {
    const XmlDocPtr document = Parse("<r><i n='1'><s>a</s><d><s>b</s></d></i><x/>"
                                     "<i n='2'><d/><d><s>c</s><s>d</s></d></i></r>");
    const std::pair<const char*, std::string> cases[] = {
        {"/r/i/d/s", "bcd"}, {"//d/s | //i/s", "abcd"}, {"//i/@n", "12"}, {"/r/none", ""}};
    CSimpleXPathHelper helper(document.get());
    testing::internal::CaptureStderr();
    for (const auto& [path, expected] : cases) {
        std::vector<_xmlNode*> nodes;
        SimpleDoXPath(path, document.get(), nodes);
        helper.DoXPath(path, nodes, nullptr); // appends
        std::string values;
        for (_xmlNode* node : nodes) {
            values += GetNodeValue(node);
        }
        EXPECT_EQ(values, expected + expected);
    }
    for (const char* wrong : {"", "//[", "nosuch:i", "nosuch()", "count(//s)", "//namespace::*"}) {
        EXPECT_EQ(SimpleDoXPath(wrong, document.get()), nullptr);
    }
    EXPECT_EQ(Parse("<a><b></a>"), nullptr);
    EXPECT_EQ(ParseXML(nullptr, -1), nullptr);
    EXPECT_NE(Parse("<p><nosuch &x;", MarkupMode::Tolerant), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(XmlNodes, AreFoundRelativeToANode) {
    const XmlDocPtr document =
        Parse("<r><Name>root</Name><i><Data><Other/></Data><Data><Size>5</Size></Data>"
              "<Name b='1' x:c='2' xmlns:x='u'>n</Name></i><Size>6</Size></r>");
    _xmlNode* item = SimpleDoXPath("/r/i", document.get());
    const std::pair<const char*, const char*> cases[] = {
        {"Name", "n"},      {"Data/Size", "5"}, {"Size", ""},  {"../Size", "6"},    {"*[3]", "n"},
        {"//Name", "root"}, {"Name/@b", "1"},   {"Data/", ""}, {"Data//Size", "5"}, {"name", ""}};
    for (const auto& [path, value] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(GetNodeValue(SimpleDoXPath(path, item)), value);
        const bool isName = std::string(path).find_first_of("/*") == std::string::npos;
        EXPECT_EQ(GetNodeValue(FindChildNode(item, path)), isName ? value : "");
    }
    EXPECT_EQ(SimpleDoXPath(nullptr, item), nullptr);
    EXPECT_EQ(FindChildNode(item, nullptr), nullptr);
    EXPECT_EQ(FindChildNode(nullptr, "Name"), nullptr);
    for (const auto& [name, value] : {std::pair("b", "1"), {"c", ""}, {"x:c", ""}, {"B", ""}}) {
        EXPECT_EQ(GetNodeAttrib(FindChildNode(item, "Name"), name), value) << name;
    }
}

} // namespace
} // namespace brevint::test
