#include <support/allocations.h>
#include <support/element_builder.h>
#include <support/lives.h>

#include <configtools/elements.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AListOf;
using support::AllocationCount;
using support::FailEachAllocation;
using support::Lives;
using support::TracedPayload;

const std::string OLD_TEXT = "an old text that is too long for a small string object";
const std::string NEW_TEXT = "a new text that is too long for a small string object";

TEST(OutOfMemory, set_value_of_a_string_keeps_the_old_value)
{
    CElementString element(100, "name", OLD_TEXT, false, false);
    const auto failures = FailEachAllocation(
        [&] { element.SetValue(NEW_TEXT); }, [&] { EXPECT_EQ(element.ToString(), OLD_TEXT); });
    EXPECT_GT(failures, 0U);
    EXPECT_EQ(element.ToString(), NEW_TEXT);
}

TEST(OutOfMemory, set_value_of_an_empty_string_element_leaves_it_empty)
{
    CElementString element(100, "name", {}, false);
    const auto failures = FailEachAllocation(
        [&] { element.SetValue(NEW_TEXT); }, [&] { EXPECT_EQ(element.GetPayloadCopy(false).size(), 0U); });
    EXPECT_GT(failures, 0U);
    EXPECT_EQ(element.ToString(), NEW_TEXT);
}

TEST(OutOfMemory, set_value_of_an_array_keeps_the_old_values)
{
    CElementNumericArray element(NUMERIC_UINT16, 100, "name", false);
    const std::vector<std::uint16_t> shorter{ 1, 2 };
    const std::vector<std::uint16_t> longer{ 3, 4, 5, 6, 7 };
    element.SetValue(shorter);
    const auto payloads = element.GetPayloadCopy(false);
    const auto failures = FailEachAllocation(
        [&] { element.SetValue(longer); }, [&] { EXPECT_EQ(element.GetPayloadCopy(false), payloads); });
    EXPECT_GT(failures, longer.size());
    EXPECT_EQ(element.ToString(), "3 4 5 6 7");
}

TEST(OutOfMemory, set_value_that_fails_leaves_an_array_clean)
{
    CElementNumericArray element(NUMERIC_UINT16, 100, "name", false);
    FailEachAllocation([&] { element.SetValue(std::vector<std::uint16_t>{ 1 }); },
        [&] { EXPECT_FALSE(element.HasChanged()); });
    EXPECT_TRUE(element.HasChanged());
}

/// Whether `act` runs out of memory when nothing is granted.
template <typename ActT>
bool FailsWithoutMemory(ActT act)
{
    support::FailAllocationsAfter(0);
    try {
        act();
        support::LetAllocationsPass();
        return false;
    } catch (const std::bad_alloc &) {
        support::LetAllocationsPass();
        return true;
    }
}

TEST(OutOfMemory, a_field_that_a_struct_element_cant_take_is_deleted)
{
    Lives lives;
    auto * field = new TracedPayload(lives, 1);
    CElementStruct element(100, "name", false);
    EXPECT_TRUE(FailsWithoutMemory([&] { element.AddField(field); }));
    EXPECT_FALSE(lives.Has(1));
    EXPECT_EQ(element.GetPayloadCopy(false).size(), 0U);
    EXPECT_FALSE(element.HasChanged());
}

TEST(OutOfMemory, a_field_that_a_complex_payload_cant_take_is_deleted)
{
    Lives lives;
    auto * field = new TracedPayload(lives, 1);
    CComplexPayload payload(PAYLOAD_COMPLEX);
    EXPECT_TRUE(FailsWithoutMemory([&] { payload.AddField(field); }));
    EXPECT_FALSE(lives.Has(1));
    EXPECT_EQ(payload.GetFields().size(), 0U);
}

TEST(OutOfMemory, a_field_that_cant_be_made_leaves_the_struct_element)
{
    CElementStruct element(100, "name", false);
    const auto failures = FailEachAllocation([&] { element.AddField(NUMERIC_UINT64, NumericVariable()); },
        [&] { EXPECT_EQ(element.GetPayloadCopy(false).size(), 0U); });
    EXPECT_GT(failures, 1U) << "the payload and the list";
    EXPECT_EQ(element.Size(), 8U);
}

TEST(OutOfMemory, an_enumerator_that_cant_be_made_leaves_the_element)
{
    CElementEnum element(100, "name", false);
    const auto failures = FailEachAllocation(
        [&] { element.AddEnum(NEW_TEXT, 1); }, [&] { EXPECT_EQ(element.GetPayloadCopy(false).size(), 0U); });
    EXPECT_GT(failures, 1U);
    EXPECT_EQ(element.ToString(), NEW_TEXT);
}

TEST(OutOfMemory, an_enumerator_keeps_name_and_number)
{
    CEnumPayload payload(OLD_TEXT, 1);
    const std::string longer = NEW_TEXT + NEW_TEXT;
    const auto failures = FailEachAllocation([&] { payload.SetValue(longer, 2); },
        [&] {
            EXPECT_EQ(payload.GetName(), OLD_TEXT);
            EXPECT_EQ(payload.GetValue(), 1);
        });
    EXPECT_GT(failures, 0U);
    EXPECT_EQ(payload.GetName(), longer);
    EXPECT_EQ(payload.GetValue(), 2);
}

TEST(OutOfMemory, get_enum_leaves_its_arguments)
{
    CElementEnum element(100, "name", false);
    element.AddEnum(NEW_TEXT, 1);
    std::string name = "untouched";
    std::int32_t value = 77;
    const auto failures = FailEachAllocation([&] { element.GetEnum(0, name, value); },
        [&] {
            EXPECT_EQ(name, "untouched");
            EXPECT_EQ(value, 77);
        });
    EXPECT_GT(failures, 0U);
    EXPECT_EQ(name, NEW_TEXT);
}

TEST(OutOfMemory, payloads_stay_the_callers_when_no_element_can_be_made)
{
    Lives lives;
    const auto payloads = AListOf(new TracedPayload(lives, 1), new TracedPayload(lives, 2));
    const std::vector<std::uint32_t> indices{ 1, 2 };
    std::unique_ptr<CElement> element;
    const auto failures = FailEachAllocation(
        [&] { element = std::make_unique<CIndexedElement>(100, OLD_TEXT, indices, payloads, true); },
        [&] { EXPECT_EQ(lives.Count(), 2U); });
    EXPECT_GT(failures, 3U) << "the element, its name, its payloads and its indices";
    EXPECT_EQ(element->GetPayloadCopy(false), payloads);
}

TEST(OutOfMemory, a_string_element_leaves_nothing_behind)
{
    std::unique_ptr<CElement> element;
    const auto failures = FailEachAllocation(
        [&] { element = std::make_unique<CElementString>(100, OLD_TEXT, NEW_TEXT, true, true); }, [] {});
    EXPECT_GT(failures, 4U);
    EXPECT_EQ(element->ToString(), NEW_TEXT);
}

TEST(OutOfMemory, a_transfer_needs_none)
{
    CElementNumericArray element(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    const auto before = AllocationCount();
    const auto payloads = element.TransferPayload();
    EXPECT_EQ(AllocationCount(), before);
    for (IPayload * payload : payloads)
        delete payload;
}

TEST(OutOfMemory, comparing_and_measuring_need_none)
{
    CElementNumericArray element(NUMERIC_UINT8, 100, "name", false);
    CElementNumericArray other(NUMERIC_UINT8, 100, "name", false);
    element.SetValue(std::vector<std::uint8_t>{ 1, 2 });
    other.SetValue(std::vector<std::uint8_t>{ 1, 3 });
    const auto before = AllocationCount();
    const bool isEqual = element == other;
    const bool isSame = element.Same(other);
    const auto size = element.Size();
    EXPECT_EQ(AllocationCount(), before) << "debug output is off: nothing is composed";
    EXPECT_FALSE(isEqual);
    EXPECT_TRUE(isSame);
    EXPECT_EQ(size, 4U);
}

}   // namespace
}   // namespace VrexZynConfigTools
