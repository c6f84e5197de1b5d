#include "entry/rate_rules.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace qb {
namespace {

TEST(RateRules, DialogTableAndEditorTruncationsDiffer) {
    struct Case {
        std::u16string text;
        std::uint32_t dialog;  // v × 1000 × 0.1
        std::uint32_t table;   // the dialog's value through the table's × 100
        std::uint32_t editor;  // cut in decimal
    };
    const Case cases[] = {
        {u"12.345", 1234, 1234, 1234},
        {u"12.999", 1299, 1299, 1299},
        {u"0.29", 29, 28, 29},
        {u"0.58", 58, 57, 58},
        {u"1.16", 116, 115, 116},
        {u"2.05", 205, 204, 205},
        {u"", 0, 0, 0},
        {u"1,5", 100, 100, 100},
        {u"60", 6000, 6000, 6000},
        {u"-0.001", 0, 0, 0},
    };
    for (const Case& c : cases) {
        const std::string what(c.text.begin(), c.text.end());
        EXPECT_EQ(rateDialogValue(c.text), c.dialog) << what;
        EXPECT_EQ(checkRateDialog(u"d", c.text).rate, c.table) << what;
        EXPECT_EQ(editorRate(c.text), c.editor) << what;
    }
    EXPECT_EQ(storedRate(0.29), 28u);
    EXPECT_EQ(storedRate(2.05), 204u);
    EXPECT_EQ(storedRate(42949672.95), 0xFFFFFFFFu);
    EXPECT_EQ(storedRate(-1), 0u);
    EXPECT_EQ(rateText(1299), u"12.99");
    EXPECT_EQ(rateText(0), u"0.00");
}

TEST(RateRules, OutOfRangeRatesAreRefused) {
    for (std::u16string_view text : {u"-0.01", u"-5", u"42949672.96", u"99999999999"}) {
        const std::string what(text.begin(), text.end());
        EXPECT_EQ(editorRate(text), std::nullopt) << what;
        EXPECT_EQ(rateDialogValue(text), std::nullopt) << what;
        const RateCheck r = checkRateDialog(u"Standard", text);
        EXPECT_FALSE(r.ok) << what;
        EXPECT_EQ(r.field, RateField::kRate) << what;
        EXPECT_EQ(r.message, kRateRangeMessage) << what;
    }
    EXPECT_EQ(editorRate(u"42949672.95"), kMaxRate);
    EXPECT_TRUE(checkRateDialog(u"Top", u"42949672.95").ok);
}

TEST(RateRules, AnUntouchedRateBoxKeepsTheStoredRate) {
    // Each typed pass through the table's truncation would lower these.
    for (std::uint32_t stored : {28u, 114u, 115u, 204u, 0xFFFFFFFFu}) {
        const RateCheck r = checkRateDialog(u"Renamed", rateText(stored), stored);
        ASSERT_TRUE(r.ok) << stored;
        EXPECT_EQ(r.rate, stored);
    }
    // A changed box is typed anew.
    EXPECT_EQ(checkRateDialog(u"Changed", u"0.29", 5000u).rate, 28u);
}

TEST(RateRules, DialogChecksDescriptionThenRate) {
    struct Case {
        std::u16string description;
        std::u16string rate;
        RateField field;
        std::uint32_t value;
    };
    const Case cases[] = {
        {u"", u"abc", RateField::kDescription, 0},
        {u"Standard", u"1e2", RateField::kRate, 0},
        {u"Standard", u"12 USD", RateField::kRate, 0},
        {u"Standard", u"", RateField::kNone, 0},
        {u"Standard", u"12.999", RateField::kNone, 1299},
    };
    for (const Case& c : cases) {
        const RateCheck r = checkRateDialog(c.description, c.rate);
        EXPECT_EQ(r.ok, c.field == RateField::kNone);
        EXPECT_EQ(r.field, c.field);
        switch (c.field) {
            case RateField::kDescription:
                EXPECT_EQ(r.message, kNoDescriptionMessage);
                break;
            case RateField::kRate:
                EXPECT_EQ(r.message, kInvalidRateMessage);
                break;
            case RateField::kNone:
                EXPECT_EQ(r.rate, c.value);
                break;
        }
    }
    EXPECT_EQ(kInvalidRateMessage,
              u"This is not a valid rate. Rate can have up to 2 decimal places.");
}

}  // namespace
}  // namespace qb
