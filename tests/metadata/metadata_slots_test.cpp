#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <support/slots.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

using support::SlotAfter;
using support::SlotOf;

template <typename ResultT, typename ClassT>
using Getter = ResultT (ClassT::*)() const;

// Taking each address with its full type also pins results and constness.

TEST(Slots, IMetadata_from_the_uid_to_the_units)
{
    EXPECT_EQ(SlotOf(Getter<int, IMetadata>{ &IMetadata::Uid }), 0);
    EXPECT_EQ(SlotOf(Getter<std::uint32_t, IMetadata>{ &IMetadata::PsId }), 1);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Name }), 2);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Label }), 3);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Category }), 4);
    EXPECT_EQ(SlotOf(Getter<bool, IMetadata>{ &IMetadata::IsInternal }), 5);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Format }), 6);
    EXPECT_EQ(SlotOf(Getter<std::int64_t, IMetadata>{ &IMetadata::Min }), 7);
    EXPECT_EQ(SlotOf(Getter<std::int64_t, IMetadata>{ &IMetadata::Max }), 8);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Oid }), 9);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::InternalType }), 10);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Units }), 11);
}

TEST(Slots, IMetadata_from_the_array_to_the_hash)
{
    EXPECT_EQ(SlotOf(Getter<bool, IMetadata>{ &IMetadata::IsArray }), 12);
    EXPECT_EQ(SlotOf(Getter<std::int64_t, IMetadata>{ &IMetadata::ArrayMinLength }), 13);
    EXPECT_EQ(SlotOf(Getter<std::int64_t, IMetadata>{ &IMetadata::ArrayMaxLength }), 14);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::TableName }), 15);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Description }), 16);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::DescriptionInternal }), 17);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::SourceReference }), 18);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::SourceDefault }), 19);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::AccessRights }), 20);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Temporality }), 21);
    EXPECT_EQ(SlotOf(Getter<std::string, IMetadata>{ &IMetadata::Hash }), 22);
}

TEST(Slots, IMetadata_from_the_type_to_the_destructor)
{
    EXPECT_EQ(SlotOf(Getter<MetadataTypeEnum, IMetadata>{ &IMetadata::MetadataType }), 23);
    EXPECT_EQ(SlotOf(Getter<IMetadataDetail *, IMetadata>{ &IMetadata::Details }), 24);
    EXPECT_EQ(SlotOf(Getter<bool, IMetadata>{ &IMetadata::IsValid }), 25);
    EXPECT_EQ(SlotOf(Getter<std::uint32_t, IMetadata>{ &IMetadata::NumIndices }), 26);
    EXPECT_EQ(SlotOf<CTableIndex *(std::uint16_t) const>(&IMetadata::TableIndex), 27);
    EXPECT_EQ(SlotOf<std::string(const std::string &) const>(&IMetadata::ToString), 28);
    EXPECT_EQ(SlotOf<void(IMetadataInspectorObserver &) const>(&IMetadata::Inspect), 29);
    EXPECT_EQ(SlotAfter<IMetadata>(), 32);
    EXPECT_EQ(SlotAfter<CMetadata>(), 32);   // a record adds none
}

TEST(Slots, IMetadataDetail)
{
    EXPECT_EQ(SlotOf<const CStructField *(const std::string &)>(&IMetadataDetail::GetStructField), 0);
    EXPECT_EQ(SlotOf<const std::vector<const CStructField *> *()>(&IMetadataDetail::GetStructFields), 1);
    EXPECT_EQ((SlotOf<const std::map<std::string, int> *()>(&IMetadataDetail::GetEnums)), 2);
    EXPECT_EQ(SlotOf<std::string(const std::string &)>(&IMetadataDetail::ToString), 3);
    EXPECT_EQ(SlotOf<void(IMetadataInspectorObserver &)>(&IMetadataDetail::Inspect), 4);
    EXPECT_EQ(SlotAfter<IMetadataDetail>(), 7);
}

TEST(Slots, the_details_add_their_type_behind_the_destructor)
{
    EXPECT_EQ(SlotOf<MetadataTypeEnum()>(&CMetadataDetailSimple::MetadataType), 7);
    EXPECT_EQ(SlotAfter<CMetadataDetailSimple>(), 8);
    EXPECT_EQ(SlotAfter<CMetadataDetailEnum>(), 8);
    EXPECT_EQ(SlotAfter<CMetadataDetailStruct>(), 8);
}

TEST(Slots, a_field_has_its_destructor_first)
{
    EXPECT_EQ(SlotOf<void(IMetadataInspectorObserver &) const>(&CStructField::Inspect), 2);
}

TEST(Slots, IMetadataLayoutInspectorObserver)
{
    using Observer = IMetadataLayoutInspectorObserver;
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&Observer::StartElement), 0);
    EXPECT_EQ(SlotOf<void()>(&Observer::EndElement), 1);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&Observer::StartStruct), 2);
    EXPECT_EQ(SlotOf<void()>(&Observer::EndStruct), 3);
    EXPECT_EQ(SlotOf<void()>(&Observer::StartArrayItem), 4);
    EXPECT_EQ(SlotOf<void()>(&Observer::EndArrayItem), 5);
    EXPECT_EQ(SlotAfter<Observer>(), 8);
}

TEST(Slots, IMetadataInspectorObserver)
{
    using Observer = IMetadataInspectorObserver;
    EXPECT_EQ(SlotOf<void(const CTableIndex &)>(&Observer::IntIndex), 8);
    EXPECT_EQ(SlotOf<void(const CTableIndex &)>(&Observer::EnumIndex), 9);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&Observer::Int), 10);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&Observer::String), 11);
    EXPECT_EQ(SlotOf<void(const IMetadata &)>(&Observer::Enum), 12);
    EXPECT_EQ(SlotOf<bool()>(&Observer::InspectDetailAgain), 13);
    EXPECT_EQ((SlotOf<void(const std::string &, int)>(&Observer::SetContextInfo)), 14);
    EXPECT_EQ((SlotOf<void(const std::string &, const std::string &)>(&Observer::SetContextInfo)), 15);
    EXPECT_EQ(SlotAfter<Observer>(), 16);
}

TEST(Slots, ISubsystemInfo)
{
    using Info = ISubsystemInfo;
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Name }), 0);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Version }), 1);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Alias }), 2);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Layer }), 3);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Description }), 4);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::BuildDate }), 5);
    EXPECT_EQ(SlotOf(Getter<const std::string, Info>{ &Info::Variant }), 6);
    EXPECT_EQ(SlotAfter<Info>(), 9);
    EXPECT_EQ(SlotAfter<CSubsystemInfo>(), 9);
}

TEST(Slots, the_interfaces_are_pure_and_have_virtual_destructors)
{
    static_assert(std::is_abstract_v<IMetadata> && std::has_virtual_destructor_v<IMetadata>);
    static_assert(std::is_abstract_v<IMetadataDetail> && std::has_virtual_destructor_v<IMetadataDetail>);
    static_assert(std::is_abstract_v<ISubsystemInfo> && std::has_virtual_destructor_v<ISubsystemInfo>);
    static_assert(std::has_virtual_destructor_v<IMetadataLayoutInspectorObserver>);
    static_assert(std::is_base_of_v<IMetadataLayoutInspectorObserver, IMetadataInspectorObserver>);
    static_assert(std::is_base_of_v<CMetadataDetailSimple, CMetadataDetailEnum>);
    static_assert(std::is_base_of_v<CMetadataDetailSimple, CMetadataDetailStruct>);
}

}   // namespace
}   // namespace VrexZynConfigTools
