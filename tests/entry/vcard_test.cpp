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

}  // namespace
}  // namespace qb
