#include "platform/text.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/data_file.h"
#include "platform/registry.h"

namespace qb {
namespace {

TEST(TextTest, Utf8RoundTrips) {
    const struct {
        std::string utf8;
        std::u16string utf16;
    } cases[] = {
        {"", u""},
        {"Client A", u"Client A"},
        {"\xC3\x86r\xC3\xB8", u"\u00C6r\u00F8"},
        {"\xE2\x82\xAC 5", u"\u20AC 5"},
        {"\xE6\xBC\xA2\xE5\xAD\x97", u"\u6F22\u5B57"},
        {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
        {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(utf8ToUtf16(c.utf8), c.utf16) << c.utf8;
        EXPECT_EQ(utf16ToUtf8(c.utf16), c.utf8);
    }
}

TEST(TextTest, InvalidUtf8BecomesReplacementCharacters) {
    const struct {
        std::string utf8;
        std::u16string utf16;
    } cases[] = {
        {"a\x80"
         "b",
         u"a\uFFFDb"},
        {"\xC3", u"\uFFFD"},
        {"\xE2\x82", u"\uFFFD"},
        {"\xE2\x82"
         "A",
         u"\uFFFDA"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
        {"\xFF\xFE", u"\uFFFD\uFFFD"},
    };
    for (const auto& c : cases) EXPECT_EQ(utf8ToUtf16(c.utf8), c.utf16);
}

TEST(TextTest, UnpairedSurrogatesBecomeReplacementCharacters) {
    const std::string r = "\xEF\xBF\xBD";
    EXPECT_EQ(utf16ToUtf8(u"\xD800"), r);
    EXPECT_EQ(utf16ToUtf8(u"a\xDC00"
                          u"b"),
              "a" + r + "b");
    EXPECT_EQ(utf16ToUtf8(u"\xDE00\xD83D"), r + r);
}

TEST(TextTest, ToAnsiInWindowsWestern) {
    const struct {
        std::u16string text;
        std::string ansi;
    } cases[] = {
        {u"", ""},
        {u"Rate \u20AC", "Rate \x80"},
        {u"\u00C6r\u00F8", "\xC6r\xF8"},
        {u"\u201Cq\u201D \u2013", "\x93q\x94 \x96"},
        {u"\u6F22", "?"},
        {u"a\u6F22\u5B57b", "a??b"},
        {u"\xD83D\xDE00!", "?!"},
        {u"a\xD800"
         u"b\xDC00",
         "a?b?"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toAnsi(c.text), c.ansi) << utf16ToUtf8(c.text);
        EXPECT_EQ(toAnsi(c.text, "CP1252"), c.ansi);
    }
}

TEST(TextTest, ToAnsiOfLongText) {
    const std::u16string text = std::u16string(5000, u'\u00E9') + u"\u6F22";
    EXPECT_EQ(toAnsi(text), std::string(5000, '\xE9') + "?");
    EXPECT_EQ(fromAnsi(std::string(5000, '\xE9')), std::u16string(5000, u'\u00E9'));
}

TEST(TextTest, OtherCodePages) {
    EXPECT_EQ(toAnsi(u"\u041F\u0440\u0438\u0432\u0435\u0442 \u00E9", "CP1251"),
              "\xCF\xF0\xE8\xE2\xE5\xF2 ?");
    EXPECT_EQ(fromAnsi("\xCF\xF0\xE8\xE2\xE5\xF2", "CP1251"),
              u"\u041F\u0440\u0438\u0432\u0435\u0442");
    EXPECT_EQ(toAnsi(u"\u6F22", "UTF-8"), "\xE6\xBC\xA2");
    // An unknown code page still writes plain ASCII.
    EXPECT_EQ(toAnsi(u"Caf\u00E9 \xD83D\xDE00", "NO-SUCH-PAGE"), "Caf? ?");
    EXPECT_EQ(fromAnsi("Caf\xE9", "NO-SUCH-PAGE"), u"Caf\uFFFD");
}

TEST(TextTest, FromAnsiInWindowsWestern) {
    EXPECT_EQ(fromAnsi("Rate \x80"), u"Rate \u20AC");
    EXPECT_EQ(fromAnsi("\xC6r\xF8"), u"\u00C6r\u00F8");
    EXPECT_EQ(fromAnsi("a\x81"
                       "b"),
              u"a\uFFFDb");
    for (int b = 0; b < 256; ++b) {
        const std::string byte(1, static_cast<char>(b));
        const std::u16string text = fromAnsi(byte);
        ASSERT_EQ(text.size(), 1u) << b;
        if (text[0] != 0xFFFD) {
            EXPECT_EQ(toAnsi(text), byte) << b;
        }
    }
}

TEST(TextTest, AnsiCodePageFromTheRegistry) {
    auto file = DataFile::openInMemory();
    Registry registry(*file);
    EXPECT_EQ(ansiCodePage(registry), "CP1252");
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, "Control Panel\\International");
    ASSERT_TRUE(key);
    const struct {
        std::u16string value;
        std::string codePage;
    } cases[] = {
        {u"1251", "CP1251"},
        {u"1252", "CP1252"},
        {u"65001", "UTF-8"},
        {u"ISO-8859-15", "ISO-8859-15"},
        {u"", "CP1252"},
        {u"99999", "CP1252"},
        {u"not a code page", "CP1252"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(key->setString("ACP", c.value), ERROR_SUCCESS);
        EXPECT_EQ(ansiCodePage(registry), c.codePage) << utf16ToUtf8(c.value);
    }
}

int sign(int v) {
    return (v > 0) - (v < 0);
}

TEST(TextTest, CompareStringW) {
    const struct {
        std::u16string a, b;
        int caseSensitive, ignoringCase;
    } cases[] = {
        {u"", u"", 0, 0},
        {u"abc", u"abc", 0, 0},
        {u"abc", u"abd", -1, -1},
        {u"ab", u"abc", -1, -1},
        {u"B", u"a", -1, 1},
        {u"Client", u"client", -1, 0},
        {u"\u00C4R\u00D8", u"\u00E4r\u00F8", -1, 0},              // Latin-1
        {u"\u0141\u00D3D\u0179", u"\u0142\u00F3d\u017A", -1, 0},  // Latin Extended-A
        {u"\u0178", u"\u00FF", 1, 0},
        {u"\u03A3\u039F\u03A6\u038A\u0391", u"\u03C3\u03BF\u03C6\u03AF\u03B1", -1, 0},
        {u"\u03C2", u"\u03A3", 1, 0},
        {u"\u00B5", u"\u03BC", -1, 0},
        {u"\u041C\u041E\u0421\u041A\u0412\u0410", u"\u043C\u043E\u0441\u043A\u0432\u0430", -1, 0},
        {u"\u0401\u0416", u"\u0451\u0436", -1, 0},
        {u"\u0130", u"i", 1, 1},
        {u"\u00DF", u"SS", 1, 1},
        {u"\xD83D\xDE00", u"\uFFFD", -1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(utf16ToUtf8(c.a) + " vs " + utf16ToUtf8(c.b));
        EXPECT_EQ(sign(compareStringW(c.a, c.b, false)), c.caseSensitive);
        EXPECT_EQ(sign(compareStringW(c.b, c.a, false)), -c.caseSensitive);
        EXPECT_EQ(sign(compareStringW(c.a, c.b, true)), c.ignoringCase);
        EXPECT_EQ(sign(compareStringW(c.b, c.a, true)), -c.ignoringCase);
    }
}

}  // namespace
}  // namespace qb
