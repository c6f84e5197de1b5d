#include "export/export_file.h"

#include <gtest/gtest.h>

#include <string>

#include "export/code_page_text.h"
#include "platform/text.h"
#include "testing/test_support.h"

namespace qb::testing {
namespace {

std::string written(const std::string& path, const std::string& codePage,
                    std::u16string_view text) {
    ExportFile file(path, codePage);
    EXPECT_TRUE(file.create());
    EXPECT_TRUE(file.writeConverted(text));
    EXPECT_TRUE(file.finish());
    return readFile(path);
}

const struct {
    const char* codePage;
    std::u16string text;
    std::string bytes;
} kConverted[] = {
    {"CP1252", u"Caf\u00e9 \u20ac", "Caf\xE9 \x80"},
    {"CP1252", u"\u3042x", "?x"},
    // Each half of a character beyond the Basic Multilingual Plane that the
    // code page cannot map is a '?' of its own: the count holds, no NUL.
    {"CP1252", u"a\U0001F600b", "a??b"},
    {"CP932", u"a\U0001F600b", "a??b"},
    {"CP1252", u"lone \xD800 and \xDC00", "lone ? and ?"},
    // Characters of several bytes are written whole, nothing is cut off.
    {"CP932", u"\u65e5\u672cab",
     "\x93\xfa\x96\x7b"
     "ab"},
    {"UTF-8", u"a\U0001F600b\u00e9",
     "a\xF0\x9F\x98\x80"
     "b\xC3\xA9"},
    {"CP1252", u"", ""},
};

TEST(ExportFile, ConvertedTextNeverHoldsNulNorLosesItsEnd) {
    TempDir dir;
    for (const auto& c : kConverted) {
        EXPECT_EQ(written(dir.file("t"), c.codePage, c.text), c.bytes) << c.codePage;
        std::string appended = "<";
        CodePageText(c.codePage).append(appended, c.text);
        EXPECT_EQ(appended, "<" + c.bytes) << c.codePage;
    }
}

// ASCII is narrowed sixteen units at a time: a character beyond ASCII at any
// place of a block, or just past one, must still reach the code page, and
// U+007F and U+0080 lie on either side of the test.
TEST(ExportFile, TextBeyondAsciiAnywhereInABlockIsConverted) {
    TempDir dir;
    for (char16_t other : {u'\u0080', u'\u00e9', u'\u0100', u'\u20ac', u'\u007f'}) {
        for (std::size_t at = 0; at < 40; ++at) {
            std::u16string text(40, u'a');
            text[at] = other;
            std::string appended;
            CodePageText("CP1252").append(appended, text);
            EXPECT_EQ(appended, toAnsi(text, "CP1252")) << "at " << at;
        }
    }
}

// Non-ASCII characters are converted once each and then copied; the bytes
// must stay those of converting each run whole, in code pages with shift
// states (ISO-2022-JP) too.
TEST(ExportFile, CharactersLearntOnceWriteWhatWholeRunsWrite) {
    TempDir dir;
    const std::u16string text =
        u"Z\u00f6llner \u2014 \u65e5\u672c\u8a9e ok \u00c6r\u00f8 \u65e5\u672c, "
        u"\u0416\u0443\u043a \u1ea0 \uac00\u3042";
    for (const char* codePage : {"CP1252", "CP932", "UTF-8", "ISO-2022-JP", "CP1258", "GB18030"}) {
        std::string expected;
        for (std::size_t i = 0; i < text.size();) {
            std::size_t j = i;
            const bool ascii = text[i] < 0x80;
            while (j < text.size() && (text[j] < 0x80) == ascii) ++j;
            expected += toAnsi(std::u16string_view(text).substr(i, j - i), codePage);
            i = j;
        }
        CodePageText converter(codePage);
        std::string appended;
        converter.append(appended, text);
        converter.append(appended, text);  // the second time from what was learnt
        EXPECT_EQ(appended, expected + expected) << codePage;
    }
}

// A long text goes out in pieces; a pair split across two pieces is still
// one character.
TEST(ExportFile, LongTextsKeepPairsAcrossPieces) {
    TempDir dir;
    for (std::size_t before : {65535u, 65534u, 131071u}) {
        std::u16string text(before, u'x');
        text += u"\U0001F600end";
        std::string expected(before, 'x');
        EXPECT_EQ(written(dir.file("t"), "UTF-8", text), expected +
                                                             "\xF0\x9F\x98\x80"
                                                             "end");
        EXPECT_EQ(written(dir.file("t"), "CP1252", text), expected + "??end");
    }
}

TEST(ExportFile, RawWideAndNarrowWrites) {
    TempDir dir;
    const std::string path = dir.file("w");
    ExportFile file(path);
    ASSERT_TRUE(file.create());
    const unsigned char mark[] = {0xFF, 0xFE};
    EXPECT_TRUE(file.writeRaw(mark, 2));
    EXPECT_TRUE(file.writeWide(u"<\u00e9"));
    EXPECT_TRUE(file.writeNarrow("ok"));
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path), std::string("\xFF\xFE<\0\xE9\0ok", 8));
}

TEST(ExportFile, ReplacesAnExistingFileOnlyWhenComplete) {
    TempDir dir;
    const std::string path = dir.file("old");
    writeFile(path, "a much longer old content");
    {
        ExportFile file(path);
        ASSERT_TRUE(file.create());
        EXPECT_TRUE(file.writeNarrow("new"));
        EXPECT_EQ(readFile(path), "a much longer old content");
        EXPECT_TRUE(file.finish());
    }
    EXPECT_EQ(readFile(path), "new");

    ExportFile missing(dir.file("no/such/dir"));
    EXPECT_FALSE(missing.create());
    EXPECT_FALSE(missing.writeNarrow("x"));
    EXPECT_NE(missing.error().find(dir.file("no/such/dir")), std::string::npos);

    ExportFile full("/dev/full");
    ASSERT_TRUE(full.create());
    full.writeConverted(u"no space");
    EXPECT_FALSE(full.finish());
    EXPECT_NE(full.error().find("/dev/full"), std::string::npos);
}

}  // namespace
}  // namespace qb::testing
