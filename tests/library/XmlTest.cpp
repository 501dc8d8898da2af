#include "support/Xml.h"
#include "support/SimpleXPathHelper.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace brevint::test {
namespace {

XmlDocPtr Parse(const std::string& text, MarkupMode mode = MarkupMode::Strict) {
    return XmlDocPtr(ParseXML(text.c_str(), -1, mode));
}

/// Text of what a path selects in a document; empty when the document cannot be parsed.
std::string ValueAt(const std::string& text, const char* path,
                    MarkupMode mode = MarkupMode::Strict) {
    return GetNodeValue(SimpleDoXPath(path, Parse(text, mode).get()));
}

/// A document of elements within each other.
std::string Nested(std::size_t depth, const std::string& content) {
    std::string begin, end;
    for (std::size_t i = 0; i < depth; ++i) {
        begin += "<div>";
        end += "</div>";
    }
    return begin + content + end;
}

TEST(XmlStrict, RefusesWhatIsNotWellFormed) {
    const std::string refused[] = {
        "\xEF\xBB\xBF", "plain text", "<a>", "<a></b>", "<a/><b/>", "<a b=c/>", "<a b='1' b='2'/>",
        "<a>&nbsp;</a>", "<a>\x01</a>", "<a>\xFF</a>",
        "<html><body><p>Bad gateway<br></body></html>",
        // Declared entities, used or not, of every kind.
        "<!DOCTYPE a [<!ENTITY e \"x\">]><a/>", "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY % e SYSTEM \"file:///etc/passwd\"> %e;]><a/>",
        "<!DOCTYPE a [<!ENTITY e1 \"ha\"><!ENTITY e2 \"&e1;&e1;\">]><a b='&e2;'/>",
        Nested(100'000, "")};
    for (const std::string& text : refused) {
        SCOPED_TRACE(text.substr(0, 100));
        EXPECT_EQ(Parse(text), nullptr);
    }
    EXPECT_EQ(ParseXML(nullptr, -1), nullptr);
}

TEST(XmlStrict, ReadsUtf8WhateverTheDocumentSays) {
    const std::string body = "<a>\xC3\xA9\xF0\x9D\x84\x9E</a>";
    const std::string prologues[] = {
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-16\"?>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>",
        "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?>",
        "<?xml version='1.0'?><?style sheet?><!-- c --><!DOCTYPE a>",
        "<!DOCTYPE a SYSTEM \"http://127.0.0.1:9/none.dtd\">",
        "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a b CDATA #IMPLIED>]>"};
    for (const std::string& prologue : prologues) {
        SCOPED_TRACE(prologue);
        EXPECT_EQ(ValueAt(prologue + body, "/a"), "\xC3\xA9\xF0\x9D\x84\x9E");
    }
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
    }
}

} // namespace
} // namespace brevint::test
