#include "export/markup_writer.h"

#include <gtest/gtest.h>

#include "export/markup_document.h"

namespace qb::testing {
namespace {

// The streamed text must be the very text the element tree holds after the
// same additions: the files written before streaming stay byte for byte.
TEST(MarkupWriter, WritesWhatTheDocumentHolds) {
    MarkupDocument doc;
    doc.AddElem(u"ITEMS");
    doc.AddAttrib(u"v", u"1 \"q\" & 'a' <b>");
    doc.AddChildElem(u"ITEM");
    doc.AddChildAttrib(u"Billable", u"Y");
    doc.IntoElem();
    doc.AddChildElem(u"EMPTY");
    doc.AddChildElem(u"TEXT", u"a<b>&c \"d\" 'e'\r\nnext");
    doc.AddChildElem(u"RATE", u"60.00");
    doc.AddChildAttrib(u"Type", u"1");
    doc.AddChildElem(u"GROUP");
    doc.IntoElem();
    doc.AddChildElem(u"INNER", u"x");
    doc.OutOfElem();
    doc.OutOfElem();
    doc.AddChildElem(u"LAST");
    doc.AddChildAttrib(u"only", u"attr");

    std::u16string text;
    MarkupWriter out(text);
    out.start(u"ITEMS");
    out.attrib(u"v", u"1 \"q\" & 'a' <b>");
    out.start(u"ITEM");
    out.attrib(u"Billable", u"Y");
    out.leaf(u"EMPTY", u"");
    out.leaf(u"TEXT", u"a<b>&c \"d\" 'e'\r\nnext");
    out.start(u"RATE");
    out.attrib(u"Type", u"1");
    out.text(u"60.00");
    out.end();
    out.start(u"GROUP");
    out.leaf(u"INNER", u"x");
    out.end();
    out.end();
    out.start(u"LAST");
    out.attrib(u"only", u"attr");
    out.end();
    EXPECT_EQ(out.depth(), 1u);
    out.end();
    EXPECT_EQ(text, doc.GetDoc());
}

// A leaf is written in one piece when nothing in it needs escaping; either
// way it must be what the element written step by step is.
TEST(MarkupWriter, LeavesAreWhatTheirStepsWrite) {
    using Attributes = std::initializer_list<MarkupWriter::Attribute>;
    const Attributes none{};
    const Attributes one{{u"class", u"Data"}};
    const Attributes quoted{{u"class", u"Data"}, {u"title", u"it's \"q\""}};
    for (std::u16string_view text : {u"", u"plain \u00e9", u"a<b", u"x & y", u"'quoted'"}) {
        for (const Attributes* attributes : {&none, &one, &quoted}) {
            for (std::u16string_view emptyClose : {u"/>", u" />"}) {
                std::u16string whole;
                MarkupWriter at(whole, emptyClose);
                at.start(u"tr");
                at.leaf(u"td", text, *attributes);
                std::u16string steps;
                MarkupWriter by(steps, emptyClose);
                by.start(u"tr");
                by.start(u"td");
                for (const auto& a : *attributes) by.attrib(a.name, a.value);
                by.text(text);
                by.end();
                EXPECT_EQ(whole, steps);
            }
        }
    }
}

TEST(MarkupWriter, EmptyElementsOfAPage) {
    std::u16string text;
    MarkupWriter out(text, u" />");
    out.start(u"p");
    out.start(u"br");
    out.end();
    out.end();
    out.start(u"hr");
    out.end();
    EXPECT_EQ(text, u"<p>\r\n<br />\r\n</p>\r\n<hr />\r\n");
}

}  // namespace
}  // namespace qb::testing
