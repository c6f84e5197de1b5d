#include "export/export_file.h"

#include <gtest/gtest.h>

#include <string>

#include "testing/test_support.h"

namespace qb::testing {
namespace {

std::string written(const std::string& path, const std::string& codePage,
                    std::u16string_view text) {
    ExportFile file(path, codePage);
    EXPECT_TRUE(file.create());
    EXPECT_TRUE(file.writeConverted(text));
    EXPECT_EQ(file.lastBytesWritten(), text.size());
    return readFile(path);
}

TEST(ExportFile, ConvertedWritesOneBytePerCodeUnit) {
    TempDir dir;
    const struct {
        const char* codePage;
        std::u16string text;
        std::string bytes;
    } cases[] = {
        {"CP1252", u"Caf\u00e9 \u20ac", "Caf\xE9 \x80"},
        {"CP1252", u"\u3042x", "?x"},
        // A surrogate pair is one '?', so the count leaves a NUL at the end.
        {"CP1252", u"a\U0001F600b", std::string("a?b\0", 4)},
        // Two bytes a character: the end of the text falls off.
        {"CP932", u"\u65e5\u672cab", "\x93\xfa\x96\x7b"},
        {"CP1252", u"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(written(dir.file("t"), c.codePage, c.text), c.bytes) << c.codePage;
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
    EXPECT_EQ(file.lastBytesWritten(), 4u);
    EXPECT_TRUE(file.writeNarrow("ok"));
    EXPECT_EQ(readFile(path), std::string("\xFF\xFE<\0\xE9\0ok", 8));
}

TEST(ExportFile, ReplacesAnExistingFileAndReportsFailedWrites) {
    TempDir dir;
    const std::string path = dir.file("old");
    writeFile(path, "a much longer old content");
    {
        ExportFile file(path);
        ASSERT_TRUE(file.create());
        EXPECT_TRUE(file.writeNarrow("new"));
    }
    EXPECT_EQ(readFile(path), "new");

    ExportFile missing(dir.file("no/such/dir"));
    EXPECT_FALSE(missing.create());
    EXPECT_FALSE(missing.writeNarrow("x"));
    EXPECT_FALSE(missing.lastWriteOk());

    ExportFile full("/dev/full");
    ASSERT_TRUE(full.create());
    EXPECT_FALSE(full.writeConverted(u"no space"));
    EXPECT_FALSE(full.lastWriteOk());
}

}  // namespace
}  // namespace qb::testing
