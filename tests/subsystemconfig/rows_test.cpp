// Table rows that a subsystem makes out of elements and the tags of their context.

#include "subsystem_fixture.h"

#include <support/foreign_contexts.h>
#include <support/foreign_elements.h>
#include <support/metadata_builder.h>
#include <support/recording_writer.h>

#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CSubsystemConfigRows : public SubsystemTest
{
protected:
    /// The indices of what arrives with these tags: "3.7", or "plain".
    std::string IndicesMadeOf(IConfigContext & context)
    {
        Add(AnElement(100).Named("table").Release(), context);
        const auto * row = dynamic_cast<const CIndexedElement *>(mSubsystem.Elements().back());
        return row != nullptr ? row->Indices() : "plain";
    }
    std::string IndicesMadeOf(const std::string & tags)
    {
        CZynContext context;
        context.Parse(tags);
        return IndicesMadeOf(context);
    }
};

TEST_F(CSubsystemConfigRows, an_element_with_indices_becomes_a_row)
{
    CElement * given = new CElementNumericArray(
        100, "Table", AListOf(new TracedPayload(mLives, 1), new TracedPayload(mLives, 2)), false);
    const auto payloads = given->GetPayloadCopy(false);

    Add(given, "num_indices=2;index1=3;index2=7");

    const auto * row = dynamic_cast<const CIndexedElement *>(mSubsystem.Elements().front());
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->PsId(), 100U);
    EXPECT_EQ(row->Name(), "Table");
    EXPECT_EQ(row->KeyString(), "Table.3.7");
    EXPECT_EQ(row->Payload(), payloads);
    EXPECT_TRUE(row->HasChanged());
    EXPECT_EQ(mLives.Count(), 2U);
    EXPECT_EQ(&mSubsystem.Element("table.3.7"), row);
}

TEST_F(CSubsystemConfigRows, the_observer_is_told_the_row)
{
    CZynContext context;
    context.Parse("num_indices=1;index1=5");
    Add(AnElement(100).Release(), context);

    ASSERT_EQ(mObserver.Calls().size(), 1U);
    EXPECT_EQ(mObserver.Calls()[0].mElement, mSubsystem.Elements().front());
    EXPECT_EQ(mObserver.Calls()[0].mContext, &context);
}

TEST_F(CSubsystemConfigRows, without_num_indices_no_row_is_made)
{
    EXPECT_EQ(IndicesMadeOf("index1=5"), "plain");
    EXPECT_EQ(IndicesMadeOf("index1=5;num_indices="), "plain");
}

TEST_F(CSubsystemConfigRows, without_indices_no_row_is_made)
{
    EXPECT_EQ(IndicesMadeOf("num_indices=2"), "plain");
    EXPECT_EQ(&mSubsystem.Element("100"), mSubsystem.Elements().front());
}

// It is tested for presence only. Intended.
TEST_F(CSubsystemConfigRows, the_value_of_num_indices_is_not_read)
{
    for (const char * count : { "0", "1", "junk", "-3", "9999" })
        EXPECT_EQ(IndicesMadeOf(std::string("index1=5;index2=6;num_indices=") + count), "5.6") << count;
}

TEST_F(CSubsystemConfigRows, indices_come_in_the_order_of_the_tags)
{
    EXPECT_EQ(IndicesMadeOf("num_indices=1;index1=1;index10=10;index2=2"), "1.10.2");
    EXPECT_EQ(IndicesMadeOf("num_indices=1;index2=2;INDEX1=1"), "1.2");
}

TEST_F(CSubsystemConfigRows, any_tag_that_contains_the_word_counts)
{
    EXPECT_EQ(IndicesMadeOf("num_indices=1;myindexfoo=4"), "4");
    EXPECT_EQ(IndicesMadeOf("num_indices=1;zindex=4;index=1;a.INDEX.b=7"), "7.1.4");
}

TEST_F(CSubsystemConfigRows, an_index_is_read_as_decimal_text)
{
    EXPECT_EQ(IndicesMadeOf("num_indices=1;index1=junk;index2= 7;index3=8x;index4=0x10"), "0.7.8.0");
    EXPECT_EQ(IndicesMadeOf("num_indices=1;index1=4294967295;index2=-1"), "4294967295.4294967295");
    EXPECT_EQ(
        IndicesMadeOf("num_indices=1;index1=99999999999;index2=99999999999999999999"), "1215752191.4294967295");
}

TEST_F(CSubsystemConfigRows, sees_each_change_of_one_context)
{
    CZynContext context;
    context.Parse("num_indices=1;index1=1");
    EXPECT_EQ(IndicesMadeOf(context), "1");
    context.SetTag("index1", 2);
    EXPECT_EQ(IndicesMadeOf(context), "2");
    context.SetTags("index", "3");
    EXPECT_EQ(IndicesMadeOf(context), "3");
    context.SetTag("num_indices");
    EXPECT_EQ(IndicesMadeOf(context), "plain");

    CZynContext other;
    other.Parse("num_indices=1;index1=4");
    context = other;
    EXPECT_EQ(IndicesMadeOf(context), "4");
    context.CBaseContext::operator=(CBaseContext("none"));
    EXPECT_EQ(IndicesMadeOf(context), "plain");
}

TEST_F(CSubsystemConfigRows, any_context_class_may_give_the_indices)
{
    MapContext map("num_indices=1;index1=8");
    EXPECT_EQ(IndicesMadeOf(map), "8");

    PrefixedContext<CBaseContext> prefixed("prefixed");
    prefixed.Parse("my.num_indices=1;my.index1=9;index1=1");
    EXPECT_EQ(IndicesMadeOf(prefixed), "9");

    EXPECT_EQ(IndicesMadeOf(CNullContext::Ref()), "plain");
}

TEST_F(CSubsystemConfigRows, a_derived_context_is_asked_anew_each_time)
{
    ChangingContext<CZynContext> context;
    for (const char * answer : { "3", "4", "" }) {
        context.mAnswer = answer;
        EXPECT_EQ(IndicesMadeOf(context), *answer != '\0' ? answer : "plain");
    }
}

// `TagMatches` of the library looks at stored tags only.
TEST_F(CSubsystemConfigRows, num_indices_that_are_computed_are_absent)
{
    ComputingContext<CZynContext> context;
    context.SetTag("index1", 5);
    context.Computes("num_indices", "1");
    EXPECT_EQ(IndicesMadeOf(context), "plain");
}

TEST_F(CSubsystemConfigRows, a_row_that_arrives_takes_the_indices_of_the_context)
{
    Add(TracedRow(1, 100, { 7, 7 }), "num_indices=1;index1=5");

    EXPECT_EQ(mSubsystem.Elements().front()->KeyString(), ".5");
    EXPECT_EQ(UidOf(mSubsystem.Element("100.5")), 1);
}

TEST_F(CSubsystemConfigRows, a_foreign_element_becomes_a_row_of_the_library)
{
    Add((new ForeignRaw(100, "T", AListOf(new TracedPayload(mLives, 1)), true))
            ->Ruled([](const CElement &, CElement &) { return true; }),
        "num_indices=1;index1=5");
    Add(Traced(2, 7), "insertmode=new");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 2 }));
}

TEST_F(CSubsystemConfigRows, the_row_takes_over_the_metadata)
{
    const auto record = ARecord(100).Named("table").Build();
    Add(AnElement(100).Number(1).Using(*record).Release(), "num_indices=1;index1=5");
    Add(AnElement(100).Number(1).Release(), "num_indices=1;index1=6");

    CElement & described = mSubsystem.Element("100.5");
    EXPECT_EQ(described.Metadata(), record.get());
    const auto payloads = described.GetPayloadCopy(false);
    EXPECT_EQ(dynamic_cast<IMetadataUser &>(*payloads.at(0)).Metadata(), record.get());
    EXPECT_EQ(mSubsystem.Element("100.6").Metadata(), nullptr);
}

TEST_F(CSubsystemConfigRows, a_row_with_metadata_is_written_as_one)
{
    const auto record = ARecord(100).Array().Build();
    Add(AnElement(100).Number(1).Number(2).Using(*record).Release(), "num_indices=1;index1=5");
    Add(AnElement(101).Named("bare").Number(3).Release(), "num_indices=1;index1=6");

    RecordingWriter writer({ "rawmode" });
    CZynContext context;
    EXPECT_TRUE(mSubsystem.Write(writer, context));
    EXPECT_EQ(writer.Calls(),
        (std::vector<std::string>{ "StartElement rawmode=", "WriteKeyId 100 rawmode=",
            "WriteNamedData num_indices 0100000000000000 rawmode=", "WriteNamedData index 05000000 rawmode=",
            "WritePayload 6:1 rawmode=", "WritePayload 6:2 rawmode=", "EndElement rawmode=",
            "StartElement rawmode=", "WriteKeyId 101 rawmode=",
            "WriteNamedData num_indices 0100000000000000 rawmode=", "WriteNamedData index 06000000 rawmode=",
            "WritePayload 6:3 rawmode=", "EndElement rawmode=" }));
}

TEST_F(CSubsystemConfigRows, the_insert_mode_compares_the_row_and_not_what_arrived)
{
    Add(Traced(1, 100), "num_indices=1;index1=5");
    Add(Traced(2, 100), "num_indices=1;index1=6;insertmode=new");
    Add(Traced(3, 100), "num_indices=1;index1=5;insertmode=new");
    Add(Traced(4, 100), "num_indices=1;index1=6;insertmode=overwrite");

    EXPECT_EQ(Uids(), (std::vector<int>{ 1, 4 }));
    EXPECT_EQ(mLives.Count(), 2U);
}

TEST_F(CSubsystemConfigRows, an_element_without_payloads_becomes_a_row_without)
{
    Add(new CElementStruct(100, "T", true), "num_indices=1;index1=5");

    EXPECT_EQ(mSubsystem.Element("t.5").PayloadCollectionSize(), 0U);
    EXPECT_EQ(mSubsystem.Element("t.5").KeyString(), "T.5");
    EXPECT_TRUE(mSubsystem.ElementsIsEmpty(100));
}

}   // namespace
