/// Every pair of payload classes with `==` and `!=`. Compiled once in each language that the headers allow, because
/// newer C++ turns the operands round and could find two operators equally good.

#include <configtools/payloads.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <utility>

static_assert(
    (__cplusplus >= 202002L) == (COMPARISON_LANGUAGE == 20), "compiled in the language that the test is for");

namespace VrexZynConfigTools {
namespace {

/// As a plug-in might write it, straight from the interface.
class ForeignPayload : public IPayload
{
public:
    bool Write(IConfigWriter &, IConfigContext &) override { return true; }
    bool operator==(IPayload const & other) const override
    {
        return dynamic_cast<const ForeignPayload *>(&other) != nullptr;
    }
    PayloadTypeEnum Type() override { return PAYLOAD_RAW; }
    std::uint64_t Length() override { return 0; }
    const void * RawData() override { return nullptr; }
    std::string ToString() override { return {}; }
    std::uint64_t WriteToMem(void *, std::uint64_t) override { return 0; }
};

/// As a plug-in might refine a class of the library, with an operator of its own.
class RefinedPayload : public CUint32Payload
{
public:
    RefinedPayload()
        : CUint32Payload(1)
    {}
    bool operator==(IPayload const & other) const override
    {
        return dynamic_cast<const RefinedPayload *>(&other) != nullptr;
    }
};

/// One object of each class, all of the value 1.
struct Zoo
{
    CInt8Payload mInt8{ 1 };
    CInt16Payload mInt16{ 1 };
    CInt32Payload mInt32{ 1 };
    CInt64Payload mInt64{ 1 };
    CUint8Payload mUint8{ 1 };
    CUint16Payload mUint16{ 1 };
    CUint32Payload mUint32{ 1 };
    CUint64Payload mUint64{ 1 };
    CStringPayload mString{ "1", false };
    CEnumPayload mEnum{ "1", 1 };
    CComplexPayload mComplex{ PAYLOAD_COMPLEX };
    CRawPayload mRaw{ "1" };
    ForeignPayload mForeign;
    RefinedPayload mRefined;

    auto Objects()
    {
        return std::tie(mInt8, mInt16, mInt32, mInt64, mUint8, mUint16, mUint32, mUint64, mString, mEnum,
            mComplex, mRaw, mForeign, mRefined);
    }

    /// The same objects as their templates and interfaces.
    auto Bases()
    {
        return std::tuple<CPayload<std::int8_t> &, CPayload<std::int16_t> &, CPayload<std::int32_t> &,
            CPayload<std::int64_t> &, CPayload<std::uint8_t> &, CPayload<std::uint16_t> &,
            CPayload<std::uint32_t> &, CPayload<std::uint64_t> &, CPayload<std::string> &,
            CPayload<std::int32_t> &, CComplexPayload &, CComplexPayload &, IPayload &, IPayload &>(mInt8,
            mInt16, mInt32, mInt64, mUint8, mUint16, mUint32, mUint64, mString, mEnum, mComplex, mRaw, mForeign,
            mRefined);
    }
};

void ExpectAnswer(bool answer, bool expected)
{
    EXPECT_EQ(answer, expected);
}

using Answers = std::array<bool, 8>;

void ExpectAnswers(const Answers & answers, bool expected)
{
    const bool differs = !expected;
    EXPECT_EQ(answers, (Answers{ expected, expected, expected, expected, differs, differs, differs, differs }));
}

/// Every way to write the comparison gives `expected`, whether the operands are const or not. The answers of a pair
/// are compared outside the template: there are some hundred pairs, and an expectation is long to compile.
template <typename LeftT, typename RightT>
void ExpectComparison(LeftT & left, RightT & right, bool expected)
{
    const LeftT & constLeft = left;
    const RightT & constRight = right;
    ExpectAnswers({ left == right, constLeft == constRight, left == constRight, constLeft == right, left != right,
                      constLeft != constRight, left != constRight, constLeft != right },
        expected);
}

/// Calls `act(left, right, isSame)` for every pair of the two tuples; `isSame` is whether the positions are equal.
template <typename LeftsT, typename ActT, std::size_t... POSITIONS>
void ForEachRight(LeftsT lefts, ActT act, std::index_sequence<POSITIONS...>)
{
    (act(std::get<POSITIONS>(lefts), POSITIONS), ...);
}
template <typename LeftsT, typename RightsT, typename ActT>
void ForEachPair(LeftsT lefts, RightsT rights, ActT act)
{
    const auto leftPositions = std::make_index_sequence<std::tuple_size_v<LeftsT>>();
    const auto rightPositions = std::make_index_sequence<std::tuple_size_v<RightsT>>();
    ForEachRight(
        lefts,
        [&](auto & left, std::size_t leftPosition) {
            ForEachRight(
                rights,
                [&](auto & right, std::size_t rightPosition) {
                    act(left, right, leftPosition == rightPosition);
                },
                rightPositions);
        },
        leftPositions);
}

constexpr auto EXPECT_SAME_CLASS_ONLY = [](auto & left, auto & right, bool isSame) {
    const auto & asInterface = static_cast<const IPayload &>(right);
    // A number doesn't see that another class refines it; all else equals its own class only.
    const bool seesNoRefinement =
        typeid(left) == typeid(CUint32Payload) && typeid(right) == typeid(RefinedPayload);
    ExpectAnswer(static_cast<const IPayload &>(left).operator==(asInterface), isSame || seesNoRefinement);
    ExpectComparison(left, right, isSame || seesNoRefinement);
};

TEST(PayloadComparison, works_between_any_two_classes)
{
    Zoo lefts;
    Zoo rights;
    ForEachPair(lefts.Objects(), rights.Objects(), EXPECT_SAME_CLASS_ONLY);
}

TEST(PayloadComparison, works_between_classes_and_their_bases)
{
    Zoo lefts;
    Zoo rights;
    ForEachPair(lefts.Objects(), rights.Bases(), EXPECT_SAME_CLASS_ONLY);
    ForEachPair(lefts.Bases(), rights.Objects(), EXPECT_SAME_CLASS_ONLY);
    ForEachPair(lefts.Bases(), rights.Bases(), EXPECT_SAME_CLASS_ONLY);
}

TEST(PayloadComparison, works_between_interfaces)
{
    Zoo zoo;
    IPayload & number = zoo.mInt32;
    IPayload & enumerator = zoo.mEnum;
    ExpectComparison(number, number, true);
    ExpectComparison(number, enumerator, false);
    ExpectComparison(enumerator, zoo.mInt32, false);
    ExpectComparison(zoo.mInt32, number, true);
}

TEST(PayloadComparison, sees_an_enumerators_name_in_every_form)
{
    CEnumPayload one("one", 1);
    CEnumPayload uno("uno", 1);
    CPayload<std::int32_t> & asTemplate = uno;
    IPayload & asInterface = uno;
    ExpectComparison(one, uno, false);
    ExpectComparison(one, asTemplate, false);
    ExpectComparison(asTemplate, one, false);
    ExpectComparison(one, asInterface, false);
    ExpectComparison(asInterface, one, false);
}

TEST(PayloadComparison, asks_the_left_operand_in_every_form)
{
    // The number asks for code and number, the enumerator for the name too: so the two sides answer differently.
    CPayload<std::int32_t> number(1, PAYLOAD_ENUM);
    CEnumPayload enumerator("one", 1);
    CPayload<std::int32_t> & enumeratorAsTemplate = enumerator;
    IPayload & numberAsInterface = number;
    IPayload & enumeratorAsInterface = enumerator;

    ExpectComparison(number, enumerator, true);
    ExpectComparison(number, enumeratorAsTemplate, true);
    ExpectComparison(number, enumeratorAsInterface, true);
    ExpectComparison(numberAsInterface, enumerator, true);
    ExpectComparison(numberAsInterface, enumeratorAsTemplate, true);
    ExpectComparison(numberAsInterface, enumeratorAsInterface, true);

    ExpectComparison(enumerator, number, false);
    ExpectComparison(enumerator, numberAsInterface, false);
    ExpectComparison(enumeratorAsTemplate, number, false);
    ExpectComparison(enumeratorAsTemplate, numberAsInterface, false);
    ExpectComparison(enumeratorAsInterface, number, false);
    ExpectComparison(enumeratorAsInterface, numberAsInterface, false);
}

TEST(PayloadComparison, asks_a_complex_payload_only_on_the_left)
{
    struct EqualToNone : CComplexPayload
    {
        EqualToNone()
            : CComplexPayload(PAYLOAD_COMPLEX)
        {}
        bool operator==(IPayload const &) const override { return false; }
    };
    EqualToNone refined;
    CComplexPayload plain(PAYLOAD_COMPLEX);
    CComplexPayload & refinedAsComplex = refined;
    IPayload & refinedAsInterface = refined;
    IPayload & plainAsInterface = plain;
    ExpectComparison(plainAsInterface, refinedAsComplex, true);
    ExpectComparison(plain, refined, true);
    ExpectComparison(refinedAsInterface, plain, false);
    ExpectComparison(refined, plain, false);
}

TEST(PayloadComparison, leaves_other_types_alone)
{
    EXPECT_TRUE(std::string("a") == "a");
    EXPECT_TRUE(PAYLOAD_INT8 == 0);
    EXPECT_FALSE(PAYLOAD_INT8 != 0);
}

}   // namespace
}   // namespace VrexZynConfigTools
