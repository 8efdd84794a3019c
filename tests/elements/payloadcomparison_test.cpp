// How payloads compare, and what debug output tells of a difference.

#include <support/debug_capture.h>
#include <support/foreign_payload.h>
#include <support/framework_errors.h>
#include <support/grouping_locale.h>
#include <support/metadata_builder.h>

#include <configtools/payloads.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::DebugCapture;
using support::ForeignPayload;
using support::FrameworkErrors;
using support::GroupingLocale;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char COMPARISON[] = "VrexZynConfigTools::CPayload::operator==";

TEST(CPayload, compares_metadata_never)
{
    const auto record = ARecord(1).Build();
    CUint8Payload left(1);
    const CUint8Payload right(1);
    left.Use(*record);
    EXPECT_TRUE(left == right);
}

TEST(CPayload, differs_from_one_of_the_same_value_and_another_code)
{
    EXPECT_FALSE(CPayload<std::uint8_t>(1, PAYLOAD_RAW) == CUint8Payload(1));
    EXPECT_TRUE(CPayload<std::uint8_t>(1, PAYLOAD_UINT8) == CUint8Payload(1));
}

TEST(CPayload, differs_from_a_payload_of_another_width_or_sign)
{
    const CInt32Payload payload(1);
    EXPECT_FALSE(payload == CUint32Payload(1));
    EXPECT_FALSE(payload == CInt16Payload(1));
    EXPECT_FALSE(payload == CInt64Payload(1));
    EXPECT_FALSE(payload == CStringPayload("1", false));
    EXPECT_FALSE(payload == CComplexPayload(PAYLOAD_INT32));
}

TEST(CPayload, differs_from_a_foreign_class)
{
    const ForeignPayload foreign("\1", PAYLOAD_UINT8);
    const CUint8Payload payload(1);
    EXPECT_FALSE(payload == foreign);
    EXPECT_FALSE(foreign == payload);
    EXPECT_TRUE(payload != foreign);
}

/// A number that equals every payload, to see that an operation goes through the virtual one.
struct EqualToAll : CInt32Payload
{
    EqualToAll()
        : CInt32Payload(1)
    {}
    bool operator==(IPayload const &) const override { return true; }
};

TEST(CPayload, inequality_goes_through_the_virtual_equality)
{
    const EqualToAll left;
    const CPayload<std::int32_t> & base = left;
    EXPECT_FALSE(base.operator!=(CInt32Payload(2)));
    EXPECT_FALSE(left != CInt32Payload(2));
    EXPECT_TRUE(static_cast<const IPayload &>(left) == CStringPayload("", false));
}

/// A number that differs from every payload, itself included.
struct UnequalToAll : CInt32Payload
{
    using CInt32Payload::CInt32Payload;
    bool operator!=(CPayload<std::int32_t> const &) const override { return true; }
};

TEST(CPayload, inequality_reaches_what_the_left_class_has_of_its_own)
{
    const UnequalToAll left(1);
    const CPayload<std::int32_t> & base = left;
    const CInt32Payload & number = left;
    EXPECT_TRUE(left != left);
    EXPECT_TRUE(base != left);
    EXPECT_TRUE(number != CInt32Payload(1));
    EXPECT_FALSE(CInt32Payload(1) != left) << "the left one decides";
    EXPECT_FALSE(static_cast<const IPayload &>(left) != left) << "an interface has no such operation";
}

/// The same of an enumerator, which has two such operations.
struct UnequalEnumerator : CEnumPayload
{
    using CEnumPayload::CEnumPayload;
    using CEnumPayload::operator!=;
    bool operator!=(IPayload const &) const override { return true; }
};

TEST(CEnumPayload, inequality_reaches_what_the_left_class_has_of_its_own)
{
    const UnequalEnumerator left("one", 1);
    const CEnumPayload & enumerator = left;
    const CPayload<std::int32_t> & number = left;
    EXPECT_TRUE(left != left);
    EXPECT_TRUE(enumerator != left);
    EXPECT_TRUE(number != left);
    EXPECT_FALSE(CEnumPayload("one", 1) != left);
}

TEST(CPayload, tells_that_the_classes_differ)
{
    const DebugCapture debug;
    EXPECT_FALSE(CInt32Payload(1) == CUint32Payload(1));
    EXPECT_THAT(debug.TextsOf(COMPARISON), ElementsAre("pPayload is not a CPayload"));
    EXPECT_EQ(debug.Count("pPayload is not a CPayload"), 1U);
}

TEST(CPayload, tells_what_differs_in_group_120_at_level_3)
{
    const DebugCapture debug;
    EXPECT_FALSE(CInt32Payload(1) == CInt32Payload(2));
    const auto line = std::find_if(debug.Lines().begin(), debug.Lines().end(),
        [](const DebugCapture::Line & each) { return each.mText.rfind("payloads differs", 0) == 0; });
    ASSERT_NE(line, debug.Lines().end());
    EXPECT_EQ(line->mGroup, 120);
    EXPECT_EQ(line->mLevel, 3U);
}

TEST(CEnumPayload, tells_the_codes_in_which_it_differs_from_a_number)
{
    const DebugCapture debug;
    EXPECT_FALSE(CEnumPayload("one", 1) == CInt32Payload(1));
    EXPECT_THAT(debug.TextsOf(COMPARISON), ElementsAre("payloads differs: pLeft->type = 10, pRight->type = 2, "
                                                       "pLeft->value = 0x1, pRight->value = 0x1"));
}

TEST(CEnumPayload, tells_nothing_when_only_the_names_differ)
{
    const DebugCapture debug;
    EXPECT_FALSE(CEnumPayload("one", 1) == CEnumPayload("uno", 1));
    EXPECT_FALSE(CEnumPayload("one", 1) == CPayload<std::int32_t>(1, PAYLOAD_ENUM));
    for (const auto & line : debug.Lines())
        EXPECT_LT(line.mLevel, 3U) << line.mText;
}

TEST(CPayload, tells_nothing_when_nothing_differs)
{
    const DebugCapture debug;
    EXPECT_TRUE(CInt32Payload(1) == CInt32Payload(1));
    EXPECT_THAT(debug.TextsOf(COMPARISON), IsEmpty());
}

TEST(CPayload, tells_nothing_below_level_3_of_debug_output)
{
    const DebugCapture debug(2);
    EXPECT_FALSE(CInt32Payload(1) == CInt32Payload(2));
    EXPECT_FALSE(CInt32Payload(1) == CUint32Payload(2));
    EXPECT_THAT(debug.TextsOf(COMPARISON), IsEmpty());
}

TEST(CPayload, writes_no_line_while_debug_output_is_off)
{
    DebugCapture debug;
    CTheMsgHnd::SwitchDebugOff();
    EXPECT_FALSE(CInt32Payload(1) == CInt32Payload(2));
    EXPECT_FALSE(CInt32Payload(1) == CUint32Payload(2));
    EXPECT_THAT(debug.Lines(), IsEmpty());
}

/// The line of a differing comparison.
template <typename PayloadT>
std::string DifferenceOf(const PayloadT & left, const PayloadT & right)
{
    const DebugCapture debug;
    EXPECT_FALSE(left == right);
    const auto texts = debug.TextsOf(COMPARISON);
    return texts.size() == 1 ? texts.front() : "not one line";
}

TEST(CPayload, tells_numbers_in_lower_case_hexadecimal_of_their_own_width)
{
    EXPECT_EQ(DifferenceOf(CInt16Payload(-1), CInt16Payload(0x7abc)),
        "payloads differs: pLeft->type = 1, pRight->type = 1, pLeft->value = 0xffff, pRight->value = 0x7abc");
    EXPECT_EQ(DifferenceOf(CInt32Payload(-2), CInt32Payload(16)),
        "payloads differs: pLeft->type = 2, pRight->type = 2, pLeft->value = 0xfffffffe, pRight->value = 0x10");
    EXPECT_EQ(DifferenceOf(CInt64Payload(-1), CInt64Payload(0)),
        "payloads differs: pLeft->type = 3, pRight->type = 3, pLeft->value = 0xffffffffffffffff, "
        "pRight->value = 0x0");
    EXPECT_EQ(DifferenceOf(CUint16Payload(0xffff), CUint16Payload(10)),
        "payloads differs: pLeft->type = 5, pRight->type = 5, pLeft->value = 0xffff, pRight->value = 0xa");
    EXPECT_EQ(DifferenceOf(CUint32Payload(0xdeadbeef), CUint32Payload(0)),
        "payloads differs: pLeft->type = 6, pRight->type = 6, pLeft->value = 0xdeadbeef, pRight->value = 0x0");
    EXPECT_EQ(DifferenceOf(CUint64Payload(0x123456789abcdef0), CUint64Payload(1)),
        "payloads differs: pLeft->type = 7, pRight->type = 7, pLeft->value = 0x123456789abcdef0, "
        "pRight->value = 0x1");
}

TEST(CPayload, tells_numbers_of_8_bits_as_characters)
{
    EXPECT_EQ(DifferenceOf(CUint8Payload(65), CUint8Payload(66)),
        "payloads differs: pLeft->type = 4, pRight->type = 4, pLeft->value = 0xA, pRight->value = 0xB");
    EXPECT_EQ(DifferenceOf(CInt8Payload(-1), CInt8Payload(48)),
        "payloads differs: pLeft->type = 0, pRight->type = 0, pLeft->value = 0x\xff, pRight->value = 0x0");
}

TEST(CPayload, tells_texts_as_they_are)
{
    EXPECT_EQ(DifferenceOf(CStringPayload("100% %s", false), CStringPayload("", true)),
        "payloads differs: pLeft->type = 8, pRight->type = 8, pLeft->value = 0x100% %s, pRight->value = 0x");
}

TEST(CPayload, tells_numbers_without_separators_in_any_locale)
{
    const GroupingLocale grouping;
    EXPECT_EQ(DifferenceOf(CUint32Payload(0x1234567), CUint32Payload(1000000)),
        "payloads differs: pLeft->type = 6, pRight->type = 6, pLeft->value = 0x1234567, pRight->value = "
        "0xf4240");
}

TEST(CPayload, sets_no_error_when_it_differs)
{
    const FrameworkErrors errors;
    EXPECT_FALSE(CInt32Payload(1) == CUint32Payload(1));
    EXPECT_FALSE(CInt32Payload(1) == CInt32Payload(2));
    EXPECT_FALSE(errors.IsSet());
}

}   // namespace
}   // namespace VrexZynConfigTools
