// The order of operations and of base classes at the plug-in boundary: a binary contract with what is built separately.

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <support/slots.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>

using namespace VrexZynConfigTools;
using support::SlotAfter;
using support::SlotOf;

namespace {

TEST(PluginBoundary, IConfigReader_has_its_slots)
{
    EXPECT_EQ(SlotOf(&IConfigReader::SetObserver), 0);
    EXPECT_EQ(SlotOf(&IConfigReader::SetElementObserver), 1);
    EXPECT_EQ(SlotOf(&IConfigReader::SetMetadataProvider), 2);
    EXPECT_EQ(SlotOf(&IConfigReader::Read), 3);
    EXPECT_EQ(SlotAfter<IConfigReader>(), 6);
}

TEST(PluginBoundary, IConfigReaderObserver_has_its_slots)
{
    EXPECT_EQ(SlotOf(&IConfigReaderObserver::OnReadStarted), 0);
    EXPECT_EQ(SlotOf(&IConfigReaderObserver::OnSubsystemFound), 1);
    EXPECT_EQ(SlotOf(&IConfigReaderObserver::OnSubsystemCompleted), 2);
    EXPECT_EQ(SlotOf(&IConfigReaderObserver::OnReadEnded), 3);
    EXPECT_EQ(SlotAfter<IConfigReaderObserver>(), 6);
}

TEST(PluginBoundary, IConfigReaderElementObserver_has_its_slots)
{
    EXPECT_EQ(SlotOf(&IConfigReaderElementObserver::OnElementFound), 0);
    EXPECT_EQ(SlotAfter<IConfigReaderElementObserver>(), 3);
}

TEST(PluginBoundary, IConfigWriter_has_its_slots)
{
    EXPECT_EQ(SlotOf(&IConfigWriter::PrepareWriter), 0);
    EXPECT_EQ(SlotOf(&IConfigWriter::StartWrite), 1);
    EXPECT_EQ(SlotOf(&IConfigWriter::EndWrite), 2);
    EXPECT_EQ(SlotOf(&IConfigWriter::StartSubsystem), 3);
    EXPECT_EQ(SlotOf(&IConfigWriter::EndSubsystem), 4);
    EXPECT_EQ(SlotOf(&IConfigWriter::StartElement), 5);
    EXPECT_EQ(SlotOf(&IConfigWriter::EndElement), 6);
    EXPECT_EQ(SlotOf(&IConfigWriter::WriteKeyId), 7);
    EXPECT_EQ(SlotOf(&IConfigWriter::WriteNamedData), 8);
    EXPECT_EQ(SlotOf(&IConfigWriter::WritePayload), 9);
    EXPECT_EQ(SlotAfter<IConfigWriter>(), 12);
}

TEST(PluginBoundary, IElementFactorySource_has_its_slots)
{
    EXPECT_EQ(SlotOf(&IElementFactorySource::NextInt), 0);
    EXPECT_EQ(SlotOf(&IElementFactorySource::NextString), 1);
    EXPECT_EQ(SlotOf(&IElementFactorySource::NextEnum), 2);
    EXPECT_EQ(SlotAfter<IElementFactorySource>(), 5);
}

TEST(PluginBoundary, IElementProvider_has_its_slots)
{
    using ByName = const CElement &(const std::string &, IConfigContext &) const;
    using ById = const CElement &(std::uint32_t, IConfigContext &) const;
    EXPECT_EQ(SlotOf<ByName>(&IElementProvider::Element), 0);
    EXPECT_EQ(SlotOf<ById>(&IElementProvider::Element), 1);
    EXPECT_EQ(SlotAfter<IElementProvider>(), 4);
}

/// The distance of a base class from the beginning of the object.
template <typename BaseT, typename DerivedT>
std::ptrdiff_t OffsetOf(DerivedT & object)
{
    return reinterpret_cast<const char *>(static_cast<BaseT *>(&object)) -
           reinterpret_cast<const char *>(&object);
}

TEST(PluginBoundary, CChipConfig_has_its_bases_in_order)
{
    CChipConfig chip;
    EXPECT_EQ(OffsetOf<IConfigReaderObserver>(chip), 0);
    EXPECT_LT(OffsetOf<IConfigReaderObserver>(chip), OffsetOf<IConfigReaderElementObserver>(chip));
    EXPECT_LT(OffsetOf<IConfigReaderElementObserver>(chip), OffsetOf<IWritable>(chip));
    EXPECT_LT(OffsetOf<IWritable>(chip), OffsetOf<IElementProvider>(chip));
}

TEST(PluginBoundary, CSubsystemConfig_has_its_bases_in_order)
{
    CZynContext context;
    CSubsystemConfig subsystem(context, nullptr);
    EXPECT_EQ(OffsetOf<IConfigReaderElementObserver>(subsystem), 0);
    EXPECT_LT(OffsetOf<IConfigReaderElementObserver>(subsystem), OffsetOf<IWritable>(subsystem));
}

// Each interface can be default-constructed and assigned, which does nothing, and is destroyed through a pointer to it.
template <typename InterfaceT>
constexpr bool IS_AN_INTERFACE = std::is_abstract_v<InterfaceT> && std::has_virtual_destructor_v<InterfaceT> &&
    std::is_copy_assignable_v<InterfaceT>;
static_assert(IS_AN_INTERFACE<IConfigReader> && IS_AN_INTERFACE<IConfigReaderObserver> &&
              IS_AN_INTERFACE<IConfigReaderElementObserver> && IS_AN_INTERFACE<IConfigWriter> &&
              IS_AN_INTERFACE<IElementFactorySource> && IS_AN_INTERFACE<IElementProvider>);

}   // namespace
