#include "entry/rate_rules.h"

#include <gtest/gtest.h>

#include <string>

namespace qb {
namespace {

TEST(RateRules, DialogAndStoredTruncationDiffer) {
    struct Case {
        std::u16string text;
        std::uint32_t dialog;  // v × 1000 × 0.1
        std::uint32_t editor;  // v × 100
    };
    const Case cases[] = {
        {u"12.345", 1234, 1234}, {u"12.999", 1299, 1299}, {u"0.29", 29, 28}, {u"0.58", 58, 57},
        {u"1.16", 116, 115},     {u"2.05", 205, 204},     {u"", 0, 0},       {u"1,5", 100, 100},
        {u"60", 6000, 6000},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(rateDialogValue(c.text), c.dialog) << std::string(c.text.begin(), c.text.end());
        EXPECT_EQ(editorRate(c.text), c.editor) << std::string(c.text.begin(), c.text.end());
    }
    EXPECT_EQ(storedRate(0.29), 28u);
    EXPECT_EQ(storedRate(2.05), 204u);
    EXPECT_EQ(rateText(1299), u"12.99");
    EXPECT_EQ(rateText(0), u"0.00");
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
        {u"Standard", u"-5", RateField::kNone, static_cast<std::uint32_t>(-500)},
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
