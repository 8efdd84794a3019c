// What a factory keeps from call to call, and what it passes on.

#include "factory_fixture.h"

#include <support/debug_capture.h>
#include <support/slots.h>

#include <string>
#include <type_traits>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::ByteField;
using support::Calls;
using support::EnumRecord;
using support::ScriptedSource;
using support::SlotOf;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

class Factory : public support::FactoryTest
{
protected:
    const std::unique_ptr<CMetadata> mNumber =
        WithDetail(ARecord(100).Named("number").OfType("uint8").Within(0, 255));
};

static_assert(std::is_base_of_v<IMetadataInspectorObserver, CElementFactory>);
static_assert(!std::is_default_constructible_v<CElementFactory>);

TEST(Slots, CElementFactory)
{
    using F = CElementFactory;
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&F::StartElement), 0);
    EXPECT_EQ(SlotOf<void()>(&F::EndElement), 1);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&F::StartStruct), 2);
    EXPECT_EQ(SlotOf<void()>(&F::EndStruct), 3);
    EXPECT_EQ(SlotOf<void()>(&F::StartArrayItem), 4);
    EXPECT_EQ(SlotOf<void()>(&F::EndArrayItem), 5);
    EXPECT_EQ(SlotOf<void(const CTableIndex &)>(&F::IntIndex), 8);   // the destructor has 6 and 7
    EXPECT_EQ(SlotOf<void(const CTableIndex &)>(&F::EnumIndex), 9);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&F::Int), 10);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&F::String), 11);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&F::Enum), 12);
    EXPECT_EQ(SlotOf<bool()>(&F::InspectDetailAgain), 13);
    EXPECT_EQ((SlotOf<void(const std::string &, int)>(&F::SetContextInfo)), 14);
    EXPECT_EQ((SlotOf<void(const std::string &, const std::string &)>(&F::SetContextInfo)), 15);
    EXPECT_EQ(SlotOf<void()>(&F::Clear), 16);
    EXPECT_EQ(SlotOf<CElement *()>(&F::Collect), 17);
    EXPECT_EQ(support::SlotAfter<F>(), 18);
}

TEST_F(Factory, traces_each_of_its_steps_under_its_full_name)
{
    const auto text = WithDetail(ARecord(0).Named("text").OfType("octet_string"));
    StructRecord key(ARecord(1).Named("s"));
    const auto byte = ByteField("byte");
    key.Add(*byte, 0, 8);
    key.Add(*text, 8, 8);
    mSource.Number(1).Text("ab").Last();
    const support::DebugCapture capture(0);
    Read(*key.mRecord);
    for (const std::string step : { "OpenStruct", "ShapeOf", "ReadNumbers", "ReadNumber", "ValidateRange",
             "TrimPadding", "CheckLength", "Place", "AddStructField", "OpenPayload" })
        EXPECT_GE(capture.Count("-> VrexZynConfigTools::CElementFactory::" + step), 1U) << step;
}

TEST_F(Factory, holds_nothing_at_first)
{
    EXPECT_EQ(mFactory.Collect(), nullptr);
    EXPECT_FALSE(mFactory.InspectDetailAgain());
    EXPECT_TRUE(mContext.Tags().empty());
}

TEST_F(Factory, gives_its_element_away_once)
{
    mNumber->Inspect(mFactory);
    EXPECT_NE(Collect(), nullptr);
    EXPECT_EQ(Collect(), nullptr);
}

TEST_F(Factory, keeps_an_element_until_it_is_cleared)
{
    mNumber->Inspect(mFactory);
    mFactory.Clear();
    EXPECT_EQ(Collect(), nullptr);
}

TEST_F(Factory, deletes_an_element_that_nobody_collected)
{
    // A leak checker sees whether it does.
    CElementFactory factory(&mSource, mContext, nullptr);
    mNumber->Inspect(factory);
}

TEST_F(Factory, reads_any_number_of_keys)
{
    mSource.Number(1).Last().Number(2).Last().Number(3).Last();
    EXPECT_EQ(TreeOf(Read(*mNumber)), "uint8=1");
    EXPECT_EQ(TreeOf(ReadOn(*mNumber)), "uint8=2");
    EXPECT_EQ(TreeOf(Read(*mNumber)), "uint8=3");
}

TEST_F(Factory, clears_every_tag_that_speaks_of_an_index_and_no_other)
{
    mContext.Parse("num_indices=2;index1=3;index12=4;MyIndexTag=5;chip=c;nodatacheck=true;elembitwidth=8");
    mFactory.Clear();

    EXPECT_EQ(mContext.Tags(), (std::map<std::string, std::string>{
                                   { "chip", "c" }, { "elembitwidth", "8" }, { "nodatacheck", "true" } }));
}

TEST_F(Factory, keeps_its_last_answer_when_cleared)
{
    mSource.Number(1);
    mFactory.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));
    mFactory.Clear();
    EXPECT_TRUE(mFactory.InspectDetailAgain());
}

TEST_F(Factory, forgets_the_key_when_cleared)
{
    const auto key = EnumRecord(ARecord(100).Named("mode"), { { "off", "0" } });
    mFactory.StartElement(*key);
    mFactory.Clear();
    mFactory.Enum(*key);   // is named after the key
    const auto element = Collect();

    EXPECT_EQ(element->PsId(), 0U);
    EXPECT_EQ(element->Name(), "");
}

TEST_F(Factory, forgets_that_the_key_is_a_struct_when_cleared)
{
    const StructRecord key(ARecord(100));
    mFactory.StartElement(*key.mRecord);
    mFactory.Clear();
    mSource.Number(1).Number(2).Last();
    mFactory.Int(*mNumber);

    EXPECT_EQ(TreeOf(Collect()), "uint8=1 uint8=2");
}

TEST_F(Factory, begins_each_key_without_an_error_of_the_framework)
{
    mErrors.Set("of an earlier key");
    mReaderErrors.Set("line 3");
    mFactory.StartElement(*mNumber);

    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_EQ(mReaderErrors.Text(), "line 3");
}

TEST_F(Factory, speaks_of_the_errors_of_one_key_alone)
{
    const auto small = WithDetail(ARecord(100).OfType("uint8").Within(0, 5));
    mSource.Number(6).Last().Number(5).Last();
    EXPECT_EQ(Read(*small), nullptr);
    EXPECT_TRUE(mErrors.IsSet());
    EXPECT_EQ(TreeOf(Read(*small)), "uint8=5");
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(Factory, leaves_an_error_alone_when_cleared)
{
    mErrors.Set("an error");
    mFactory.Clear();
    EXPECT_EQ(mErrors.Text(), "an error");
}

TEST_F(Factory, passes_context_information_on)
{
    mFactory.SetContextInfo("MyTag", 5);
    mFactory.SetContextInfo("other", std::string("Text"));
    EXPECT_EQ(mContext.GetTag("mytag"), "5");
    EXPECT_EQ(mContext.GetTag("other"), "Text");
    mFactory.SetContextInfo("other", std::string());
    EXPECT_EQ(mContext.Tags().count("other"), 0U);
}

TEST_F(Factory, loses_a_struct_that_was_not_collected_before_the_next_one)
{
    // It stays where a leak checker finds it.
    const StructRecord first(ARecord(100).Named("first"));
    const StructRecord second(ARecord(101).Named("second"));
    first.mRecord->Inspect(mFactory);
    const auto element = ReadOn(*second.mRecord);

    EXPECT_EQ(element->Name(), "second");
    EXPECT_EQ(TreeOf(element), "{}");
}

TEST_F(Factory, refuses_a_plain_key_while_another_was_not_collected)
{
    mSource.Number(1).Last().Number(2).Last();
    mNumber->Inspect(mFactory);

    EXPECT_EQ(TreeOf(ReadOn(*mNumber)), "uint8=1");
    EXPECT_EQ(mErrors.Text(), "an unexpected error occurred");
}

TEST_F(Factory, is_copied_with_all_that_it_knows)
{
    const auto key = EnumRecord(ARecord(100).Named("mode"), { { "on", "1" } });
    mSource.Number(9).Number(1);
    mFactory.StartElement(*key);
    mFactory.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));
    CElementFactory copy(mFactory);

    EXPECT_TRUE(copy.InspectDetailAgain());
    copy.Enum(*key);   // from the same source, for the same key
    const std::unique_ptr<CElement> element(copy.Collect());
    EXPECT_EQ(TreeOf(element), "enum=on(1)");
    EXPECT_EQ(element->Name(), "mode");
    copy.IntIndex(CTableIndex("index", 0, 1, CTableIndex::INDEX_INTEGER));
    EXPECT_EQ(mSource.Calls().back(), "NextInt uint32 index=1");
    EXPECT_NE(mContext.GetTag("index2"), "");
}

TEST_F(Factory, a_copy_goes_its_own_way)
{
    CElementFactory copy(mFactory);
    mSource.Number(1).Last().Number(2).Last();
    mNumber->Inspect(mFactory);
    mNumber->Inspect(copy);

    EXPECT_EQ(TreeOf(Collect()), "uint8=1");
    EXPECT_EQ(TreeOf(std::unique_ptr<CElement>(copy.Collect())), "uint8=2");
}

/// A source that is told the structure, too, and notes what it finds then.
class ListeningSource : public ScriptedSource, public IMetadataLayoutInspectorObserver
{
public:
    explicit ListeningSource(IConfigContext & context)
        : mContext(context)
    {}

    void StartElement(const IMetadata & metadata) override
    {
        const bool isErrorSet =
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "", false).IsErrorSet(GROUP_FRAMEWORK, true);
        mHeard.push_back("StartElement " + metadata.Name() + (isErrorSet ? " after an error" : "") +
                         " num_indices=" + mContext.GetTag("num_indices"));
    }
    void EndElement() override { mHeard.push_back("EndElement"); }
    void StartStruct(const IMetadata & metadata) override
    {
        mHeard.push_back("StartStruct " + metadata.Name());
    }
    void EndStruct() override { mHeard.push_back("EndStruct"); }
    void StartArrayItem() override { mHeard.push_back("StartArrayItem"); }
    void EndArrayItem() override { mHeard.push_back("EndArrayItem"); }

    std::vector<std::string> mHeard;

private:
    IConfigContext & mContext;
};

TEST_F(Factory, tells_a_listening_source_the_elements_and_structures)
{
    StructRecord key(ARecord(100).Named("key"));
    StructRecord inner(ARecord(0).Named("inner"));
    const auto field = ByteField("field");
    inner.Add(*field, 0, 8);
    key.Add(*inner.mRecord, 0, 8);
    const Calls heard{ "StartElement key num_indices=", "StartStruct key", "StartStruct inner", "EndStruct",
        "EndStruct", "EndElement" };
    CStructCodec codec;
    for (CStructCodec * const mode : { static_cast<CStructCodec *>(nullptr), &codec }) {
        ListeningSource source(mContext);
        source.Number(1).Last();
        CElementFactory factory(&source, mContext, mode);
        key.mRecord->Inspect(factory);
        EXPECT_EQ(source.mHeard, heard);
    }
}

TEST_F(Factory, tells_a_listening_source_no_items_of_an_array)
{
    const auto key = WithDetail(ARecord(100).Named("key").OfType("uint8").Within(0, 9).Array());
    ListeningSource source(mContext);
    source.Number(1).Number(2).Last();
    CElementFactory factory(&source, mContext, nullptr);
    key->Inspect(factory);

    EXPECT_EQ(source.mHeard, (Calls{ "StartElement key num_indices=", "EndElement" }));
}

TEST_F(Factory, tells_a_listening_source_of_a_key_when_its_error_is_gone_and_its_indices_are_not_told_yet)
{
    const auto key = ARecord(100).Named("key").WithNumIndices(2).Build();
    ListeningSource source(mContext);
    CElementFactory factory(&source, mContext, nullptr);
    mErrors.Set("of an earlier key");
    factory.StartElement(*key);

    EXPECT_EQ(source.mHeard, Calls{ "StartElement key num_indices=" });
    EXPECT_EQ(mContext.GetTag("num_indices"), "2");
}

}   // namespace
}   // namespace VrexZynConfigTools
