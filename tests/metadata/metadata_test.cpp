#include "records.h"

#include <configtools/metadata.h>
#include <support/allocations.h>
#include <support/grouping_locale.h>
#include <support/never_destroyed.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::WithDetail;

CMetadata FullRecord(MetadataTypeEnum type = METADATA_SIMPLE)
{
    return CMetadata(1, 2, "name", "label", "category", true, "format", -3, 4, "oid", "type", "units", true, 5,
        6, "table", "description", "internal", "reference", "default", "rights", "temporality", "hash", 7,
        type);
}

CTableIndex * AnIndex(const std::string & name = "index")
{
    return new CTableIndex(name, 0, 9, CTableIndex::INDEX_INTEGER);
}

TEST(CMetadata, the_full_constructor_fills_each_field)
{
    const CMetadata record = FullRecord(METADATA_ENUM);

    EXPECT_EQ(record.Uid(), 1);
    EXPECT_EQ(record.PsId(), 2U);
    EXPECT_EQ(record.Name(), "name");
    EXPECT_EQ(record.Label(), "label");
    EXPECT_EQ(record.Category(), "category");
    EXPECT_TRUE(record.IsInternal());
    EXPECT_EQ(record.Format(), "format");
    EXPECT_EQ(record.Min(), -3);
    EXPECT_EQ(record.Max(), 4);
    EXPECT_EQ(record.Oid(), "oid");
    EXPECT_EQ(record.InternalType(), "type");
    EXPECT_EQ(record.Units(), "units");
}

TEST(CMetadata, the_full_constructor_fills_the_fields_behind_the_units)
{
    const CMetadata record = FullRecord(METADATA_ENUM);

    EXPECT_TRUE(record.IsArray());
    EXPECT_EQ(record.ArrayMinLength(), 5);
    EXPECT_EQ(record.ArrayMaxLength(), 6);
    EXPECT_EQ(record.TableName(), "table");
    EXPECT_EQ(record.Description(), "description");
    EXPECT_EQ(record.DescriptionInternal(), "internal");
    EXPECT_EQ(record.SourceReference(), "reference");
    EXPECT_EQ(record.SourceDefault(), "default");
    EXPECT_EQ(record.AccessRights(), "rights");
    EXPECT_EQ(record.Temporality(), "temporality");
    EXPECT_EQ(record.Hash(), "hash");
    EXPECT_EQ(record.NumIndices(), 7U);
    EXPECT_EQ(record.MetadataType(), METADATA_ENUM);
    EXPECT_EQ(record.Details(), nullptr);
    EXPECT_TRUE(record.IsValid());
}

TEST(CMetadata, a_default_record_is_empty_and_of_no_type)
{
    const CMetadata record;

    EXPECT_EQ(record.MetadataType(), METADATA_NONE);
    EXPECT_EQ(record.NumIndices(), 0U);
    EXPECT_EQ(record.ArrayMinLength(), 0);
    EXPECT_EQ(record.ArrayMaxLength(), 0);
    EXPECT_EQ(record.Details(), nullptr);
    EXPECT_TRUE(record.IsValid());
}

TEST(CMetadata, a_default_record_prints_its_type_as_unknown)
{
    EXPECT_EQ(CMetadata().ToString(","), "0,0,,,,false,,0,0,,,,false,,\"\",,,,,,,unknown,");
}

TEST(CMetadata, prints_all_but_array_lengths_and_number_of_indices)
{
    EXPECT_EQ(FullRecord().ToString("|"),
        "1|2|name|label|category|true|format|-3|4|oid|type|units|true|table|\"description\"|internal|reference|"
        "default|rights|temporality|hash|simple|");
}

TEST(CMetadata, prints_a_word_for_each_type)
{
    const auto lastWord = [](int type) {
        const std::string text = FullRecord(static_cast<MetadataTypeEnum>(type)).ToString("|");
        return text.substr(text.find("hash|") + 5);
    };

    EXPECT_EQ(lastWord(0), "simple|");
    EXPECT_EQ(lastWord(1), "enum|");
    EXPECT_EQ(lastWord(2), "struct|");
    EXPECT_EQ(lastWord(3), "unknown|");
    EXPECT_EQ(lastWord(4), "unknown|");
    EXPECT_EQ(lastWord(-1), "unknown|");
}

TEST(CMetadata, prints_numbers_at_the_ends_of_their_ranges)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const CMetadata record(std::numeric_limits<int>::min(), 4294967295U, "", "", "", false, "", Limits::min(),
        Limits::max(), "", "", "", false, 0, 0, "", "", "", "", "", "", "", "", 0, METADATA_SIMPLE);

    const std::string expected = "-2147483648 4294967295    false  -9223372036854775808 9223372036854775807 ";
    EXPECT_EQ(record.ToString(" ").substr(0, expected.size()), expected);
}

TEST(CMetadata, an_empty_separator_separates_nothing)
{
    EXPECT_EQ(CMetadata().ToString(""), "00false00false\"\"unknown");
}

TEST(CMetadata, texts_with_embedded_zeros_are_kept_whole)
{
    const std::string name("a\0b", 3);
    const auto record = ARecord(1).Named(name).Build();

    EXPECT_EQ(record->Name(), name);
    EXPECT_NE(record->ToString(",").find(name), std::string::npos);
}

TEST(CMetadata, prints_numbers_without_regard_to_the_global_locale)
{
    const support::GroupingLocale grouping;

    EXPECT_EQ(ARecord(1234567).Build()->ToString(",").substr(0, 10), "1,1234567,");
}

TEST(CMetadata, appends_the_detail_without_a_separator_behind_it)
{
    support::StructRecord key(ARecord(1).Named("key"));
    const auto first = WithDetail(ARecord(0).Named("first"));
    const auto second = WithDetail(ARecord(0).Named("second"));
    key.Add(*first);
    key.Add(*second);

    EXPECT_EQ(key.mRecord->ToString(","), "1,1,key,,,false,,0,0,,uint32,,false,,\"\",,,,,,,struct,"
                                          "1,0,first,,,false,,0,0,,uint32,,false,,\"\",,,,,,,simple,"
                                          "1,0,second,,,false,,0,0,,uint32,,false,,\"\",,,,,,,simple,,");
}

TEST(CMetadata, indices_count_from_one)
{
    const auto record = ARecord(1).WithNumIndices(2).Build();
    CTableIndex * const index = AnIndex();
    record->AddTableIndex(index);

    EXPECT_EQ(record->TableIndex(0), nullptr);
    EXPECT_EQ(record->TableIndex(1), index);
    EXPECT_EQ(record->TableIndex(2), nullptr);
    EXPECT_EQ(record->TableIndex(65535), nullptr);
}

TEST(CMetadata, without_declared_indices_there_are_none_although_one_was_added)
{
    const auto record = ARecord(1).WithNumIndices(0).Build();
    record->AddTableIndex(AnIndex());

    EXPECT_EQ(record->TableIndex(1), nullptr);
    EXPECT_EQ(record->NumIndices(), 0U);
}

TEST(CMetadata, more_indices_may_be_added_than_were_declared)
{
    const auto record = ARecord(1).WithNumIndices(1).Build();
    record->AddTableIndex(AnIndex("first"));
    record->AddTableIndex(AnIndex("second"));

    EXPECT_EQ(record->TableIndex(2)->Name(), "second");
    EXPECT_EQ(record->NumIndices(), 1U);
}

class CountedDetail : public CMetadataDetailSimple
{
public:
    CountedDetail(const IMetadata & metadata, int & destroyed)
        : CMetadataDetailSimple(metadata)
        , mDestroyed(destroyed)
    {}
    CountedDetail(const CountedDetail &) = delete;
    CountedDetail & operator=(const CountedDetail &) = delete;
    ~CountedDetail() override { ++mDestroyed; }

private:
    int & mDestroyed;
};

TEST(CMetadata, frees_its_detail_at_its_end)
{
    int destroyed = 0;
    auto record = ARecord(1).Build();
    record->SetDetails(*new CountedDetail(*record, destroyed));
    EXPECT_EQ(destroyed, 0);

    record.reset();
    EXPECT_EQ(destroyed, 1);
}

TEST(CMetadata, drops_a_replaced_detail_without_freeing_it)
{
    int destroyed = 0;
    auto record = ARecord(1).Build();
    auto * const former = new CountedDetail(*record, destroyed);
    record->SetDetails(*former);
    auto * const latter = new CMetadataDetailSimple(*record);
    record->SetDetails(*latter);

    EXPECT_EQ(record->Details(), latter);
    record.reset();
    EXPECT_EQ(destroyed, 0);
}

TEST(CMetadata, setting_the_same_detail_again_changes_nothing)
{
    int destroyed = 0;
    auto record = ARecord(1).Build();
    auto * const detail = new CountedDetail(*record, destroyed);
    record->SetDetails(*detail);
    record->SetDetails(*detail);
    record.reset();

    EXPECT_EQ(destroyed, 1);
}

TEST(CMetadata, a_copy_shares_detail_and_indices_with_its_source)
{
    const auto record = WithDetail(ARecord(1).Named("key").WithNumIndices(1));
    record->AddTableIndex(AnIndex());
    const CMetadata & copy = support::NeverDestroyed(new CMetadata(*record));

    EXPECT_EQ(copy.Name(), "key");
    EXPECT_EQ(copy.Details(), record->Details());
    EXPECT_EQ(copy.TableIndex(1), record->TableIndex(1));
}

TEST(CMetadata, assignment_copies_all_fields_and_shares_the_pointers)
{
    CMetadata full = FullRecord(METADATA_ENUM);
    full.SetDetails(*new CMetadataDetailSimple(full));
    full.AddTableIndex(AnIndex());
    CMetadata & copy = support::NeverDestroyed(new CMetadata);
    copy = full;

    EXPECT_EQ(copy.ToString(","), full.ToString(","));
    EXPECT_EQ(copy.ArrayMinLength(), 5);
    EXPECT_EQ(copy.ArrayMaxLength(), 6);
    EXPECT_EQ(copy.NumIndices(), 7U);
    EXPECT_EQ(copy.Details(), full.Details());
    EXPECT_EQ(copy.TableIndex(1), full.TableIndex(1));
}

TEST(CMetadata, assignment_drops_what_was_held_without_freeing_it)
{
    int destroyed = 0;
    CMetadata & copy = support::NeverDestroyed(new CMetadata);
    copy.SetDetails(*new CountedDetail(copy, destroyed));
    CTableIndex * const index = AnIndex("dropped");
    copy.AddTableIndex(index);
    copy = CMetadata();

    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(index->Name(), "dropped");
    EXPECT_EQ(copy.Details(), nullptr);
}

TEST(CMetadata, assignment_to_itself_changes_nothing)
{
    const auto record = WithDetail(ARecord(1).Named("key").WithNumIndices(1));
    record->AddTableIndex(AnIndex());
    const IMetadataDetail * const detail = record->Details();
    const CMetadata & same = *record;
    *record = same;

    EXPECT_EQ(record->Name(), "key");
    EXPECT_EQ(record->Details(), detail);
    EXPECT_NE(record->TableIndex(1), nullptr);
}

TEST(CMetadata, assignment_without_memory_leaves_the_old_record)
{
    const std::string longText(100, 'x');
    const auto source = WithDetail(ARecord(1).Named(longText).OfType(longText).WithNumIndices(1));
    source->AddTableIndex(AnIndex());
    CMetadata & copy = support::NeverDestroyed(WithDetail(ARecord(2).Named("old")).release());
    const IMetadataDetail * const oldDetail = copy.Details();

    const auto failures = support::FailEachAllocation([&] { copy = *source; },
        [&] {
            EXPECT_EQ(copy.Name(), "old");
            EXPECT_EQ(copy.PsId(), 2U);
            EXPECT_EQ(copy.Details(), oldDetail);
        });

    EXPECT_GE(failures, 3U);
    EXPECT_EQ(copy.Name(), longText);
    EXPECT_EQ(copy.Details(), source->Details());
}

TEST(CMetadata, an_index_that_could_not_be_added_stays_the_callers)
{
    const auto record = ARecord(1).WithNumIndices(1).Build();
    const std::unique_ptr<CTableIndex> index(AnIndex());

    support::FailAllocationsAfter(0);
    EXPECT_THROW(record->AddTableIndex(index.get()), std::bad_alloc);
    support::LetAllocationsPass();
    EXPECT_EQ(record->TableIndex(1), nullptr);
}

TEST(CNullMetadata, is_an_empty_record_that_is_not_valid)
{
    const IMetadata & null = CNullMetadata::Ref();

    EXPECT_FALSE(null.IsValid());
    EXPECT_EQ(null.ToString(","), CMetadata().ToString(","));
    EXPECT_EQ(null.MetadataType(), METADATA_NONE);
}

TEST(CNullMetadata, is_one_object_that_nobody_else_can_make)
{
    EXPECT_EQ(&CNullMetadata::Ref(), &CNullMetadata::Ref());
    static_assert(std::is_base_of_v<CMetadata, CNullMetadata>);
    static_assert(!std::is_default_constructible_v<CNullMetadata>);
}

TEST(CNullMetadata, inspecting_it_calls_nothing)
{
    support::WalkRecorder observer;
    CNullMetadata::Ref().Inspect(observer);
    EXPECT_TRUE(observer.Calls().empty());

    CNullMetadata copy(CNullMetadata::Ref());
    copy.SetDetails(*new CMetadataDetailSimple(copy));
    copy.Inspect(observer);
    EXPECT_TRUE(observer.Calls().empty());
    EXPECT_FALSE(copy.IsValid());
}

}   // namespace
}   // namespace VrexZynConfigTools
