// The factory with one folder loaded, for all tests of this program: it loads once in the life of a process.

#include <configtools/chipconfig.h>
#include <configtools/elements.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <support/framework_errors.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

using namespace VrexZynConfigTools;
using support::FrameworkErrors;
using support::ModuleFolder;
using testing::IsNull;
using testing::NotNull;

static_assert(std::is_copy_assignable_v<CReaderWriterFactory>);
static_assert(!std::is_copy_constructible_v<CReaderWriterFactory>);
static_assert(!std::is_default_constructible_v<CReaderWriterFactory>);

namespace {

class LoadedFactory : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        ModuleFolder folder;   // a loaded module doesn't need its file any more
        folder.With("storereader").With("writeronly").With("storemanager").With("failing_creators");
        folder.With("alpha").With("wrong_signature").With("calling_back").WithFile("text.zpm", "no module");
        CReaderWriterFactory::Ref().Load(folder.Path());
    }

    static std::unique_ptr<IConfigReader> Reader(const std::string & name, const std::string & argument = "")
    {
        return std::unique_ptr<IConfigReader>(Factory().CreateReader(name, argument, nullptr));
    }
    static CReaderWriterFactory & Factory() { return CReaderWriterFactory::Ref(); }
    static bool ErrorStands() { return FrameworkErrors().IsSet(); }
};

CZynContext LayerOfBt(int layer)
{
    CZynContext context;
    context.SetSubsystemType(SUBSYSTEM_BT);
    context.SetLayerNumber(layer);
    return context;
}

}   // namespace

TEST_F(LoadedFactory, counts_the_modules_accepted)
{
    EXPECT_EQ(Factory().Count(), 6U);
}

TEST_F(LoadedFactory, knows_its_modules_by_exactly_their_plug_in_names)
{
    EXPECT_TRUE(Factory().Exists("writer only"));
    EXPECT_FALSE(Factory().Exists("Writer only"));
    EXPECT_FALSE(Factory().Exists("writeronly"));   // the file's name
    EXPECT_FALSE(Factory().Exists("writer onl"));
    EXPECT_FALSE(Factory().Exists(""));
    EXPECT_FALSE(Factory().Exists("wrong signature"));
}

TEST_F(LoadedFactory, ignores_a_further_load)
{
    ModuleFolder other;
    other.With("beta");
    Factory().Load(other.Path());
    EXPECT_FALSE(Factory().Exists("beta"));
    EXPECT_EQ(Factory().Count(), 6U);
}

TEST_F(LoadedFactory, bears_a_module_that_calls_it_while_being_loaded)
{
    EXPECT_TRUE(Factory().Exists("calling back"));
}

TEST_F(LoadedFactory, creates_a_reader_a_writer_and_a_store_manager)
{
    std::string kinds;
    const std::unique_ptr<IConfigWriter> writer(Factory().CreateWriter("writer only", "", &kinds));
    const std::unique_ptr<IStoreManager> manager(Factory().CreateStoreManager("store manager", "", nullptr));
    EXPECT_THAT(Reader("store reader"), NotNull());
    EXPECT_THAT(writer, NotNull());
    EXPECT_THAT(manager, NotNull());
}

TEST_F(LoadedFactory, hands_the_arguments_through_untouched)
{
    const std::string argument("any\0text", 8);
    std::string received;
    const std::unique_ptr<IConfigWriter> writer(Factory().CreateWriter("writer only", argument, &received));
    EXPECT_EQ(received, argument);
}

TEST_F(LoadedFactory, makes_a_new_object_on_each_call)
{
    EXPECT_NE(Reader("store reader"), Reader("store reader"));
}

TEST_F(LoadedFactory, gives_null_where_the_module_lacks_the_entry_point)
{
    EXPECT_TRUE(Factory().Exists("writer only"));
    EXPECT_THAT(Factory().CreateReader("writer only", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateStoreManager("writer only", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateWriter("store manager", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateReader("alpha", "", nullptr), IsNull());
    EXPECT_FALSE(ErrorStands());
}

TEST_F(LoadedFactory, gives_null_for_an_unknown_name)
{
    EXPECT_THAT(Factory().CreateReader("storereader", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateReader("Store reader", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateWriter("", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateStoreManager("missing", "", nullptr), IsNull());
    EXPECT_EQ(Factory().Count(), 6U);
    EXPECT_FALSE(ErrorStands());
}

TEST_F(LoadedFactory, gives_null_where_the_creator_returns_null_or_throws)
{
    EXPECT_THAT(Factory().CreateReader("failing creators", "null", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateReader("failing creators", "what", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateWriter("failing creators", "", nullptr), IsNull());
    EXPECT_THAT(Factory().CreateStoreManager("failing creators", "", nullptr), IsNull());
    EXPECT_FALSE(ErrorStands());
}

TEST_F(LoadedFactory, gives_objects_whose_other_sides_show_by_dynamic_casts)
{
    const auto reader = Reader("store reader");
    auto * const manager = dynamic_cast<IStoreManager *>(reader.get());
    ASSERT_THAT(manager, NotNull());
    EXPECT_EQ(manager->Stores(CNullContext::Ref()).size(), 2U);
    EXPECT_THAT(dynamic_cast<IConfigWriter *>(reader.get()), IsNull());

    const std::unique_ptr<IStoreManager> other(Factory().CreateStoreManager("store reader", "", nullptr));
    EXPECT_THAT(dynamic_cast<IConfigReader *>(other.get()), NotNull());
}

TEST_F(LoadedFactory, hands_the_text_to_a_store_manager_too)
{
    const std::unique_ptr<IStoreManager> manager(
        Factory().CreateStoreManager("store manager", "four", nullptr));
    const auto & stores = manager->Stores(CNullContext::Ref());
    ASSERT_EQ(stores.size(), 1U);
    EXPECT_EQ(stores.front()->StoreId(), 4U);
}

TEST_F(LoadedFactory, gives_readers_whose_stores_and_elements_become_layers)
{
    CChipConfig chip;
    const auto reader = Reader("store reader");
    reader->SetObserver(chip);
    CZynContext context;
    reader->Read(context);

    EXPECT_EQ(chip.Stores().size(), 2U);
    CZynContext otp = LayerOfBt(1);
    CZynContext eeprom = LayerOfBt(2);
    EXPECT_EQ(chip.Element(100, otp).ToString(), "7");
    EXPECT_EQ(chip.Element(100, eeprom).ToString(), "8");
    EXPECT_EQ(chip.Element("device element", eeprom).ToString(), "8");
}

TEST_F(LoadedFactory, gives_elements_whose_classes_are_the_library_s_own)
{
    CChipConfig chip;
    const auto reader = Reader("store reader");
    reader->SetObserver(chip);
    CZynContext context;
    reader->Read(context);

    CZynContext otp = LayerOfBt(1);
    const CElement & plain = chip.Element(100, otp);
    const CElement & own = chip.Element(101, otp);
    EXPECT_EQ(typeid(plain), typeid(CElementNumericArray));
    EXPECT_NE(typeid(own), typeid(CElementNumericArray));
    EXPECT_THAT(dynamic_cast<const CElementNumericArray *>(&own), NotNull());
    EXPECT_THAT(dynamic_cast<const CElementString *>(&own), IsNull());
    EXPECT_TRUE(own.IsValid());
}

TEST_F(LoadedFactory, gives_writers_that_tell_the_tool_s_payloads_apart)
{
    std::string kinds;
    const std::unique_ptr<IConfigWriter> writer(Factory().CreateWriter("writer only", "", &kinds));
    CUint32Payload number(5);
    CStringPayload text("text", false);
    CComplexPayload complex(PAYLOAD_COMPLEX);
    writer->WritePayload(number, CNullContext::Ref());
    writer->WritePayload(text, CNullContext::Ref());
    writer->WritePayload(complex, CNullContext::Ref());
    EXPECT_EQ(kinds, "uint32 unknown complex ");
}

TEST_F(LoadedFactory, carries_a_configuration_from_one_module_to_another)
{
    CChipConfig chip;
    const auto reader = Reader("store reader");
    reader->SetObserver(chip);
    CZynContext context;
    reader->Read(context);

    std::string kinds;
    const std::unique_ptr<IConfigWriter> writer(Factory().CreateWriter("writer only", "", &kinds));
    EXPECT_TRUE(chip.Write(*writer, context));
    EXPECT_EQ(kinds, "100:uint32 101:uint32 100:uint32 101:uint32 ");
}
