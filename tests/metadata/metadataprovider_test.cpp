#include <configtools/metadataprovider.h>

#include <configtools/chipconfig.h>
#include <configtools/metadata.h>
#include <configtools/zyncontext.h>
#include <support/slots.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::SlotAfter;
using support::SlotOf;

template <typename ClassT>
using Getter = const std::string (ClassT::*)() const;

CChipInfo NineTexts()
{
    return CChipInfo("1", "2", "3", "4", "5", "6", "7", "8", "9");
}

TEST(CChipInfo, keeps_the_nine_texts_in_the_order_of_its_constructor)
{
    const CChipInfo chip = NineTexts();

    EXPECT_EQ(chip.ChipName(), "1");
    EXPECT_EQ(chip.ChipId(), "2");
    EXPECT_EQ(chip.RomName(), "3");
    EXPECT_EQ(chip.RomVersion(), "4");
    EXPECT_EQ(chip.EfuseHash(), "5");
    EXPECT_EQ(chip.SystemVersionLabel(), "6");
    EXPECT_EQ(chip.SystemDescription(), "7");
    EXPECT_EQ(chip.SystemVersion(), "8");
    EXPECT_EQ(chip.BuildDate(), "9");
}

TEST(CChipInfo, copies_and_moves_member_by_member)
{
    CChipInfo source = NineTexts();
    const CChipInfo copy(source);
    CChipInfo assigned("a", "b", "c", "d", "e", "f", "g", "h", "i");
    assigned = source;
    EXPECT_EQ(copy.ChipName() + copy.BuildDate(), "19");
    EXPECT_EQ(assigned.ChipName() + assigned.BuildDate(), "19");
    EXPECT_EQ(source.ChipName() + source.BuildDate(), "19");

    CChipInfo moved("a", "b", "c", "d", "e", "f", "g", "h", "i");
    moved = CChipInfo(std::move(source));
    EXPECT_EQ(moved.ChipName() + moved.EfuseHash() + moved.BuildDate(), "159");
    static_assert(std::is_nothrow_move_constructible_v<CChipInfo>);
    static_assert(std::is_nothrow_move_assignable_v<CChipInfo>);
}

TEST(Slots, IChipInfo)
{
    using Info = IChipInfo;
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::ChipName }), 0);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::ChipId }), 1);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::RomName }), 2);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::RomVersion }), 3);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::EfuseHash }), 4);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::SystemVersionLabel }), 5);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::SystemDescription }), 6);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::SystemVersion }), 7);
    EXPECT_EQ(SlotOf(Getter<Info>{ &Info::BuildDate }), 8);
    EXPECT_EQ(SlotAfter<Info>(), 11);
    EXPECT_EQ(SlotAfter<CChipInfo>(), 11);
}

TEST(Slots, IMetadataProvider)
{
    using P = IMetadataProvider;
    EXPECT_EQ((SlotOf<const IMetadata &(std::uint32_t, IConfigContext &)>(&P::MetadataById)), 0);
    EXPECT_EQ((SlotOf<const IMetadata &(const std::string &, IConfigContext &)>(&P::MetadataByName)), 1);
    EXPECT_EQ(SlotOf<const std::vector<const IMetadata *> &(IConfigContext &)>(&P::AllMetadata), 2);
    EXPECT_EQ(SlotOf<const std::vector<std::string> &()>(&P::Systems), 3);
    EXPECT_EQ(SlotOf<std::vector<ISubsystemInfo *> &(IConfigContext &)>(&P::Subsystems), 4);
    EXPECT_EQ(SlotOf<std::vector<IChipInfo *> &(IConfigContext &)>(&P::Chips), 5);
    EXPECT_EQ((SlotOf<std::string(const std::string &, IConfigContext &)>(&P::NearestName)), 6);
    EXPECT_EQ(SlotOf<bool()>(&P::Check), 7);
    EXPECT_EQ(SlotOf<void()>(&P::Refresh), 8);
    EXPECT_EQ(SlotAfter<P>(), 11);
}

TEST(Slots, ISystemValidator)
{
    using V = ISystemValidator;
    EXPECT_EQ(SlotOf<bool(IConfigContext &)>(&V::ValidateSystem), 0);
    EXPECT_EQ((SlotOf<bool(const IElementProvider &, IConfigContext &)>(&V::ValidateElements)), 1);
    EXPECT_EQ(SlotAfter<V>(), 4);
}

static_assert(std::is_abstract_v<IChipInfo> && std::has_virtual_destructor_v<IChipInfo>);
static_assert(std::is_abstract_v<IMetadataProvider> && std::has_virtual_destructor_v<IMetadataProvider>);
static_assert(std::is_abstract_v<ISystemValidator> && std::has_virtual_destructor_v<ISystemValidator>);
static_assert(std::is_abstract_v<CBaseMetadataProvider>);

/// What is left to a plug-in, in its smallest form.
class Provider : public CBaseMetadataProvider
{
public:
    using CBaseMetadataProvider::CBaseMetadataProvider;

    const IMetadata & MetadataById(std::uint32_t /*psId*/, IConfigContext & /*context*/) override
    {
        return CNullMetadata::Ref();
    }
    const IMetadata & MetadataByName(const std::string & /*name*/, IConfigContext & /*context*/) override
    {
        return CNullMetadata::Ref();
    }
    const std::vector<const IMetadata *> & AllMetadata(IConfigContext & /*context*/) override
    {
        return mRecords;
    }
    const std::vector<std::string> & Systems() override { return mSystems; }
    std::vector<ISubsystemInfo *> & Subsystems(IConfigContext & /*context*/) override { return mSubsystems; }
    std::vector<IChipInfo *> & Chips(IConfigContext & /*context*/) override { return mChips; }
    std::string NearestName(const std::string & /*name*/, IConfigContext & /*context*/) override { return ""; }
    void Read(IConfigContext & /*context*/) override {}

    const std::string & Source() const { return mSource; }
    IConfigReaderObserver * Observer() const { return mObserver; }
    IConfigReaderElementObserver * ElementObserver() const { return mElementObserver; }

private:
    std::vector<const IMetadata *> mRecords;
    std::vector<std::string> mSystems;
    std::vector<ISubsystemInfo *> mSubsystems;
    std::vector<IChipInfo *> mChips;
};

TEST(CBaseMetadataProvider, keeps_its_source_and_has_no_observers_at_first)
{
    const Provider provider("system.zmd");
    EXPECT_EQ(provider.Source(), "system.zmd");
    EXPECT_EQ(provider.Observer(), nullptr);
    EXPECT_EQ(provider.ElementObserver(), nullptr);
}

TEST(CBaseMetadataProvider, is_usable_before_anything_is_set_up)
{
    Provider provider("");
    EXPECT_TRUE(provider.Check());
    provider.Refresh();
    EXPECT_TRUE(provider.Check());
}

TEST(CBaseMetadataProvider, keeps_the_observers_last_set)
{
    Provider provider("");
    CChipConfig first;
    CChipConfig second;
    IConfigReaderObserver & observer = second;
    IConfigReaderElementObserver & elementObserver = second;
    provider.SetObserver(first);
    provider.SetElementObserver(first);
    provider.SetObserver(observer);
    EXPECT_EQ(provider.Observer(), &observer);
    EXPECT_EQ(provider.ElementObserver(), &static_cast<IConfigReaderElementObserver &>(first));
    provider.SetElementObserver(elementObserver);
    EXPECT_EQ(provider.ElementObserver(), &elementObserver);
}

TEST(CBaseMetadataProvider, is_its_own_provider)
{
    Provider provider("");
    Provider other("");
    CChipConfig chip;
    provider.SetObserver(chip);
    provider.SetMetadataProvider(other);
    provider.Refresh();

    EXPECT_EQ(provider.Observer(), &static_cast<IConfigReaderObserver &>(chip));
    EXPECT_EQ(provider.ElementObserver(), nullptr);
    EXPECT_EQ(provider.Source(), "");
}

TEST(CBaseMetadataProvider, copies_share_the_observers)
{
    Provider source("a.zmd");
    CChipConfig chip;
    source.SetObserver(chip);
    source.SetElementObserver(chip);
    const Provider copy(source);
    Provider assigned("b.zmd");
    assigned = source;

    for (const Provider * const provider : { &copy, static_cast<const Provider *>(&assigned) }) {
        EXPECT_EQ(provider->Source(), "a.zmd");
        EXPECT_EQ(provider->Observer(), source.Observer());
        EXPECT_EQ(provider->ElementObserver(), source.ElementObserver());
    }
    EXPECT_EQ(source.Source(), "a.zmd");
}

TEST(CBaseMetadataProvider, a_moved_from_provider_keeps_its_observers)
{
    Provider source("a.zmd");
    CChipConfig chip;
    source.SetObserver(chip);
    source.SetElementObserver(chip);
    Provider moved(std::move(source));
    EXPECT_EQ(moved.Source(), "a.zmd");
    EXPECT_EQ(moved.Observer(), &static_cast<IConfigReaderObserver &>(chip));

    Provider assigned("b.zmd");
    assigned = std::move(moved);
    EXPECT_EQ(assigned.Source(), "a.zmd");
    EXPECT_EQ(assigned.ElementObserver(), &static_cast<IConfigReaderElementObserver &>(chip));
    // NOLINTNEXTLINE(bugprone-use-after-move): what stays is part of the contract
    EXPECT_EQ(moved.Observer(), &static_cast<IConfigReaderObserver &>(chip));
}

TEST(CBaseMetadataProvider, is_a_provider_first_and_a_reader_second)
{
    Provider object("");
    const auto * const bytes = reinterpret_cast<const char *>(&object);
    const auto * const provider =
        reinterpret_cast<const char *>(static_cast<const IMetadataProvider *>(&object));
    const auto * const reader = reinterpret_cast<const char *>(static_cast<const IConfigReader *>(&object));
    EXPECT_EQ(provider, bytes);
    EXPECT_EQ(reader, bytes + sizeof(void *));
    EXPECT_EQ(dynamic_cast<IConfigReader *>(static_cast<IMetadataProvider *>(&object)), &object);
}

}   // namespace
}   // namespace VrexZynConfigTools
