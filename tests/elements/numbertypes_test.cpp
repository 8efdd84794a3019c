#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/numbertypes.h>
#include <configtools/payloads.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

TEST(NumberTypes, say_width_sign_and_range_of_each_type)
{
    const NumberType & narrow = NUMBER_TYPES[NUMERIC_INT8];
    EXPECT_STREQ(narrow.mKeyword, "int8");
    EXPECT_EQ(narrow.mType, NUMERIC_INT8);
    EXPECT_EQ(narrow.mPayload, PAYLOAD_INT8);
    EXPECT_EQ(narrow.mBits, 8U);
    EXPECT_EQ(narrow.Bytes(), 1U);
    EXPECT_TRUE(narrow.mIsSigned);
    EXPECT_EQ(narrow.mMin, -128);
    EXPECT_EQ(narrow.mMax, 127U);

    const NumberType & wide = NUMBER_TYPES[NUMERIC_UINT64];
    EXPECT_STREQ(wide.mKeyword, "uint64");
    EXPECT_EQ(wide.mPayload, PAYLOAD_UINT64);
    EXPECT_EQ(wide.Bytes(), 8U);
    EXPECT_FALSE(wide.mIsSigned);
    EXPECT_EQ(wide.mMin, 0);
    EXPECT_EQ(wide.mMax, std::numeric_limits<std::uint64_t>::max());
}

TEST(NumberTypes, are_found_by_their_keyword)
{
    for (const NumberType & type : NUMBER_TYPES)
        EXPECT_EQ(FindNumberType(type.mKeyword), &type);
    EXPECT_EQ(FindNumberType(keywords::TYPE_INTEGER), &NUMBER_TYPES[NUMERIC_INT64]);
    for (const char * other : { "", "string", "UINT8", "uint", "int", "uint8 " })
        EXPECT_EQ(FindNumberType(other), nullptr) << other;
}

TEST(NumberTypes, are_found_by_either_enumeration_and_by_no_other_number)
{
    EXPECT_EQ(FindNumberType(NUMERIC_UINT16), &NUMBER_TYPES[NUMERIC_UINT16]);
    EXPECT_EQ(FindNumberType(PAYLOAD_UINT16), &NUMBER_TYPES[NUMERIC_UINT16]);
    for (const int other : { -1, 8, 9, 255 }) {
        EXPECT_EQ(FindNumberType(static_cast<NumericTypeEnum>(other)), nullptr) << other;
        EXPECT_EQ(FindNumberType(static_cast<PayloadTypeEnum>(other)), nullptr) << other;
    }
}

TEST(VisitNumberType, visits_the_classes_of_the_type)
{
    for (const NumberType & type : NUMBER_TYPES) {
        int visits = 0;
        EXPECT_TRUE(VisitNumberType(type.mType, [&](auto number) {
            using Number = decltype(number);
            ++visits;
            EXPECT_STREQ(number.KEYWORD, type.mKeyword);
            EXPECT_EQ(sizeof(typename Number::Value), type.Bytes());
            EXPECT_EQ(std::is_signed_v<typename Number::Value>, type.mIsSigned);
            typename Number::Payload payload(std::numeric_limits<typename Number::Value>::max());
            EXPECT_EQ(payload.Type(), type.mPayload);
            EXPECT_EQ(payload.ToString(), std::to_string(type.mMax));
        }));
        EXPECT_EQ(visits, 1);
    }
}

TEST(VisitNumberType, visits_nothing_for_no_numeric_type)
{
    for (const int other : { -1, static_cast<int>(NUMERIC_NONE), 9 })
        EXPECT_FALSE(VisitNumberType(
            static_cast<NumericTypeEnum>(other), [](auto) { ADD_FAILURE() << "no type, and a visit"; }));
}

}   // namespace
}   // namespace VrexZynConfigTools
