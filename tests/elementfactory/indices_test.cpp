// The indices of table keys: how they are read, the tags that they leave, and the row that comes of them.

#include "factory_fixture.h"

#include <configtools/subsystemconfig.h>

#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

class Indices : public support::FactoryTest
{
protected:
    const CTableIndex mIndex{ "index", 0, 1, CTableIndex::INDEX_INTEGER };

    void ReadIndices(int count)
    {
        for (int left = count; left > 0; --left)
            mFactory.IntIndex(mIndex);
    }

    static std::unique_ptr<CMetadata> Table(std::uint32_t psId, int indices)
    {
        auto record = WithDetail(ARecord(psId).Named("table").OfType("uint8").Within(0, 255).WithNumIndices(
            static_cast<std::uint32_t>(indices)));
        for (int position = 0; position < indices; ++position)
            record->AddTableIndex(new CTableIndex(
                "index", 0, 9, position % 2 == 0 ? CTableIndex::INDEX_INTEGER : CTableIndex::INDEX_ENUM));
        return record;
    }
};

TEST_F(Indices, come_ahead_of_the_value_each_with_the_number_of_those_before)
{
    const auto key = Table(100, 3);
    mSource.Numbers({ 4, 5, 6 }).Number(7).Last();

    EXPECT_EQ(TreeOf(Read(*key)), "uint8=7");
    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint32 index=0", "NextInt uint32 index=1",
                                   "NextInt uint32 index=2", "NextInt uint8" }));
    EXPECT_EQ(mSource.NumbersPassedIn(), (std::vector<std::uint64_t>{ 0, 0, 0, 0 }));
}

TEST_F(Indices, are_left_in_the_context_as_decimal_numbers)
{
    const auto key = Table(100, 2);
    mSource.Numbers({ 4, 0x5000000FFU }).Number(7).Last();
    Read(*key);

    EXPECT_EQ(mContext.GetTag("num_indices"), "2");
    EXPECT_EQ(mContext.GetTag("index1"), "4");
    EXPECT_EQ(mContext.GetTag("index2"), "255") << "the low 32 bits";
    EXPECT_EQ(mContext.GetTag("index3"), "");
}

TEST_F(Indices, are_not_checked_against_their_limits)
{
    mSource.Number(77);
    mFactory.IntIndex(CTableIndex("index", 0, 9, CTableIndex::INDEX_INTEGER));

    EXPECT_EQ(mContext.GetTag("index1"), "77");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Indices, that_are_enumerated_are_plain_numbers)
{
    CTableIndex index("index", 0, 9, CTableIndex::INDEX_ENUM);
    index.AddEnum("five", 5);
    mSource.Number(5).Number(8).Last();
    mFactory.EnumIndex(index);
    EXPECT_TRUE(mFactory.InspectDetailAgain());
    mFactory.EnumIndex(index);
    EXPECT_FALSE(mFactory.InspectDetailAgain());

    EXPECT_EQ(mSource.Calls(), (Calls{ "NextInt uint32 index=0", "NextInt uint32 index=1" }));
    EXPECT_EQ(mContext.GetTag("index1"), "5");
    EXPECT_EQ(mContext.GetTag("index2"), "8");
}

/// Reads its indices in a way of its own.
class OwnIndices : public CElementFactory
{
public:
    using CElementFactory::CElementFactory;
    void IntIndex(const CTableIndex & index) override { mNames.push_back(index.Name()); }

    std::vector<std::string> mNames;
};

TEST_F(Indices, that_are_enumerated_take_the_way_of_a_derived_factory)
{
    OwnIndices factory(&mSource, mContext, nullptr);
    factory.EnumIndex(CTableIndex("colour", 0, 9, CTableIndex::INDEX_ENUM));

    EXPECT_EQ(factory.mNames, std::vector<std::string>{ "colour" });
}

TEST_F(Indices, the_values_have_room_for_8_digits)
{
    mSource.Numbers({ 12345678, 99999999, 100000000, 123456789, 4294967295U });
    ReadIndices(5);

    EXPECT_EQ(mContext.GetTag("index1"), "12345678");
    EXPECT_EQ(mContext.GetTag("index2"), "99999999");
    EXPECT_EQ(mContext.GetTag("index3"), "10000000");
    EXPECT_EQ(mContext.GetTag("index4"), "12345678");
    EXPECT_EQ(mContext.GetTag("index5"), "42949672");
}

TEST_F(Indices, the_names_of_the_tags_have_room_for_3_digits)
{
    ReadIndices(999);
    EXPECT_EQ(mContext.GetTag("index999"), "0");
    EXPECT_EQ(mContext.GetTag("index100"), "0");

    mSource.Number(7);
    ReadIndices(1);   // the thousandth
    EXPECT_EQ(mContext.GetTag("index100"), "7");
    EXPECT_EQ(mContext.GetTag("index1000"), "");
    EXPECT_EQ(mContext.GetTag("index999"), "0");
}

TEST_F(Indices, are_counted_in_16_bits)
{
    ReadIndices(0xFFFF);
    mSource.Number(7).Number(8);
    ReadIndices(1);
    EXPECT_EQ(mSource.Calls().back(), "NextInt uint32 index=65535");
    EXPECT_EQ(mContext.GetTag("index0"), "7");
    ReadIndices(1);
    EXPECT_EQ(mSource.Calls().back(), "NextInt uint32 index=0");
    EXPECT_EQ(mContext.GetTag("index1"), "8");
}

TEST_F(Indices, the_number_declared_has_room_for_8_digits)
{
    mFactory.StartElement(*ARecord(1).WithNumIndices(4294967295U).Build());
    EXPECT_EQ(mContext.GetTag("num_indices"), "42949672");
}

TEST_F(Indices, the_number_declared_is_told_and_not_the_number_read)
{
    const auto key = Table(100, 1);
    const auto liar = WithDetail(ARecord(100).OfType("uint8").Within(0, 9).WithNumIndices(5));
    liar->AddTableIndex(new CTableIndex("index", 0, 9, CTableIndex::INDEX_INTEGER));
    mSource.Number(3).Number(7).Last();
    Read(*liar);

    EXPECT_EQ(mContext.GetTag("num_indices"), "5");
    EXPECT_EQ(mContext.GetTag("index1"), "3");
    EXPECT_EQ(mContext.GetTag("index2"), "");
}

TEST_F(Indices, of_a_key_stay_in_the_context_until_it_is_cleared)
{
    mSource.Numbers({ 4, 5 }).Number(7).Last();
    Read(*Table(100, 2));
    mSource.Number(8).Last();
    const auto plain = ReadOn(*Table(101, 0));

    EXPECT_EQ(TreeOf(plain), "uint8=8");
    EXPECT_EQ(mContext.GetTag("num_indices"), "2");
    EXPECT_EQ(mContext.GetTag("index1"), "4");
    EXPECT_EQ(mContext.GetTag("index2"), "5");
}

TEST_F(Indices, go_on_counting_until_the_factory_is_cleared)
{
    mSource.Number(4).Number(7).Last().Number(5).Number(8).Last();
    Read(*Table(100, 1));
    ReadOn(*Table(100, 1));

    EXPECT_EQ(mSource.Calls().at(2), "NextInt uint32 index=1");
    EXPECT_EQ(mContext.GetTag("index2"), "5");
}

TEST_F(Indices, begin_anew_for_each_key_that_is_cleared_for)
{
    mSource.Numbers({ 4, 5 }).Number(7).Last().Number(6).Number(8).Last();
    Read(*Table(100, 2));
    Read(*Table(100, 1));

    EXPECT_EQ(mContext.GetTag("num_indices"), "1");
    EXPECT_EQ(mContext.GetTag("index1"), "6");
    EXPECT_EQ(mContext.GetTag("index2"), "");
}

TEST_F(Indices, of_a_field_are_not_read)
{
    StructRecord key(ARecord(100));
    const auto field = Table(0, 2);
    key.Add(*field, 0, 8);
    mSource.Number(7);

    EXPECT_EQ(TreeOf(Read(*key.mRecord)), "{uint8=7}");
    EXPECT_EQ(mContext.GetTag("num_indices"), "");
}

/// A subsystem that is given the element, as a reader gives it.
class ASubsystem
{
public:
    void Take(std::unique_ptr<CElement> element, IConfigContext & context)
    {
        static_cast<IConfigReaderElementObserver &>(mSubsystem).OnElementFound(element.release(), context);
    }
    CSubsystemConfig & operator*() { return mSubsystem; }

private:
    CBaseContext mContext{ "subsystem", SUBSYSTEM_BT };
    CSubsystemConfig mSubsystem{ mContext, nullptr };
};

TEST_F(Indices, make_the_element_a_row_of_its_subsystem)
{
    ASubsystem subsystem;
    mSource.Numbers({ 3, 4 }).Number(7).Last().Numbers({ 3, 5 }).Number(8).Last();
    subsystem.Take(Read(*Table(100, 2)), mContext);
    subsystem.Take(Read(*Table(100, 2)), mContext);

    const CElement & row = (*subsystem).Element("table.3.5");
    EXPECT_EQ(row.KeyString(), "table.3.5");
    EXPECT_EQ(row.ToString(), "8");
    EXPECT_NE(dynamic_cast<const CIndexedElement *>(&row), nullptr);
    EXPECT_EQ((*subsystem).Element("table.3.4").ToString(), "7");
    EXPECT_EQ((*subsystem).Elements().size(), 2U);
}

TEST_F(Indices, make_a_struct_a_row_too)
{
    ASubsystem subsystem;
    StructRecord key(ARecord(100).Named("table").WithNumIndices(1));
    const auto field = support::ByteField("field");
    key.mRecord->AddTableIndex(new CTableIndex("index", 0, 9, CTableIndex::INDEX_INTEGER));
    key.Add(*field, 0, 8);
    mSource.Number(3).Number(7);
    subsystem.Take(Read(*key.mRecord), mContext);

    CElement & row = (*subsystem).Element("table.3");
    EXPECT_EQ(TreeOf(&row), "{uint8=7}");
    EXPECT_EQ(row.Metadata(), key.mRecord.get());
}

TEST_F(Indices, of_one_key_do_not_make_the_next_a_row)
{
    ASubsystem subsystem;
    mSource.Number(3).Number(7).Last().Number(8).Last();
    subsystem.Take(Read(*Table(100, 1)), mContext);
    subsystem.Take(Read(*Table(101, 0)), mContext);

    EXPECT_EQ(dynamic_cast<CIndexedElement *>(&(*subsystem).Element(101)), nullptr);
    EXPECT_EQ((*subsystem).Element(101).ToString(), "8");
}

}   // namespace
}   // namespace VrexZynConfigTools
