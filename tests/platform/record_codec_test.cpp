#include "platform/record_codec.h"

#include <gtest/gtest.h>

namespace qb {
namespace {

TEST(RecordCodecTest, EveryTypeRoundTripsInOrder) {
    std::vector<CEPROPVAL> props{CEPROPVAL::fileTime(1001, 0x0123456789ABCDEFull),
                                 CEPROPVAL::wstr(1002, u"Ærø \U0001F600"),
                                 CEPROPVAL::ui2(1006, 65535),
                                 CEPROPVAL::ui4(1008, 0xFFFFFFFF),
                                 CEPROPVAL::boolean(1009, true),
                                 CEPROPVAL::blobOf(1012, {0, 1, 255}),
                                 CEPROPVAL::wstr(1003, u"")};
    std::vector<CEPROPVAL> back;
    ASSERT_TRUE(decodeProps(encodeProps(props), &back));
    ASSERT_EQ(back.size(), props.size());
    for (std::size_t i = 0; i < props.size(); ++i) {
        EXPECT_EQ(back[i].propid, props[i].propid);
        EXPECT_EQ(back[i].num, props[i].num);
        EXPECT_EQ(back[i].str, props[i].str);
        EXPECT_EQ(back[i].blob, props[i].blob);
    }
}

TEST(RecordCodecTest, TruncatedOrUnknownBytesDoNotDecode) {
    std::string bytes = encodeProps({CEPROPVAL::wstr(1002, u"abc"), CEPROPVAL::ui4(1008, 5)});
    std::vector<CEPROPVAL> out;
    const std::size_t boundary = 4 + 4 + 6;  // where the second property starts
    for (std::size_t cut = 1; cut < bytes.size(); ++cut) {
        if (cut == boundary) continue;
        EXPECT_FALSE(decodeProps(std::string_view(bytes).substr(0, cut), &out)) << cut;
    }
    // A type the store does not know carries a byte count, like a blob.
    std::string unknownType = encodeProps({CEPROPVAL::ui4(1008, 5)});
    unknownType[0] = 99;  // type 99: count 5, and no bytes follow
    EXPECT_FALSE(decodeProps(unknownType, &out));
    std::string hugeCount = encodeProps({CEPROPVAL::wstr(1002, u"")});
    hugeCount[4] = hugeCount[5] = hugeCount[6] = hugeCount[7] = '\xFF';
    EXPECT_FALSE(decodeProps(hugeCount, &out));
}

TEST(RecordCodecTest, UnknownTypesAreKeptOpaqueBetweenKnownOnes) {
    CEPROPVAL strange;
    strange.propid = makePropId(1099, static_cast<PropType>(5));
    strange.blob = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F};
    const std::string bytes =
        encodeProps({CEPROPVAL::ui2(1006, 7), strange, CEPROPVAL::wstr(1002, u"after")});
    std::vector<CEPROPVAL> out;
    ASSERT_TRUE(decodeProps(bytes, &out));
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0].num, 7u);
    EXPECT_EQ(out[1].propid, strange.propid);
    EXPECT_EQ(out[1].blob, strange.blob);
    EXPECT_EQ(out[2].str, u"after");
    EXPECT_EQ(encodeProps(out), bytes);
}

TEST(RecordCodecTest, KeysOrderAsTheStoreCompares) {
    auto key = [](CEPROPVAL v) { return sortKeyOf(v); };
    EXPECT_LT(key(CEPROPVAL::ui4(1, 255)), key(CEPROPVAL::ui4(1, 256)));
    EXPECT_LT(key(CEPROPVAL::fileTime(1, 1)), key(CEPROPVAL::fileTime(1, 1ull << 40)));
    EXPECT_LT(key(CEPROPVAL::wstr(1, u"Z")), key(CEPROPVAL::wstr(1, u"a")));
    EXPECT_LT(key(CEPROPVAL::wstr(1, u"ab")), key(CEPROPVAL::wstr(1, u"abc")));
    EXPECT_LT(key(CEPROPVAL::wstr(1, u"\u00FF")), key(CEPROPVAL::wstr(1, u"\u0100")));
    CEPROPVAL minus;
    minus.propid = makePropId(1, CEVT_I4);
    minus.num = 0xFFFFFFFF;  // -1
    CEPROPVAL plus = minus;
    plus.num = 1;
    EXPECT_LT(key(minus), key(plus));
    EXPECT_LT(key(CEPROPVAL::ui4(1, 0xFFFFFFFF)), missingSortKey());
    EXPECT_LT(key(CEPROPVAL::wstr(1, u"\uFFFF\uFFFF")), missingSortKey());
}

}  // namespace
}  // namespace qb
