#include "records.h"

#include <configtools/metadata.h>
#include <messages/messages.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::Calls;
using support::StructRecord;
using support::WalkRecorder;
using support::WithDetail;

CMessageHandler & Handler()
{
    return CTheMsgHnd::Instance().GetAppropriateHandler(GROUP_FRAMEWORK, "", false);
}

/// What stands in the framework's group; empty for no error.
std::string Error()
{
    short code = -1;
    std::string text;
    Handler().GetErrorMsg(GROUP_FRAMEWORK, code, text);
    return text;
}

constexpr char TOO_DEEP[] = "the metadata nests structs too deep";

class HostileMetadata : public testing::Test
{
protected:
    HostileMetadata() { Handler().ClearError(GROUP_FRAMEWORK); }
    ~HostileMetadata() override { Handler().ClearError(GROUP_FRAMEWORK); }
};

std::ptrdiff_t CountOf(const Calls & calls, const std::string & call)
{
    return std::count(calls.begin(), calls.end(), call);
}

/// Structs within structs, `depth` in all, each holding the next one `width` times.
class Chain
{
public:
    explicit Chain(int depth, int width = 1, bool isLittleEndian = true)
    {
        mStructs.emplace_back(ARecord(1).Named("s"), isLittleEndian);
        for (int level = 1; level < depth; ++level) {
            mStructs.emplace_back(ARecord(0).Named("s"), isLittleEndian);
            for (int copy = 0; copy < width; ++copy)
                mStructs[mStructs.size() - 2].Add(*mStructs.back().mRecord);
        }
    }

    StructRecord & Top() { return mStructs.front(); }
    StructRecord & Bottom() { return mStructs.back(); }

private:
    std::deque<StructRecord> mStructs;
};

TEST_F(HostileMetadata, structs_may_nest_64_deep)
{
    Chain chain(64);
    WalkRecorder observer;
    chain.Top().mRecord->Inspect(observer);
    const std::string text = chain.Top().mRecord->ToString("");
    chain.Top().mDetail->OrderFieldsForTargetArchitecture();

    EXPECT_EQ(Error(), "");
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), 64);
    EXPECT_EQ(CountOf(observer.Calls(), "EndStruct"), 64);
}

TEST_F(HostileMetadata, the_65th_struct_is_an_error_and_what_is_open_is_closed)
{
    Chain chain(65);
    WalkRecorder observer;
    chain.Top().mRecord->Inspect(observer);

    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), 64);
    EXPECT_EQ(CountOf(observer.Calls(), "EndStruct"), 64);
    EXPECT_EQ(CountOf(observer.Calls(), "elembitwidth=\"\""), 64);
    EXPECT_EQ(observer.Calls().back(), "EndElement");
}

TEST_F(HostileMetadata, a_walk_that_is_cut_off_walks_no_further_fields)
{
    Chain chain(65);
    const auto leaf = WithDetail(ARecord(0).Named("leaf"));
    chain.Top().Add(*leaf, 8, 3);
    WalkRecorder observer;
    chain.Top().mRecord->Inspect(observer);

    EXPECT_EQ(CountOf(observer.Calls(), "Int leaf"), 0);
    EXPECT_EQ(CountOf(observer.Calls(), "elembitwidth=3"), 0);
}

TEST_F(HostileMetadata, printing_ends_at_the_65th_struct)
{
    Chain allowed(64);
    Chain tooDeep(65);
    const std::string text = allowed.Top().mRecord->ToString(",");
    EXPECT_EQ(Error(), "");

    // The record of the 65th struct is printed as a field of the 64th; its own fields are not.
    const std::string cutOff = tooDeep.Top().mRecord->ToString(",");
    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(cutOff.size(), text.size() + tooDeep.Bottom().mRecord->ToString(",").size() - 1);
}

TEST_F(HostileMetadata, ordering_ends_at_the_65th_struct)
{
    const auto leaf = ARecord(0).Build();
    for (const int depth : { 64, 65 }) {
        Handler().ClearError(GROUP_FRAMEWORK);
        Chain chain(depth);
        chain.Bottom().Add(*leaf, 8);
        chain.Bottom().Add(*leaf, 0);
        chain.Top().mDetail->OrderFieldsForTargetArchitecture();

        EXPECT_EQ(Error(), depth == 64 ? "" : TOO_DEEP);
        EXPECT_EQ(chain.Bottom().Positions(), depth == 64 ? (std::vector{ 0, 8 }) : (std::vector{ 8, 0 }));
    }
}

TEST_F(HostileMetadata, a_struct_that_holds_itself_many_times_ends)
{
    StructRecord key(ARecord(0).Named("s"));
    for (int copy = 0; copy < 10; ++copy)
        key.Add(*key.mRecord);
    WalkRecorder observer;
    key.mRecord->Inspect(observer);
    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), CountOf(observer.Calls(), "EndStruct"));
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), 64);

    Handler().ClearError(GROUP_FRAMEWORK);
    EXPECT_LT(key.mRecord->ToString(",").size(), 10'000U);
    EXPECT_EQ(Error(), TOO_DEEP);

    Handler().ClearError(GROUP_FRAMEWORK);
    key.mDetail->OrderFieldsForTargetArchitecture();
    EXPECT_EQ(Error(), TOO_DEEP);
}

TEST_F(HostileMetadata, an_array_of_structs_that_holds_itself_ends_when_the_observer_does)
{
    StructRecord key(ARecord(1).Named("s").Array());
    key.Add(*key.mRecord);
    key.Add(*key.mRecord);
    WalkRecorder observer(1000);
    key.mRecord->Inspect(observer);

    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(CountOf(observer.Calls(), "StartArrayItem"), CountOf(observer.Calls(), "EndArrayItem"));
    EXPECT_EQ(CountOf(observer.Calls(), "StartElement s"), CountOf(observer.Calls(), "EndElement"));
}

TEST_F(HostileMetadata, an_array_within_which_the_walk_is_cut_off_ends_though_the_observer_wants_more)
{
    // The field of the array is a key, so that the array would ask again after each item.
    StructRecord outer(ARecord(0).Named("outer"));
    StructRecord key(ARecord(1).Named("s").Array());
    key.Add(*key.mRecord);
    outer.Add(*key.mRecord);
    WalkRecorder observer(10'000);
    outer.mRecord->Inspect(observer);

    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(observer.TimesAsked(), 0);
    EXPECT_EQ(CountOf(observer.Calls(), "StartArrayItem"), 64);
    EXPECT_EQ(CountOf(observer.Calls(), "EndArrayItem"), 64);
}

TEST_F(HostileMetadata, one_struct_reached_on_endlessly_many_ways_ends)
{
    Chain chain(60, 3);   // 3 to the power of 59 ways to the innermost struct
    WalkRecorder observer;
    chain.Top().mRecord->Inspect(observer);
    EXPECT_EQ(Error(), TOO_DEEP);
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), 65536);
    EXPECT_EQ(CountOf(observer.Calls(), "EndStruct"), 65536);

    Handler().ClearError(GROUP_FRAMEWORK);
    EXPECT_FALSE(chain.Top().mRecord->ToString(",").empty());
    EXPECT_EQ(Error(), TOO_DEEP);

    Handler().ClearError(GROUP_FRAMEWORK);
    chain.Top().mDetail->OrderFieldsForTargetArchitecture();
    EXPECT_EQ(Error(), TOO_DEEP);
}

TEST_F(HostileMetadata, a_walk_after_one_that_was_cut_off_is_whole)
{
    StructRecord endless(ARecord(0));
    endless.Add(*endless.mRecord);
    StructRecord fine(ARecord(0).Named("s"));
    WalkRecorder observer;
    endless.mRecord->Inspect(observer);
    Handler().ClearError(GROUP_FRAMEWORK);

    WalkRecorder next;
    fine.mRecord->Inspect(next);
    EXPECT_EQ(next.Calls(), (Calls{ "StartStruct s", "elembitwidth=\"\"", "EndStruct" }));
    EXPECT_EQ(Error(), "");
}

class Thrower : public WalkRecorder
{
public:
    void EndStruct() override { throw 1; }
};

TEST_F(HostileMetadata, an_observer_that_throws_leaves_the_next_walk_its_full_depth)
{
    Chain chain(64);
    Thrower thrower;
    EXPECT_THROW(chain.Top().mRecord->Inspect(thrower), int);

    WalkRecorder observer;
    chain.Top().mRecord->Inspect(observer);
    EXPECT_EQ(CountOf(observer.Calls(), "StartStruct s"), 64);
    EXPECT_EQ(Error(), "");
}

TEST_F(HostileMetadata, a_field_without_a_record_is_an_error_of_the_walk)
{
    StructRecord key(ARecord(0).Named("s"));
    const auto leaf = WithDetail(ARecord(0).Named("leaf"));
    key.mDetail->AddField("", nullptr, 0, 4);
    key.Add(*leaf, 4, 5);
    WalkRecorder observer;
    key.mRecord->Inspect(observer);

    EXPECT_EQ(Error(), "a struct field has no metadata");
    EXPECT_EQ(observer.Calls(), (Calls{ "StartStruct s", "elembitwidth=4", "elembitwidth=5", "Int leaf",
                                    "elembitwidth=\"\"", "EndStruct" }));
}

TEST_F(HostileMetadata, a_field_without_a_record_prints_nothing_and_is_ordered)
{
    StructRecord key(ARecord(0), false);
    key.mDetail->AddField("", nullptr, 8, 8);
    key.mDetail->AddField("", nullptr, 0, 8);
    EXPECT_EQ(key.mDetail->ToString(","), ",");
    EXPECT_FALSE(key.mDetail->IsNested());

    key.mDetail->OrderFieldsForTargetArchitecture();
    EXPECT_EQ(key.Positions(), (std::vector{ 8, 0 }));
}

TEST_F(HostileMetadata, records_that_call_themselves_structs_without_being_any_are_left_alone)
{
    StructRecord key(ARecord(0), false);
    const auto bare = ARecord(0).Shaped(METADATA_STRUCT).Build();
    const auto other = ARecord(0).Shaped(METADATA_STRUCT).Build();
    other->SetDetails(*new CMetadataDetailEnum(*other));
    key.Add(*bare, 8, 8);
    key.Add(*other, 0, 8);
    key.mDetail->OrderFieldsForTargetArchitecture();

    EXPECT_TRUE(key.mDetail->IsNested());
    EXPECT_EQ(key.Positions(), (std::vector{ 8, 0 }));
}

TEST_F(HostileMetadata, the_null_record_as_a_field_calls_nothing)
{
    StructRecord key(ARecord(0).Named("s"));
    key.Add(CNullMetadata::Ref());
    WalkRecorder observer;
    key.mRecord->Inspect(observer);

    EXPECT_EQ(observer.Calls(), (Calls{ "StartStruct s", "elembitwidth=8", "elembitwidth=\"\"", "EndStruct" }));
}

TEST_F(HostileMetadata, a_field_that_is_a_key_opens_its_element)
{
    StructRecord struc(ARecord(0).Named("s"));
    const auto key = WithDetail(ARecord(7).Named("key"));
    struc.Add(*key);
    WalkRecorder observer;
    struc.mRecord->Inspect(observer);

    EXPECT_EQ(observer.Calls(), (Calls{ "StartStruct s", "elembitwidth=8", "StartElement key", "Int key",
                                    "EndElement", "elembitwidth=\"\"", "EndStruct" }));
}

}   // namespace
}   // namespace VrexZynConfigTools
