#include "entry/list_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "entry/file_bytes.h"
#include "testing/test_support.h"

namespace qb {
namespace {

std::string utf16(std::u16string_view text, bool mark = true) {
    std::string b = mark ? std::string("\xFF\xFE", 2) : std::string();
    for (char16_t c : text) {
        b.push_back(static_cast<char>(c & 0xFF));
        b.push_back(static_cast<char>(c >> 8));
    }
    return b;
}

using Items = std::vector<std::u16string>;

TEST(ListFile, SplitsCutsAndDecodes) {
    const std::string c200(200, 'c');
    const std::string c128(128, 'd');
    struct Case {
        const char* what;
        std::string bytes;
        bool ok;
        Items items;
    } cases[] = {
        {"blank lines and every line end",
         "A\r\n\r\nB\n\nC\rD\r\n",
         true,
         {u"A", u"B", u"C", u"D"}},
        {"200 characters become 127", c200 + "\r\nx", true, {std::u16string(127, u'c'), u"x"}},
        {"128 characters stay whole", c128, true, {std::u16string(128, u'd')}},
        {"ANSI code page", "Caf\xE9", true, {u"Caf\u00E9"}},
        {"UTF-8 after the mark", "\xEF\xBB\xBFM\xC3\xBCller\r\nZ", true, {u"M\u00FCller", u"Z"}},
        {"UTF-8 without the mark",
         "M\xC3\xBCller\nCaf\xC3\xA9",
         true,
         {u"M\u00FCller", u"Caf\u00E9"}},
        {"UTF-8 beyond the BMP", "\xF0\x9F\x98\x80 ok", true, {u"\U0001F600 ok"}},
        {"the mark before ASCII", "\xEF\xBB\xBF" "Asa", true, {u"Asa"}},
        // Not well-formed UTF-8: the code page reads every byte.
        {"code page bytes that look like a lead", "M\xC3ller", true, {u"M\u00C3ller"}},
        {"an overlong form", "\xC0\xAF", true, {u"\u00C0\u00AF"}},
        {"an encoded surrogate", "\xED\xA0\x80", true, {u"\u00ED\u00A0\u20AC"}},
        {"UTF-16 after the mark", utf16(u"\u00C5sa\r\nB\u0113"), true, {u"\u00C5sa", u"B\u0113"}},
        {"UTF-16 ends at a NUL", utf16(std::u16string(u"A\nB\0C", 5)), true, {u"A", u"B"}},
        {"UTF-16 whose first character is NUL", utf16(std::u16string(u"\0A", 2)), false, {}},
        {"a mark alone", "\xFF\xFE", false, {}},
        {"binary", std::string("MZ\x90\0\x03", 5), false, {}},
        {"empty file", "", true, {}},
    };
    for (const Case& c : cases) {
        Items items{u"untouched"};
        EXPECT_EQ(listItemsFromBytes(c.bytes, "CP1252", &items), c.ok) << c.what;
        if (c.ok) {
            EXPECT_EQ(items, c.items) << c.what;
        }
    }
}

TEST(ListFile, Utf8Check) {
    const struct {
        const char* bytes;
        bool utf8;
    } cases[] = {
        {"", true},
        {"plain", true},
        {"\xC3\xBC", true},
        {"\xE2\x82\xAC", true},
        {"\xF4\x8F\xBF\xBF", true},   // U+10FFFF
        {"\xC3", false},              // cut short
        {"\xC1\xBF", false},          // overlong
        {"\xE0\x9F\xBF", false},      // overlong
        {"\xED\xBF\xBF", false},      // surrogate
        {"\xF4\x90\x80\x80", false},  // past U+10FFFF
        {"\xFC\x80", false},
        {"\xE2\x28\xA1", false},
    };
    for (const auto& c : cases) EXPECT_EQ(isUtf8(c.bytes), c.utf8) << c.bytes;
}

TEST(ListFile, BadFilesFail) {
    testing::TempDir dir;
    const std::string good = dir.file("good.txt");
    testing::writeFile(good, "A\r\nB");
    Items items;
    ASSERT_TRUE(readListFile(good, "CP1252", &items));
    EXPECT_EQ(items, (Items{u"A", u"B"}));

    const std::string readOnly = dir.file("ro.txt");
    testing::writeFile(readOnly, "A");
    ::chmod(readOnly.c_str(), 0444);
    const std::string big = dir.file("big.txt");
    testing::writeFile(big, std::string(kListFileLimit + 1, 'a'));
    for (const std::string& path : {dir.file("missing.txt"), readOnly, big, dir.path()}) {
        EXPECT_FALSE(readListFile(path, "CP1252", &items)) << path;
    }
}

TEST(ListFile, ExportBytes) {
    const Items items{u"Acme", u"Caf\u00E9"};
    EXPECT_EQ(listFileBytes(items, false, "CP1252"), "Acme\r\nCaf\xE9");
    EXPECT_EQ(listFileBytes(items, true, "CP1252"), utf16(u"Acme\r\nCaf\u00E9"));
    EXPECT_EQ(listFileBytes({}, false, "CP1252"), "");
    // What goes out comes back in.
    Items back;
    ASSERT_TRUE(listItemsFromBytes(listFileBytes(items, true, "CP1252"), "CP1252", &back));
    EXPECT_EQ(back, items);
}

}  // namespace
}  // namespace qb
