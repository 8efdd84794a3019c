// Records: all their fields, enumerators, table indices, and structs in the order in which they are packed.

#include "sqlitemetadata_support.h"

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

class Records : public RepositoryTest
{
protected:
    Records() { mBt = mRepository.AddSubsystem(mRepository.AddSystem("pottersong", "trindle7"), "bt"); }

    const IMetadata & Record(std::uint32_t psId)
    {
        if (mProvider == nullptr)
            mProvider = Provider();
        EXPECT_TRUE(mProvider->Check()) << mErrors.Text();
        return mProvider->MetadataById(psId, mContext);
    }

    static std::vector<std::string> FieldNames(const IMetadata & record)
    {
        std::vector<std::string> names;
        for (const CStructField * field : *record.Details()->GetStructFields())
            names.push_back(field->Metadata()->Name());
        return names;
    }

    static const IMetadata & Field(const IMetadata & record, std::size_t position)
    {
        return *(*record.Details()->GetStructFields())[position]->Metadata();
    }

    // A struct that has four fields of 8 bits, added from the top down: "d" at 24 to "a" at 0.
    void AddFourBytes(RepositoryBuilder::Id owner)
    {
        for (const char name : { 'd', 'c', 'b', 'a' })
            mRepository.AddField(owner, { .name = std::string(1, name) }, (name - 'a') * 8, 8);
    }

    RepositoryBuilder::Id mBt = 0;
    CZynContext mContext;
    std::unique_ptr<IMetadataProvider> mProvider;
};

TEST_F(Records, have_all_fields_of_their_row)
{
    mRepository.Run(
        "INSERT INTO records VALUES (50, " + std::to_string(mBt) +
        ", -3, 4000000000, 'name', 'label', 'category', 1, 'hexadecimal', -5, 6, 'oid', 'int16', 'units',"
        " 1, 7, 8, 'table', 'description', 'internal', 'reference', 'default', 'read_only',"
        " 'temporality', 'hash', 1, 0)");
    mRepository.AddIntIndex(50, 1, "row", 2, 3);
    const IMetadata & record = Record(4000000000U);
    EXPECT_EQ("-3,4000000000,name,label,category,true,hexadecimal,-5,6,oid,int16,units,true,table,"
              "\"description\",internal,reference,default,read_only,temporality,hash,simple,",
        record.ToString(","));
    EXPECT_EQ(7, record.ArrayMinLength());
    EXPECT_EQ(8, record.ArrayMaxLength());
    EXPECT_EQ(1U, record.NumIndices());
    EXPECT_TRUE(record.IsValid());
    EXPECT_NE(nullptr, record.Details());
}

TEST_F(Records, of_64_bits_keep_the_bits_of_an_unsigned_limit)
{
    mRepository.AddKey(mBt, { .psid = 1, .name = "wide", .internalType = "uint64", .min = 0, .max = -1 });
    EXPECT_EQ(-1, Record(1).Max());
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(Records, of_an_enumeration_have_its_enumerators)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "mode", .max = 0, .metadataType = 1 });
    mRepository.AddEnumerators(key, { { "off", 0 }, { "on", 1 }, { "low", -2147483647 - 1 } });
    const IMetadata & record = Record(1);
    ASSERT_NE(nullptr, record.Details());
    EXPECT_THAT(*record.Details()->GetEnums(),
        ElementsAre(Pair("low", -2147483647 - 1), Pair("off", 0), Pair("on", 1)));
}

TEST_F(Records, of_a_table_have_its_indices_in_their_order)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "gain", .numIndices = 2 });
    mRepository.AddEnumIndex(key, 2, "band", { { "high", 5 }, { "low", 2 } });
    mRepository.AddIntIndex(key, 1, "antenna", 3, 4);
    const IMetadata & record = Record(1);
    ASSERT_NE(nullptr, record.TableIndex(2));
    EXPECT_EQ(nullptr, record.TableIndex(3));
    const CTableIndex & antenna = *record.TableIndex(1);
    EXPECT_EQ("antenna", antenna.Name());
    EXPECT_EQ(3, antenna.Min());
    EXPECT_EQ(4, antenna.Max());
    EXPECT_EQ(CTableIndex::INDEX_INTEGER, antenna.Type());
    EXPECT_THAT(antenna.Enums(), IsEmpty());
    EXPECT_EQ(CTableIndex::INDEX_ENUM, record.TableIndex(2)->Type());
    EXPECT_THAT(record.TableIndex(2)->Enums(), ElementsAre(Pair("high", 5), Pair("low", 2)));
}

TEST_F(Records, of_a_little_endian_struct_have_its_fields_in_ascending_order_of_positions)
{
    AddFourBytes(mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" }, true));
    const IMetadata & record = Record(1);
    EXPECT_THAT(FieldNames(record), ElementsAre("a", "b", "c", "d"));
    const auto * const layout = dynamic_cast<const CMetadataDetailStruct *>(record.Details());
    ASSERT_NE(nullptr, layout);
    EXPECT_TRUE(layout->IsLittleEndian());
    EXPECT_FALSE(layout->IsOctetsInBin());
    const CStructField & second = *(*record.Details()->GetStructFields())[1];
    EXPECT_EQ(8, second.ElemLsbBitPos());
    EXPECT_EQ(8, second.ElemBitWidth());
    EXPECT_EQ(0U, second.Metadata()->PsId());
}

TEST_F(Records, of_a_struct_that_is_not_have_them_reversed_within_each_word)
{
    AddFourBytes(mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" }, false, true));
    const IMetadata & record = Record(1);
    EXPECT_THAT(FieldNames(record), ElementsAre("b", "a", "d", "c"));
    EXPECT_TRUE(dynamic_cast<const CMetadataDetailStruct &>(*record.Details()).IsOctetsInBin());
}

TEST_F(Records, of_a_struct_that_holds_structs_have_only_those_brought_into_order)
{
    const auto outer = mRepository.AddStructKey(mBt, { .psid = 1, .name = "outer" });
    mRepository.AddField(outer, { .name = "late" }, 64, 8);
    const auto inner = mRepository.AddStruct("NULL", { .name = "inner" }, false);
    mRepository.PutField(outer, inner, 0, 32);
    AddFourBytes(inner);
    const IMetadata & record = Record(1);
    EXPECT_THAT(FieldNames(record), ElementsAre("late", "inner"));
    EXPECT_THAT(FieldNames(Field(record, 1)), ElementsAre("b", "a", "d", "c"));
}

TEST_F(Records, of_a_struct_hold_enumerations_and_arrays_among_their_fields)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" });
    const auto mode = mRepository.AddField(key, { .name = "mode", .metadataType = 1 }, 0, 2);
    mRepository.AddEnumerators(mode, { { "on", 1 } });
    mRepository.AddField(key, { .name = "list", .isArray = true, .arrayMaxLength = 4 }, 16, 32);
    const IMetadata & record = Record(1);
    EXPECT_THAT(*Field(record, 0).Details()->GetEnums(), ElementsAre(Pair("on", 1)));
    EXPECT_TRUE(Field(record, 1).IsArray());
    EXPECT_EQ(4, Field(record, 1).ArrayMaxLength());
}

// Adds a key with `depth` structs, one within the other.
void AddNested(RepositoryBuilder & repository, RepositoryBuilder::Id subsystem, int depth)
{
    auto owner = repository.AddStructKey(subsystem, { .psid = 1, .name = "deep" });
    for (int level = 1; level < depth; ++level) {
        const auto inner = repository.AddStruct("NULL", { .name = "level" }, true);
        owner = repository.PutField(owner, inner, 0, 8);
    }
    repository.AddField(owner, { .name = "bottom" }, 0, 8);
}

TEST_F(Records, of_64_structs_within_one_another_are_the_deepest)
{
    AddNested(mRepository, mBt, 64);
    const IMetadata * record = &Record(1);
    for (int level = 0; level < 64; ++level) {
        ASSERT_NE(nullptr, record->Details()->GetStructFields()) << level;
        record = &Field(*record, 0);
    }
    EXPECT_EQ("bottom", record->Name());
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
}

TEST_F(Records, of_65_structs_within_one_another_are_refused_and_the_other_keys_answer)
{
    AddNested(mRepository, mBt, 65);
    mRepository.AddKey(mBt, { .psid = 2, .name = "plain" });
    EXPECT_FALSE(Record(1).IsValid());
    EXPECT_EQ("key 1 \"deep\": more than 64 structs lie within one another", Fault());
    EXPECT_EQ("plain", Record(2).Name());
    EXPECT_THAT(mProvider->AllMetadata(mContext), IsEmpty());
}

TEST_F(Records, of_10000_keys_are_built_at_once)
{
    for (int number = 1; number <= 10000; ++number)
        mRepository.AddKey(mBt, { .psid = number, .name = "key" + std::to_string(number) });
    const auto provider = Provider();
    const std::vector<const IMetadata *> & all = provider->AllMetadata(mContext);
    ASSERT_EQ(10000U, all.size());
    EXPECT_EQ(1U, all.front()->PsId());
    EXPECT_EQ("key10000", all.back()->Name());
    EXPECT_EQ("key10000", provider->NearestName("keyy10000", mContext));
}

}   // namespace
