#include "export/markup_document.h"

#include <gtest/gtest.h>

#include <string>

namespace qb {
namespace {

TEST(MarkupDocument, WritesElementsAttributesAndEscapes) {
    MarkupDocument doc;
    ASSERT_TRUE(doc.AddElem(u"ITEMS"));
    EXPECT_EQ(doc.GetDoc(), u"<ITEMS/>\r\n");
    EXPECT_FALSE(doc.AddElem(u"SECOND"));  // one root only

    ASSERT_TRUE(doc.AddChildElem(u"ITEM"));
    EXPECT_EQ(doc.GetDoc(), u"<ITEMS>\r\n<ITEM/>\r\n</ITEMS>\r\n");
    ASSERT_TRUE(doc.AddChildAttrib(u"Billable", u"Y"));
    ASSERT_TRUE(doc.AddChildAttrib(u"Note", u"<'&\">"));
    EXPECT_EQ(doc.GetDoc(),
              u"<ITEMS>\r\n<ITEM Billable=\"Y\" Note=\"&lt;&apos;&amp;&quot;&gt;\"/>\r\n"
              u"</ITEMS>\r\n");

    ASSERT_TRUE(doc.IntoElem());
    ASSERT_TRUE(doc.AddChildElem(u"EMPTY", u""));
    ASSERT_TRUE(doc.AddChildElem(u"TEXT", u"a<b & 'c' \"d\">"));
    ASSERT_TRUE(doc.OutOfElem());
    ASSERT_TRUE(doc.AddChildElem(u"LAST", u"x"));
    ASSERT_TRUE(doc.AddAttrib(u"n", u"1"));  // on the root, the main position
    EXPECT_EQ(doc.GetDoc(),
              u"<ITEMS n=\"1\">\r\n"
              u"<ITEM Billable=\"Y\" Note=\"&lt;&apos;&amp;&quot;&gt;\">\r\n"
              u"<EMPTY/>\r\n"
              u"<TEXT>a&lt;b &amp; 'c' \"d\"&gt;</TEXT>\r\n"
              u"</ITEM>\r\n"
              u"<LAST>x</LAST>\r\n"
              u"</ITEMS>\r\n");

    // What was written reads back through the positions the writes kept.
    EXPECT_EQ(doc.GetChildTagName(), u"LAST");
    EXPECT_EQ(doc.GetChildData(), u"x");
    EXPECT_EQ(doc.GetAttrib(u"n"), u"1");
    ASSERT_TRUE(doc.OutOfElem() == false);  // already at the top
}

TEST(MarkupDocument, ChildOfAnElementHoldingText) {
    MarkupDocument doc;
    doc.AddElem(u"a", u"x");
    ASSERT_TRUE(doc.AddChildElem(u"b"));
    ASSERT_TRUE(doc.AddChildElem(u"c", u"y"));
    EXPECT_EQ(doc.GetDoc(), u"<a>x<b/>\r\n<c>y</c>\r\n</a>\r\n");
    EXPECT_FALSE(MarkupDocument().AddChildElem(u"orphan"));
    EXPECT_FALSE(MarkupDocument().AddAttrib(u"a", u"b"));
}

TEST(MarkupDocument, ParseErrors) {
    const struct {
        std::u16string text;
        std::u16string error;
    } cases[] = {
        {u"<a><b></a>", u"End tag does not correspond to b"},
        {u"<a>x", u"Element tag not found"},
        {u"no markup", u"Element tag not found"},
        {u"<", u"Abrupt end within tag"},
        {u"< \"a\">", u"Tag starts with quote"},
        {u"<a", u"End of tag not found"},
        {u"<!-- open", u"End of tag not found"},
        {u"<?pi", u"End of tag not found"},
        {u"<a><b x=\"1\"", u"End of tag not found"},
        {u"<a>< b</a>", u"Element tag not found"},  // b runs to the last ">"
        {u"<a><b/>text<", u"Abrupt end within tag"},
        {u"<a>x<y>", u"Element tag not found"},
        {u"<a></a", u"End tag not completed for element a"},
        {u"<a></", u"End tag not completed for element a"},
        {u"<a></b>", u"End tag does not correspond to a"},
        {u"<a></A>", u"End tag does not correspond to a"},
    };
    for (const auto& c : cases) {
        MarkupDocument doc;
        EXPECT_FALSE(doc.SetDoc(c.text));
        EXPECT_EQ(doc.GetError(), c.error);
        EXPECT_FALSE(doc.IsWellFormed());
        EXPECT_EQ(doc.GetDoc(), c.text);  // the text stays
    }
}

TEST(MarkupDocument, ParsesAndNavigates) {
    MarkupDocument doc;
    ASSERT_TRUE(
        doc.SetDoc(u"<?xml version=\"1.0\"?>\r\n<!-- c -->\r\n<!DOCTYPE r>\r\n"
                   u"<r v=\"1\" w = \"a&amp;b\" x=y z='q' n>\r\n"
                   u"  <i k=\"1\">&lt;&unknown;&gt</i>\n"
                   u"  <j><![CDATA[raw <&amp;>]]></j>\n"
                   u"  <i k=\"2\"/>\n"
                   u"  <k><l>deep</l></k>\n"
                   u"</r >"));
    EXPECT_TRUE(doc.IsWellFormed());
    EXPECT_EQ(doc.GetError(), u"");
    ASSERT_TRUE(doc.FindElem(u"r"));
    EXPECT_EQ(doc.GetAttrib(u"v"), u"1");
    EXPECT_EQ(doc.GetAttrib(u"w"), u"a&b");
    EXPECT_EQ(doc.GetAttrib(u"x"), u"");  // unquoted values are not read
    EXPECT_EQ(doc.GetAttrib(u"z"), u"");
    EXPECT_EQ(doc.GetAttrib(u"missing"), u"");
    EXPECT_EQ(doc.GetData(), u"");  // it has children

    ASSERT_TRUE(doc.FindChildElem(u"i"));
    EXPECT_EQ(doc.GetChildData(), u"<&unknown;&gt");
    ASSERT_TRUE(doc.FindChildElem());
    EXPECT_EQ(doc.GetChildTagName(), u"j");
    EXPECT_EQ(doc.GetChildData(), u"raw <&amp;>");
    ASSERT_TRUE(doc.FindChildElem(u"i"));
    EXPECT_EQ(doc.GetChildAttrib(u"k"), u"2");
    EXPECT_EQ(doc.GetChildData(), u"");
    EXPECT_FALSE(doc.FindChildElem(u"i"));

    ASSERT_TRUE(doc.FindChildElem(u"k"));
    ASSERT_TRUE(doc.IntoElem());
    EXPECT_EQ(doc.level(), 1);
    EXPECT_FALSE(doc.FindChildElem(u"nothing"));
    ASSERT_TRUE(doc.IntoElem());
    EXPECT_EQ(doc.GetTagName(), u"l");
    EXPECT_EQ(doc.GetData(), u"deep");
    ASSERT_TRUE(doc.OutOfElem());
    ASSERT_TRUE(doc.OutOfElem());
    EXPECT_EQ(doc.GetTagName(), u"r");
    EXPECT_EQ(doc.GetChildTagName(), u"k");
    EXPECT_FALSE(doc.OutOfElem());
    EXPECT_FALSE(doc.AddElem(u"second-root"));
}

TEST(MarkupDocument, EditsAParsedDocument) {
    MarkupDocument doc;
    ASSERT_TRUE(doc.SetDoc(u"<a>\r\n<b/>\r\n<c>t</c>\r\n</a>\r\n"));
    ASSERT_TRUE(doc.FindElem());
    ASSERT_TRUE(doc.FindChildElem(u"b"));
    ASSERT_TRUE(doc.AddChildElem(u"n", u"1"));  // after b, before c
    ASSERT_TRUE(doc.AddChildAttrib(u"at", u"2"));
    ASSERT_TRUE(doc.FindChildElem(u"c"));
    EXPECT_EQ(doc.GetChildData(), u"t");
    ASSERT_TRUE(doc.IntoElem());
    ASSERT_TRUE(doc.AddChildElem(u"d"));
    EXPECT_EQ(doc.GetDoc(), u"<a>\r\n<b/>\r\n<n at=\"2\">1</n>\r\n<c>t<d/>\r\n</c>\r\n</a>\r\n");

    // An empty text after a failed parse: AddElem starts afresh.
    EXPECT_FALSE(doc.SetDoc(u"<broken>"));
    ASSERT_TRUE(doc.AddElem(u"fresh"));
    EXPECT_EQ(doc.GetDoc(), u"<fresh/>\r\n");
    EXPECT_FALSE(doc.SetDoc(u""));
    EXPECT_EQ(doc.GetDoc(), u"");
}

TEST(MarkupDocument, LargeDocumentsStayConsistent) {
    MarkupDocument doc;
    doc.AddElem(u"ITEMS");
    constexpr int kItems = 20000;
    for (int i = 0; i < kItems; ++i) {
        doc.AddChildElem(u"ITEM");
        doc.AddChildAttrib(u"n", u"v");
        doc.IntoElem();
        doc.AddChildElem(u"A", u"x");
        doc.AddChildElem(u"B");
        doc.OutOfElem();
    }
    const std::u16string item = u"<ITEM n=\"v\">\r\n<A>x</A>\r\n<B/>\r\n</ITEM>\r\n";
    EXPECT_EQ(doc.GetDoc().size(), 9 + item.size() * kItems + 10);
    MarkupDocument parsed;
    ASSERT_TRUE(parsed.SetDoc(doc.GetDoc()));
    int count = 0;
    parsed.FindElem();
    while (parsed.FindChildElem(u"ITEM")) ++count;
    EXPECT_EQ(count, kItems);
}

}  // namespace
}  // namespace qb
