#include "entry/vcard.h"

#include <gtest/gtest.h>

namespace qb {
namespace {

TEST(VCard, FileAsAndCompany) {
    const std::string text =
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Lee\r\nN:Lee;Ann;;;\r\nORG:Acme\\, Inc;Sales\r\n"
        "END:VCARD\r\n"
        "BEGIN:VCARD\r\nN:M\xC3\xBCller;Jo\r\nitem1.ORG:Glo\r\n bex\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nVERSION:2.1\r\nFN;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Ren=C3=\r\n"
        "=A9e\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\nFN;CHARSET=ISO-8859-1:Jos\xE9\nEND:VCARD\n"
        "BEGIN:VCARD\r\nORG:Nameless\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nN:;Solo\r\nEND:VCARD\r\n";
    std::vector<VCardContact> cards = parseVCards(text);
    ASSERT_EQ(cards.size(), 5u);
    EXPECT_EQ(cards[0].fileAs, u"Ann Lee");
    EXPECT_EQ(cards[0].company, u"Acme, Inc");
    EXPECT_EQ(cards[1].fileAs, u"M\u00FCller, Jo");
    EXPECT_EQ(cards[1].company, u"Globex");
    EXPECT_EQ(cards[2].fileAs, u"Ren\u00E9e");
    EXPECT_EQ(cards[3].fileAs, u"Jos\u00E9");
    EXPECT_EQ(cards[4].fileAs, u"Solo");
}

// A value without CHARSET: UTF-8 when well-formed (with or without the
// mark at the file's start), else the code page.
TEST(VCard, TextWithoutCharset) {
    const struct {
        const char* what;
        std::string text;
        const char* codePage;
        std::u16string fileAs;
    } cases[] = {
        {"UTF-8", "BEGIN:VCARD\r\nFN:M\xC3\xBCller\r\nEND:VCARD\r\n", "CP1252", u"M\u00FCller"},
        {"UTF-8 after the mark",
         "\xEF\xBB\xBF"
         "BEGIN:VCARD\r\nFN:M\xC3\xBCller\r\nEND:VCARD\r\n",
         "CP1252", u"M\u00FCller"},
        {"quoted-printable UTF-8",
         "BEGIN:VCARD\r\nFN;ENCODING=QUOTED-PRINTABLE:M=C3=BCller\r\nEND:VCARD\r\n", "CP1252",
         u"M\u00FCller"},
        {"code page 1252", "BEGIN:VCARD\r\nFN:M\xFCller\r\nEND:VCARD\r\n", "CP1252",
         u"M\u00FCller"},
        {"code page 1251", "BEGIN:VCARD\r\nFN:\xC8\xE2\xE0\xED\r\nEND:VCARD\r\n", "CP1251",
         u"\u0418\u0432\u0430\u043D"},
    };
    for (const auto& c : cases) {
        const std::vector<VCardContact> cards = parseVCards(c.text, c.codePage);
        ASSERT_EQ(cards.size(), 1u) << c.what;
        EXPECT_EQ(cards[0].fileAs, c.fileAs) << c.what;
    }
}

}  // namespace
}  // namespace qb
