#include "entry/note_export.h"

#include <gtest/gtest.h>

#include "testing/test_support.h"

namespace qb {
namespace {

TEST(NoteExport, BytesOfEachFormat) {
    const std::u16string note = u"Caf\u00E9 {a}\\\r\nline\t2 \u20AC\U0001F600";
    EXPECT_EQ(noteFileBytes(note, NoteFormat::kText, "CP1252"), "Caf\xE9 {a}\\\r\nline\t2 \x80?");
    std::string unicode = noteFileBytes(u"A\u20AC", NoteFormat::kUnicode, "CP1252");
    EXPECT_EQ(unicode, std::string("\xFF\xFE"
                                   "A\0\xAC\x20",
                                   6));
    EXPECT_EQ(noteFileBytes(note, NoteFormat::kRtf, "CP1252"),
              "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\uc1\\f0\\fs20 "
              "Caf\\u233? \\{a\\}\\\\\\par\r\nline\\tab 2 \\u8364?\\u-10179?\\u-8704?}");
}

TEST(NoteExport, FailureAndEditingRoundTrip) {
    testing::TempDir dir;
    EXPECT_FALSE(exportNote(dir.file("no/such/dir/n.txt"), u"x", NoteFormat::kText, "CP1252"));
    ASSERT_TRUE(exportNote(dir.file("n.rtf"), u"x", NoteFormat::kRtf, "CP1252"));

    const std::u16string note = u"First \u00E9\U0001F600\r\nSecond";
    std::string path = saveNoteForEditing(note, dir.path());
    ASSERT_FALSE(path.empty());
    EXPECT_EQ(path.substr(path.size() - 4), ".txt");
    EXPECT_EQ(testing::readFile(path), "First \xC3\xA9\xF0\x9F\x98\x80\nSecond");
    testing::writeFile(path, "\xEF\xBB\xBFNew\nlines\r\nhere");
    std::u16string back;
    ASSERT_TRUE(loadEditedNote(path, &back));
    EXPECT_EQ(back, u"New\r\nlines\r\nhere");
    EXPECT_TRUE(removeEditedNote(path));
    EXPECT_FALSE(loadEditedNote(path, &back));
}

}  // namespace
}  // namespace qb
