// What is worked out of a context's tags never outlives them, in whatever way they are exchanged.

#include <configtools/framework/coreclasses/contextfacts.h>
#include <configtools/zyncontext.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace VrexZynConfigTools {
namespace {

InsertModeEnum InsertMode(IConfigContext & context)
{
    return CContextFacts::Of(context)->ReadOptions(context).mInsertMode;
}

template <typename ContextT>
ContextT AContext();

template <>
CBaseContext AContext()
{
    return CBaseContext("test");
}

template <>
CZynContext AContext()
{
    return {};
}

template <typename ContextT>
class ContextFacts : public testing::Test
{
protected:
    ContextFacts()
    {
        mKeeping.SetTag("insertmode", "new");
        mOverwriting.SetTag("insertmode", "overwrite");
        EXPECT_EQ(InsertMode(mKeeping), InsertModeEnum::KEEP);
        EXPECT_EQ(InsertMode(mOverwriting), InsertModeEnum::OVERWRITE);
    }

    ContextT mKeeping = AContext<ContextT>();   // both have the same change count, and their facts
    ContextT mOverwriting = AContext<ContextT>();
};

using BothContexts = testing::Types<CBaseContext, CZynContext>;
TYPED_TEST_SUITE(ContextFacts, BothContexts);

TYPED_TEST(ContextFacts, follow_a_write)
{
    this->mKeeping.SetTag("insertmode", "overwrite");
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::OVERWRITE);
    this->mKeeping.SetTags("insert", "new");
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::KEEP);
    this->mKeeping.SetTags("insert", "");
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::ADD);
}

TYPED_TEST(ContextFacts, follow_a_copy_assignment)
{
    this->mKeeping = this->mOverwriting;
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::OVERWRITE);
    EXPECT_EQ(InsertMode(this->mOverwriting), InsertModeEnum::OVERWRITE);
}

TYPED_TEST(ContextFacts, follow_a_move_assignment_on_both_sides)
{
    this->mKeeping = std::move(this->mOverwriting);
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::OVERWRITE);
    EXPECT_EQ(InsertMode(this->mOverwriting), InsertModeEnum::ADD);
}

TYPED_TEST(ContextFacts, follow_a_move_construction_on_both_sides)
{
    TypeParam moved(std::move(this->mOverwriting));
    EXPECT_EQ(InsertMode(moved), InsertModeEnum::OVERWRITE);
    EXPECT_EQ(InsertMode(this->mOverwriting), InsertModeEnum::ADD);
}

TYPED_TEST(ContextFacts, follow_an_assignment_of_the_base_part)
{
    static_cast<CBaseContext &>(this->mKeeping) = this->mOverwriting;
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::OVERWRITE);
    static_cast<CBaseContext &>(this->mOverwriting) = CBaseContext("other");
    EXPECT_EQ(InsertMode(this->mOverwriting), InsertModeEnum::ADD);
}

TYPED_TEST(ContextFacts, are_not_shared_by_copies)
{
    TypeParam copy(this->mKeeping);
    EXPECT_NE(CContextFacts::Of(copy), CContextFacts::Of(this->mKeeping));
    copy.SetTag("insertmode", "overwrite");
    EXPECT_EQ(InsertMode(copy), InsertModeEnum::OVERWRITE);
    EXPECT_EQ(InsertMode(this->mKeeping), InsertModeEnum::KEEP);

    const std::unique_ptr<IConfigContext> clone(this->mOverwriting.Clone());
    EXPECT_NE(CContextFacts::Of(*clone), CContextFacts::Of(this->mOverwriting));
    EXPECT_EQ(InsertMode(*clone), InsertModeEnum::OVERWRITE);
}

}   // namespace
}   // namespace VrexZynConfigTools
