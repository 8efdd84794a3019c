#include "records.h"

#include <configtools/metadata.h>

#include <gtest/gtest.h>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::StructRecord;
using support::WalkRecorder;
using support::WithDetail;

Calls CallsOf(const IMetadata & record, int again = 0)
{
    WalkRecorder observer(again);
    record.Inspect(observer);
    return observer.Calls();
}

TEST(Inspect, a_plain_key_is_an_element_with_one_value)
{
    const auto key = WithDetail(ARecord(1).Named("key"));

    EXPECT_EQ(CallsOf(*key), (Calls{ "StartElement key", "Int key", "EndElement" }));
}

TEST(Inspect, a_key_without_details_still_opens_and_closes_its_element)
{
    const auto key = ARecord(1).Named("key").Build();

    EXPECT_EQ(CallsOf(*key), (Calls{ "StartElement key", "EndElement" }));
}

TEST(Inspect, a_field_without_details_calls_nothing)
{
    EXPECT_EQ(CallsOf(*ARecord(0).Build()), Calls{});
}

TEST(Inspect, a_field_opens_no_element_and_tells_no_indices)
{
    const auto field = WithDetail(ARecord(0).Named("field").WithNumIndices(1));
    field->AddTableIndex(new CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));

    EXPECT_EQ(CallsOf(*field), Calls{ "Int field" });
}

TEST(Inspect, only_string_and_octet_string_are_texts)
{
    const auto callOf = [](const std::string & type) {
        return CallsOf(*WithDetail(ARecord(0).Named("f").OfType(type))).at(0);
    };

    EXPECT_EQ(callOf("string"), "String f");
    EXPECT_EQ(callOf("octet_string"), "String f");
    EXPECT_EQ(callOf("unicode_string"), "Int f");
    EXPECT_EQ(callOf("String"), "Int f");   // case counts here
    EXPECT_EQ(callOf("uint8"), "Int f");
    EXPECT_EQ(callOf(""), "Int f");
}

TEST(Inspect, an_enumeration_is_told_as_such_whatever_its_internal_type)
{
    const auto key = WithDetail(ARecord(0).Named("f").Shaped(METADATA_ENUM).OfType("string"));

    EXPECT_EQ(CallsOf(*key), Calls{ "Enum f" });
}

TEST(Inspect, indices_come_ahead_of_the_detail_in_the_order_added)
{
    const auto key = WithDetail(ARecord(1).Named("key"));
    key->AddTableIndex(new CTableIndex("b", 0, 1, CTableIndex::INDEX_ENUM));
    key->AddTableIndex(new CTableIndex("a", 0, 1, CTableIndex::INDEX_INTEGER));
    key->AddTableIndex(new CTableIndex("c", 0, 1, static_cast<CTableIndex::IndexTypeEnum>(-7)));

    // The number of indices that the record declares, none here, isn't looked at.
    EXPECT_EQ(CallsOf(*key),
        (Calls{ "StartElement key", "EnumIndex b", "IntIndex a", "EnumIndex c", "Int key", "EndElement" }));
}

TEST(Inspect, a_null_index_is_passed_over)
{
    const auto key = ARecord(1).Named("key").Build();
    key->AddTableIndex(nullptr);

    EXPECT_EQ(CallsOf(*key), (Calls{ "StartElement key", "EndElement" }));
}

TEST(Inspect, what_is_no_array_is_walked_once_and_the_observer_is_not_asked)
{
    const auto key = WithDetail(ARecord(1).Named("key"));
    WalkRecorder observer(5);
    key->Inspect(observer);

    EXPECT_EQ(observer.Calls(), (Calls{ "StartElement key", "Int key", "EndElement" }));
    EXPECT_EQ(observer.TimesAsked(), 0);
}

TEST(Inspect, an_array_key_is_walked_until_the_observer_has_enough)
{
    const auto key = WithDetail(ARecord(1).Named("key").Array());
    WalkRecorder observer(2);
    key->Inspect(observer);

    EXPECT_EQ(observer.Calls(),
        (Calls{ "StartElement key", "StartArrayItem", "Int key", "EndArrayItem", "StartArrayItem", "Int key",
            "EndArrayItem", "StartArrayItem", "Int key", "EndArrayItem", "EndElement" }));
    EXPECT_EQ(observer.TimesAsked(), 3);
}

TEST(Inspect, an_array_without_details_has_no_items)
{
    EXPECT_EQ(
        CallsOf(*ARecord(1).Named("key").Array().Build(), 3), (Calls{ "StartElement key", "EndElement" }));
}

TEST(Inspect, the_detail_of_a_struct_with_an_array_field_is_walked_in_full)
{
    StructRecord key(ARecord(1).Named("key"));
    const auto first = WithDetail(ARecord(0).Named("a"));
    const auto second = WithDetail(ARecord(0).Named("b").Array());
    key.Add(*first, 0, 8);
    key.Add(*second, 8, 16);

    EXPECT_EQ(CallsOf(*key.mRecord, 1),
        (Calls{ "StartElement key", "StartStruct key", "elembitwidth=8", "Int a", "elembitwidth=16",
            "StartArrayItem", "Int b", "EndArrayItem", "StartArrayItem", "Int b", "EndArrayItem",
            "elembitwidth=\"\"", "EndStruct", "EndElement" }));
}

TEST(Inspect, an_empty_struct_still_clears_the_width)
{
    const StructRecord key(ARecord(1).Named("key"));

    EXPECT_EQ(CallsOf(*key.mRecord),
        (Calls{ "StartElement key", "StartStruct key", "elembitwidth=\"\"", "EndStruct", "EndElement" }));
}

TEST(Inspect, a_struct_within_a_struct_opens_no_element)
{
    StructRecord key(ARecord(1).Named("key"));
    StructRecord inner(ARecord(0).Named("inner"));
    const auto leaf = WithDetail(ARecord(0).Named("leaf").Shaped(METADATA_ENUM));
    inner.Add(*leaf, 0, 4);
    key.Add(*inner.mRecord, 0, 16);

    EXPECT_EQ(CallsOf(*key.mRecord),
        (Calls{ "StartElement key", "StartStruct key", "elembitwidth=16", "StartStruct inner", "elembitwidth=4",
            "Enum leaf", "elembitwidth=\"\"", "EndStruct", "elembitwidth=\"\"", "EndStruct", "EndElement" }));
}

TEST(Inspect, a_field_that_is_an_array_of_structs_ends_after_one_item)
{
    StructRecord key(ARecord(1).Named("key"));
    StructRecord inner(ARecord(0).Named("inner").Array());
    key.Add(*inner.mRecord, 0, 16);
    WalkRecorder observer(5);
    key.mRecord->Inspect(observer);

    EXPECT_EQ(observer.Calls(), (Calls{ "StartElement key", "StartStruct key", "elembitwidth=16",
                                    "StartArrayItem", "StartStruct inner", "elembitwidth=\"\"", "EndStruct",
                                    "EndArrayItem", "elembitwidth=\"\"", "EndStruct", "EndElement" }));
    EXPECT_EQ(observer.TimesAsked(), 1);   // it is asked all the same
}

TEST(Inspect, a_key_that_is_an_array_of_structs_goes_on)
{
    const StructRecord key(ARecord(1).Named("key").Array());
    const Calls item{ "StartArrayItem", "StartStruct key", "elembitwidth=\"\"", "EndStruct", "EndArrayItem" };
    Calls expected{ "StartElement key" };
    expected.insert(expected.end(), item.begin(), item.end());
    expected.insert(expected.end(), item.begin(), item.end());
    expected.push_back("EndElement");

    EXPECT_EQ(CallsOf(*key.mRecord, 1), expected);
}

TEST(Inspect, a_field_that_is_an_array_of_values_goes_on)
{
    const auto field = WithDetail(ARecord(0).Named("f").Array());

    EXPECT_EQ(CallsOf(*field, 1),
        (Calls{ "StartArrayItem", "Int f", "EndArrayItem", "StartArrayItem", "Int f", "EndArrayItem" }));
}

TEST(Inspect, fields_are_walked_in_their_present_order)
{
    StructRecord key(ARecord(0).Named("key"));
    const auto first = WithDetail(ARecord(0).Named("a"));
    const auto second = WithDetail(ARecord(0).Named("b"));
    key.Add(*first, 8, 1);
    key.Add(*second, 0, 2);
    EXPECT_EQ(CallsOf(*key.mRecord).at(1), "elembitwidth=1");

    key.mDetail->SortByAscendingBitPosition();
    EXPECT_EQ(CallsOf(*key.mRecord), (Calls{ "StartStruct key", "elembitwidth=2", "Int b", "elembitwidth=1",
                                         "Int a", "elembitwidth=\"\"", "EndStruct" }));
}

/// Gives a record another detail in the middle of its walk.
class Meddler : public WalkRecorder
{
public:
    Meddler(CMetadata & record, IMetadataDetail & detail)
        : WalkRecorder(1)
        , mRecord(record)
        , mDetail(detail)
    {}

    void Int(const IMetadata & metadata) override
    {
        mRecord.SetDetails(mDetail);
        WalkRecorder::Int(metadata);
    }

private:
    CMetadata & mRecord;
    IMetadataDetail & mDetail;
};

TEST(Inspect, a_detail_replaced_during_the_walk_is_used_from_the_next_item_on)
{
    const auto key = WithDetail(ARecord(1).Named("key").Array());
    Meddler observer(*key, *new CMetadataDetailEnum(*key));
    key->Inspect(observer);

    EXPECT_EQ(observer.Calls(), (Calls{ "StartElement key", "StartArrayItem", "Int key", "EndArrayItem",
                                    "StartArrayItem", "Enum key", "EndArrayItem", "EndElement" }));
}

}   // namespace
}   // namespace VrexZynConfigTools
