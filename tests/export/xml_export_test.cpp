#include "export/xml_export.h"

#include <string>

#include "export/export_fixture.h"
#include "export/markup_document.h"

namespace qb::testing {
namespace {

using XmlExport = StoreTest;

constexpr char kItems[] =
    "<ITEMS>\r\n"
    "<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
    "<DATE>2004-03-01</DATE>\r\n"
    "<CLIENT>A&amp;B &lt;x&gt;</CLIENT>\r\n"
    "<PROJECT>It's \"q\"</PROJECT>\r\n"
    "<PHASE/>\r\n"
    "<TASK>Design</TASK>\r\n"
    "<START>01:30:00</START>\r\n"
    "<DURATION>1.50</DURATION>\r\n"
    "<CURRENCY>USD</CURRENCY>\r\n"
    "<RATE Type=\"1\">60.00</RATE>\r\n"
    "<AMOUNT>90.00</AMOUNT>\r\n"
    "<BILLTO/>\r\n"
    "<CUSTOM1/>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3>c3</CUSTOM3>\r\n"
    "<NOTES>l1\r\nl2</NOTES>\r\n"
    "</ITEM>\r\n"
    "<ITEM Billable=\"N\" Paid=\"Y\">\r\n"
    "<DATE>2004-03-31</DATE>\r\n"
    "<CLIENT>Beta</CLIENT>\r\n"
    "<PROJECT/>\r\n"
    "<PHASE/>\r\n"
    "<TASK>T</TASK>\r\n"
    "<DURATION>0.25</DURATION>\r\n"
    "<CURRENCY/>\r\n"
    "<AMOUNT>0.00</AMOUNT>\r\n"
    "<BILLTO/>\r\n"
    "<CUSTOM1/>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3/>\r\n"
    "</ITEM>\r\n"
    "</ITEMS>\r\n";

std::string utf16le(const std::string& ascii) {
    std::string bytes;
    for (char c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

class XmlExportFile : public XmlExport {
  protected:
    void SetUp() override {
        XmlExport::SetUp();
        TimeEntry first = entry(entryDate(2004, 3, 1, 13, 30), u"A&B <x>", u"Design", 150);
        bill(first, 6000, false, 1);
        first.project = u"It's \"q\"";
        first.currency = u"USD";
        first.custom3 = u"c3";
        first.notes = noteBytes(u"l1\r\nl2");
        add(first);
        TimeEntry second = entry(entryDate(2004, 3, 31), u"Beta", u"T", 25);
        second.paid = true;
        second.rateType = 3;  // no RATE element, so no Type either
        add(second);
        add(entry(entryDate(2004, 4, 1), u"Late", u"T", 100));
    }
};

TEST_F(XmlExportFile, EachEncoding) {
    const struct {
        std::uint16_t encoding;
        std::string declaration;
    } cases[] = {
        {0, "<?xml version=\"1.0\"?>\r\n"},
        {1, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"},
        {3, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n"},
        {4, "<?xml version=\"1.0\" encoding=\"Big-5\"?>\r\n"},
        {5, "<?xml version=\"1.0\" encoding=\"Shift-JIS\"?>\r\n"},
        {9, "<?xml version=\"1.0\"?>\r\n"},
    };
    for (const auto& c : cases) {
        env.settings.encoding = c.encoding;
        const std::string path = dir.file("out.xml");
        ASSERT_TRUE(ExportXml(table, path, marchCriteria(), env));
        EXPECT_EQ(readFile(path), c.declaration + kItems) << "Encoding " << c.encoding;
    }
}

TEST_F(XmlExportFile, Utf16HasAByteOrderMarkAndLittleEndianText) {
    env.settings.encoding = 2;
    const std::string path = dir.file("out16.xml");
    ASSERT_TRUE(ExportXml(table, path, marchCriteria(), env));
    const std::string bytes = readFile(path);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\xFF\xFE<\0", 4));
    EXPECT_EQ(bytes,
              "\xFF\xFE" +
                  utf16le(std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n") + kItems));
}

TEST_F(XmlExport, NoEntriesIsAnEmptyRoot) {
    const std::string path = dir.file("none.xml");
    ASSERT_TRUE(ExportXml(table, path, marchCriteria(), env));
    EXPECT_EQ(readFile(path), "<?xml version=\"1.0\"?>\r\n<ITEMS/>\r\n");
}

TEST_F(XmlExport, NonAsciiTextUsesTheCodePageWhateverTheLabel) {
    env.settings.encoding = 1;  // "UTF-8" is only a label
    add(entry(entryDate(2004, 3, 2), u"Caf\u00e9", u"T", 100));
    const std::string path = dir.file("ansi.xml");
    ASSERT_TRUE(ExportXml(table, path, marchCriteria(), env));
    EXPECT_NE(readFile(path).find("<CLIENT>Caf\xE9</CLIENT>"), std::string::npos);
}

TEST_F(XmlExport, FailsWhenTheFileCannotBeWritten) {
    EXPECT_FALSE(ExportXml(table, dir.file("no/dir.xml"), marchCriteria(), env));
    EXPECT_FALSE(ExportXml(table, "/dev/full", marchCriteria(), env));
    env.settings.encoding = 2;
    EXPECT_FALSE(ExportXml(table, "/dev/full", marchCriteria(), env));
}

}  // namespace
}  // namespace qb::testing
