#include "responses/PortalForm.h"
#include "tests/library/Helpers.h"

#include <gtest/gtest.h>

#include <string>

namespace brevint::test {
namespace {

TEST(PortalForm, IsReadFromEveryPageThatABrowserWouldPost) {
    // Most pages hold this field, and nothing else to post.
    const std::string field = "<input type=hidden name=a value=1>";
    const std::string closed = "<input type='hidden' name='a' value='1'/>";
    const std::string padding(1'000'000, 'x');
    const auto hidden = [](const std::string& element) {
        return '<' + element + " a='>'><form action=evil><input type=hidden name=evil></" +
               element + '>';
    };
    const struct {
        std::string page;
        std::wstring action;
        std::wstring fields = L"a=1&";
    } cases[] = {
        // Well-formed pages.
        {"<FORM ACTION='u'><INPUT TYPE='HiDDen' NAME='aB' VALUE='1'/></FORM>", L"u", L"aB=1&"},
        {"<?xml version=\"1.0\" encoding=\"utf-16\"?><!DOCTYPE html><html xml:lang='en' "
         "xmlns='http://www.w3.org/1999/xhtml'><head><title/></head><body onload='f()'>"
         "<form action='u'><div>" +
             closed + "</div></form></body></html>",
         L"u"},
        {"<h:html xmlns:h='http://www.w3.org/1999/xhtml'><h:form action='u'>"
         "<h:input type='hidden' name='a' value='1'/></h:form></h:html>",
         L"u"},
        {"<html><script>document.write('<form action=\"evil\"><input type=\"hidden\"/></form>');"
         "</script><form action='u'>" +
             closed + "</form></html>",
         L"u"},
        {"<form action='u'><input type='hidden' name='w' "
         "value='&lt;a b=&quot;c&quot;&gt;&amp;amp;  &#xE9;'/></form>",
         L"u", L"w=%3Ca+b%3D%22c%22%3E%26amp%3B++%C3%A9&"},
        {"<f><title><form action='evil'/></title><template><form action='evil'/></template>"
         "<form action='u'><input x:type='text' type='hidden' name='a' x:name='b' value='1' "
         "xmlns:x='urn:x'/></form></f>",
         L"u"},
        // Pages that only browsers understand.
        {"<FORM METHOD=POST ACTION=http://s/?q><BR>" + field + field, L"http://s/?q", L"a=1&a=1&"},
        {"\xEF\xBB\xBF<form action='/post'><p>Wait&nbsp;please<br>" + field, L"/post"},
        {"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\" \"http://127.0.0.1:9/x.dtd\"><head>"
         "<meta http-equiv=Content-Type content='text/html; charset=utf-16'></head>"
         "<form action='u'><input type=hidden name=n value='\xC3\xA9\xE6\xA6\x82'></form>",
         L"u", L"n=%C3%A9%E6%A6%82&"},
        {"<meta charset=windows-1252><form action='u'><input type=hidden name=\xC3\xA9 "
         "value='\xC3\xA9'></form><p>\xC3",
         L"u", L"\u00e9=%C3%A9&"},
        {"<script>if (a<b && c</d/.e) { x = '<' + \"</p>\"; }</script><form action=u>" + field,
         L"u"},
        {"<form action='first'></form>" + field + "<form action='second'>" + field, L"first",
         L"a=1&a=1&"},
        {"<form action='u'>" + field +
             "<input type=text name=t><input name=n>"
             "<input type='h\u0130dden' name=i><input type='hidden ' name=h>"
             "<input type='' name=e><button type=hidden name=b>",
         L"u"},
        {"<form action='u'><input type=hidden name=a><input type=hidden value=v><input type=hidden>"
         "<input type=hidden name='w r' value='&amp;amp;&#61;&nbsp;+ %'>",
         L"u", L"a=&=v&=&w r=%26amp%3B%3D%C2%A0%2B+%25&"},
        {"<form action=' ../x?a=1&amp;b=%20&#38;c&copy=3 \xC3\xA9 '>" + field,
         L" ../x?a=1&b=%20&c&copy=3 \u00e9 "},
        {"<!-- <form action='evil'> --><p>" + padding +
             "<br></p><form action=u><input type=hidden name=a value=" + padding + ">",
         L"u", L"a=" + std::wstring(padding.begin(), padding.end()) + L"&"},
        {"<form action='a&#0;b&#1;c&#xD800;d&#99999999;e&#xZZ;f&#g'>"
         "<input type=hidden name='n&#8;n' value='&#128;&#150;&#x9f;&#129;&#65v&#x1D11E;&#xFFFE;'>",
         L"a\ufffdb\ufffdc\ufffdd\ufffde&#xZZ;f&#g",
         L"n\ufffdn=%E2%82%AC%E2%80%93%C5%B8%C2%81Av%F0%9D%84%9E%EF%BF%BD&"},
        // What a browser does not take for markup.
        {hidden("textarea") + hidden("title") + hidden("iframe") + hidden("noframes") +
             hidden("noembed") + hidden("XMP") + hidden("script") + hidden("style") +
             hidden("template") + "<form action=u>" + field,
         L"u"},
        {"<template><tr><td>x<div><template></div></template><form action=evil></Template >"
         "<textarea><!-- <a b='</textareas></textarea/><svg><title/></svg><form action=u>" +
             field,
         L"u"},
        {"<![CDATA[<form action=evil>]]><!x <form action=evil>&lt;!<form action=u>" + field, L"u"},
        {Numbered(1'000, "<b>x<g/><div><br><script>'<form>'</script>") + "<form action=u>" + field,
         L"u"},
        {"<form action=u>" + field + "<textarea><input type=hidden name=b></form>", L"u"},
        // Pages that lack something.
        {"<form>" + field + "</form><form action=second>", L""},
        {"<html><body><form action='u'><input type=text name=a><br></form></html>", L"u", L""},
        {"", L"", L""},
        {"<<<>>&#;<!<!--<?\x01\xFF</<form<input type=", L"", L""},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.page.substr(0, 200));
        EXPECT_EQ(GetFormAction(test.page.c_str()), test.action);
        EXPECT_EQ(GetHiddenFormData(test.page.c_str()), test.fields);
    }
}

TEST(PortalRefusal, IsReadFromEveryPage) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"<r><failureMessage>Bad \xC3\xA9 &amp; wrong</failureMessage></r>", L"Bad \u00e9 & wrong"},
        {"<failureMessage> two\n lines </failureMessage>", L" two\n lines "},
        {"<x:r xmlns:x='urn:x'><x:failureMessage>Bad</x:failureMessage></x:r>", L"Bad"},
        {"<html xmlns='http://www.w3.org/1999/xhtml'><failureMessage>Bad</failureMessage></html>",
         L"Bad"},
        {"<r><failureMessage><![CDATA[<b>Bad</b> & x]]></failureMessage></r>", L"<b>Bad</b> & x"},
        {"<r><FAILUREMESSAGE>Bad</FAILUREMESSAGE></r>", L"Bad"},
        {"<HTML><P>Sorry<BR><FailureMessage>Bad &eacute;</FAILUREMESSAGE>", L"Bad \u00e9"},
        {"<!DOCTYPE html><script>if (a<b) s = '<failureMessage>no</failureMessage>';</script>"
         "<failuremessage>Bad</failuremessage>",
         L"Bad"},
        {"<r><failureMessage><p>Bad <b>word</b><!-- c --></p>!</failureMessage></r>", L"Bad word!"},
        {"<div><failureMessage>Bad <b>word</b><br>!</failureMessage></div>", L"Bad word!"},
        {"<r><failureMessage/><failureMessage>second</failureMessage></r>", L""},
        {"<r><failure>x</failure><message>y</message></r>", L"before"},
        {"<html><body><form action='u'></form><br></body></html>", L"before"},
        {"failureMessage", L"before"},
    };
    for (const auto& [page, expected] : cases) {
        SCOPED_TRACE(page);
        std::wstring message = L"before";
        PortalPage(page).FailureMessage(message);
        EXPECT_EQ(message, expected);
    }
}

} // namespace
} // namespace brevint::test
