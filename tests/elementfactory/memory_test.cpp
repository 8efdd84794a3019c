// A factory when memory runs out, at every place where it may. A leak checker sees what is lost.

#include "factory_fixture.h"

#include <support/allocations.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ARecord;
using support::ByteField;
using support::EnumRecord;
using support::FailEachAllocation;
using support::GroupErrors;
using support::ScriptedSource;
using support::StructRecord;
using support::TreeOf;
using support::WithDetail;

const std::string LONG(60, 'x');

/// Reads the key with ever more memory until it succeeds; after each failure the factory has to read the next key.
void ExpectNoHarm(
    const IMetadata & key, const ScriptedSource & script, const std::string & tree, bool withCodec)
{
    const support::FrameworkErrors errors;
    const GroupErrors readerErrors(GROUP_OUTER_READER);
    const auto next = WithDetail(ARecord(999).OfType("uint8").Within(0, 9));
    std::unique_ptr<ScriptedSource> source;
    std::unique_ptr<CElementFactory> factory;
    CZynContext context;
    CStructCodec codec;
    const auto prepare = [&] {
        source = std::make_unique<ScriptedSource>(script);
        factory = std::make_unique<CElementFactory>(source.get(), context, withCodec ? &codec : nullptr);
    };
    std::unique_ptr<CElement> element;
    prepare();
    const auto failures = FailEachAllocation(
        [&] {
            factory->Clear();
            key.Inspect(*factory);
            element.reset(factory->Collect());
        },
        [&] {
            factory->Clear();
            EXPECT_EQ(factory->Collect(), nullptr);
            next->Inspect(*factory);
            const std::unique_ptr<CElement> small(factory->Collect());
            EXPECT_NE(small, nullptr);
            prepare();
        });
    EXPECT_GE(failures, 4U);
    EXPECT_EQ(TreeOf(element), tree);
}

/// A struct with a field of every shape, a nested one and an array.
struct AnyStruct
{
    AnyStruct()
        : mInner(ARecord(0).Named(LONG))
        , mKey(ARecord(100).Named(LONG).WithNumIndices(1))
    {
        mKey.mRecord->AddTableIndex(new CTableIndex(LONG, 0, 9, CTableIndex::INDEX_INTEGER));
        mInner.Add(*mByte, 0, 8);
        mKey.Add(*mByte, 0, 8);
        mKey.Add(*mMode, 8, 8);
        mKey.Add(*mInner.mRecord, 16, 8);
        mKey.Add(*mArray, 24, 24);
    }

    const std::unique_ptr<CMetadata> mByte = ByteField(LONG);
    const std::unique_ptr<CMetadata> mMode = EnumRecord(ARecord(0).Named(LONG), { { "on", "1" } });
    const std::unique_ptr<CMetadata> mArray =
        WithDetail(ARecord(0).Named(LONG).OfType("uint8").Within(0, 255).Array());
    StructRecord mInner;
    StructRecord mKey;
};

TEST(OutOfMemory, a_number_is_not_lost)
{
    const auto key = WithDetail(ARecord(100).Named(LONG).OfType("uint32").Within(0, 99));
    ScriptedSource script;
    script.Numbers({ 1, 2, 3, 4 }).Number(5).Last();
    ExpectNoHarm(*key, script, "uint32=1 uint32=2 uint32=3 uint32=4 uint32=5", false);
}

TEST(OutOfMemory, an_error_is_not_half_told)
{
    const auto key = WithDetail(ARecord(100).Named(LONG).OfType("uint32").Within(0, 1));
    ScriptedSource script;
    script.Number(2).Failing(GROUP_OUTER_READER, LONG).Last();
    ExpectNoHarm(*key, script, "none", false);
}

TEST(OutOfMemory, a_text_is_not_lost)
{
    const auto key = WithDetail(ARecord(100).Named(LONG).OfType("string").Within(0, 1));
    ScriptedSource script;
    script.Text(LONG).Last();
    ExpectNoHarm(*key, script, "string=" + LONG, false);
}

TEST(OutOfMemory, an_enumerator_is_not_lost)
{
    const auto key = EnumRecord(ARecord(100).Named(LONG), { { LONG.c_str(), "1" } });
    ScriptedSource script;
    script.Number(1).Last();
    ExpectNoHarm(*key, script, "enum=" + LONG + "(1)", false);
}

TEST(OutOfMemory, a_struct_read_field_by_field_is_not_lost)
{
    const AnyStruct any;
    ScriptedSource script;
    script.Numbers({ 4, 1, 1, 2, 5, 6, 7 });
    ExpectNoHarm(*any.mKey.mRecord, script, "{uint8=1 enum=on(1) {uint8=2} uint8=5 uint8=6 uint8=7}", false);
}

TEST(OutOfMemory, a_struct_read_by_a_codec_is_not_lost)
{
    const AnyStruct any;
    ScriptedSource script;
    script.Numbers({ 4, 0x0101, 0x0502 }).Number(0x0706).Last();
    ExpectNoHarm(*any.mKey.mRecord, script, "{uint8=1 enum=on(1) {uint8=2} {uint8=5 uint8=6 uint8=7}}", true);
}

TEST(OutOfMemory, a_walk_may_go_on_in_spite_of_it)
{
    // A reader that swallows the failure and goes on: nothing may be used that is gone.
    const AnyStruct any;
    const support::FrameworkErrors errors;
    for (std::uint64_t granted = 0; granted < 12; ++granted) {
        ScriptedSource source;
        source.Numbers({ 1, 2, 3 });
        CZynContext context;
        CElementFactory factory(&source, context, nullptr);
        factory.StartElement(*any.mKey.mRecord);
        factory.StartStruct(*any.mKey.mRecord);
        support::FailAllocationsAfter(granted);
        try {
            factory.StartStruct(*any.mInner.mRecord);
        } catch (const std::bad_alloc &) {
        }
        support::LetAllocationsPass();
        factory.Int(*any.mByte);
        const std::unique_ptr<CElement> element(factory.Collect());
        EXPECT_NE(TreeOf(element).find("uint8=1"), std::string::npos) << granted;
    }
}

}   // namespace
}   // namespace VrexZynConfigTools
