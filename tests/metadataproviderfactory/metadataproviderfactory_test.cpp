#include <configtools/metadataproviderfactory.h>

#include <configtools/metadataprovider.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>

#include <support/framework_errors.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace VrexZynConfigTools;
using support::FrameworkErrors;
using support::ModuleFolder;
using testing::ElementsAre;
using testing::IsNull;
using testing::NotNull;

static_assert(std::is_copy_assignable_v<CMetadataProviderFactory>);
static_assert(!std::is_copy_constructible_v<CMetadataProviderFactory>);
static_assert(!std::is_default_constructible_v<CMetadataProviderFactory>);

namespace {

std::vector<std::string> & Events()
{
    static auto * const events = new std::vector<std::string>;   // modules may go after every static object
    return *events;
}

}   // namespace

extern "C" __attribute__((visibility("default"))) void OnModuleEvent(const char * event)
{
    Events().push_back(event);
}

namespace {

/// The factory before a load; after the test it is so again.
class ProviderFactory : public testing::Test
{
protected:
    ProviderFactory() { Events().clear(); }
    ~ProviderFactory() override { Factory().Release(); }

    static CMetadataProviderFactory & Factory() { return CMetadataProviderFactory::Ref(); }

    static std::vector<std::string> Names()
    {
        std::vector<std::string> names;
        Factory().Providers(names);
        return names;
    }
    static std::unique_ptr<IMetadataProvider> Create(
        const std::string & plugIn, const std::string & argument = "")
    {
        return std::unique_ptr<IMetadataProvider>(Factory().Create(plugIn, argument));
    }

    /// Expects that the creation fails, in the one way there is.
    void ExpectNotFound(const std::string & plugIn, const std::string & argument = "")
    {
        mErrors.Clear();
        EXPECT_THAT(Create(plugIn, argument), IsNull()) << plugIn << " " << argument;
        EXPECT_EQ(mErrors.Text(), plugIn + " not found") << argument;
        EXPECT_EQ(mErrors.Code(), 0) << argument;
    }

    FrameworkErrors mErrors;
    ModuleFolder mFolder;
};

}   // namespace

TEST_F(ProviderFactory, has_nothing_before_a_load)
{
    EXPECT_EQ(Factory().Count(), 0U);
    EXPECT_THAT(Names(), ElementsAre());
    ExpectNotFound("defaults provider");
    ExpectNotFound("");
}

TEST_F(ProviderFactory, reports_a_folder_without_modules_and_can_load_another)
{
    Factory().Load(mFolder.Path());
    EXPECT_EQ(mErrors.Text(), "no plug-in found in " + mFolder.Path());
    EXPECT_EQ(mErrors.Code(), 0);
    EXPECT_EQ(Factory().Count(), 0U);

    mErrors.Clear();
    ModuleFolder other;
    other.With("alpha");
    Factory().Load(other.Path());
    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_THAT(Names(), ElementsAre("alpha"));
}

TEST_F(ProviderFactory, reports_a_missing_folder_as_the_caller_wrote_it)
{
    for (const std::string & folder : { mFolder.PathOf("missing"), mFolder.PathOf("missing//"), std::string() })
    {
        Factory().Load(folder);
        EXPECT_EQ(mErrors.Text(), "no plug-in found in " + folder);
    }
    mFolder.With("alpha");
    Factory().Load(mFolder.Path() + "/");
    EXPECT_EQ(Factory().Count(), 1U);
}

TEST_F(ProviderFactory, reports_a_folder_whose_modules_are_not_acceptable)
{
    mFolder.With("wrong_signature").With("no_name").WithFile("text.zpm", "no module");
    Factory().Load(mFolder.Path());
    EXPECT_EQ(mErrors.Text(), "no plug-in found in " + mFolder.Path());
    EXPECT_EQ(Factory().Count(), 0U);
}

TEST_F(ProviderFactory, searches_one_folder_only_for_its_own_pattern)
{
    mFolder.With("alpha").With("beta", "beta.so").WithFolder("sub").With("twin", "sub/twin.zpm");
    Factory().Load(mFolder.Path());
    EXPECT_THAT(Names(), ElementsAre("alpha"));
}

TEST_F(ProviderFactory, ignores_a_further_load)
{
    mFolder.With("alpha");
    Factory().Load(mFolder.Path());
    ModuleFolder other;
    other.With("beta");
    Events().clear();
    Factory().Load(other.Path());
    Factory().Load(other.PathOf("missing"));

    EXPECT_FALSE(mErrors.IsSet());
    EXPECT_THAT(Names(), ElementsAre("alpha"));
    EXPECT_THAT(Events(), ElementsAre());
}

TEST_F(ProviderFactory, creates_a_new_provider_each_time_with_the_argument_untouched)
{
    mFolder.With("defaultsprovider");
    Factory().Load(mFolder.Path());
    const std::string argument("any\0 text", 9);
    const auto first = Create("defaults provider", argument);
    const auto second = Create("defaults provider", "other");

    ASSERT_THAT(first, NotNull());
    ASSERT_THAT(second, NotNull());
    EXPECT_THAT(first->Systems(), ElementsAre(argument));
    EXPECT_THAT(second->Systems(), ElementsAre("other"));
    EXPECT_TRUE(first->Check());
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(ProviderFactory, gives_providers_whose_other_side_shows_by_a_dynamic_cast)
{
    mFolder.With("defaultsprovider");
    Factory().Load(mFolder.Path());
    const auto provider = Create("defaults provider");
    EXPECT_THAT(dynamic_cast<IConfigReader *>(provider.get()), NotNull());
    EXPECT_THAT(dynamic_cast<CBaseMetadataProvider *>(provider.get()), NotNull());
    EXPECT_THAT(dynamic_cast<IConfigWriter *>(provider.get()), IsNull());
}

TEST_F(ProviderFactory, reports_an_unknown_name)
{
    mFolder.With("defaultsprovider");
    Factory().Load(mFolder.Path());
    for (const char * const name : { "defaultsprovider", "Defaults provider", "defaults", "" })
        ExpectNotFound(name);
}

TEST_F(ProviderFactory, reports_a_module_without_the_entry_point)
{
    mFolder.With("alpha").With("storereader");
    Factory().Load(mFolder.Path());
    ExpectNotFound("alpha");
    ExpectNotFound("store reader");
}

TEST_F(ProviderFactory, reports_a_creator_that_returns_null_or_throws)
{
    mFolder.With("failing_providers");
    Factory().Load(mFolder.Path());
    for (const char * const argument : { "null", "null and error", "number", "memory", "what" })
        ExpectNotFound("failing providers", argument);
    EXPECT_EQ(Factory().Count(), 1U);
}

TEST_F(ProviderFactory, appends_the_names_in_byte_order_behind_those_that_are_there)
{
    mFolder.With("beta").With("alpha").With("beta_in_capitals").With("defaultsprovider").With("twin");
    Factory().Load(mFolder.Path());
    std::vector<std::string> names{ "zebra", "ape" };
    Factory().Providers(names);

    EXPECT_THAT(names, ElementsAre("zebra", "ape", "BETA", "alpha", "beta", "defaults provider", "twin"));
    EXPECT_EQ(Factory().Count(), 5U);
}

TEST_F(ProviderFactory, leaves_a_list_of_names_alone_where_it_has_none)
{
    std::vector<std::string> names{ "zebra", "ape" };
    const std::size_t capacity = names.capacity();
    Factory().Providers(names);
    EXPECT_THAT(names, ElementsAre("zebra", "ape"));
    EXPECT_EQ(names.capacity(), capacity);
}

TEST_F(ProviderFactory, makes_room_for_its_names_and_leaves_room_that_is_there)
{
    mFolder.With("alpha").With("beta").With("twin");
    Factory().Load(mFolder.Path());
    std::vector<std::string> names;
    Factory().Providers(names);
    EXPECT_GE(names.capacity(), 3U);

    std::vector<std::string> roomy{ "zebra" };
    roomy.reserve(100);
    const std::string * const first = roomy.data();
    Factory().Providers(roomy);
    EXPECT_EQ(roomy.data(), first);
    EXPECT_EQ(roomy.capacity(), 100U);
    EXPECT_EQ(roomy.size(), 4U);
}

TEST_F(ProviderFactory, names_two_modules_of_one_name_once)
{
    mFolder.With("twin").With("other_twin");
    Factory().Load(mFolder.Path());
    EXPECT_THAT(Names(), ElementsAre("twin"));
    EXPECT_EQ(Factory().Count(), 1U);
}

TEST_F(ProviderFactory, releases_its_modules)
{
    mFolder.With("defaultsprovider").With("alpha");
    Factory().Load(mFolder.Path());
    ASSERT_EQ(Factory().Count(), 2U);
    Factory().Release();

    EXPECT_EQ(Factory().Count(), 0U);
    EXPECT_THAT(Names(), ElementsAre());
    EXPECT_THAT(Events(), ElementsAre("+alpha", "+defaultsprovider", "-alpha", "-defaultsprovider"));
    ExpectNotFound("defaults provider");
}

TEST_F(ProviderFactory, can_load_again_after_a_release)
{
    mFolder.With("alpha");
    Factory().Load(mFolder.Path());
    Factory().Release();
    ModuleFolder other;
    other.With("defaultsprovider");
    Factory().Load(other.Path());

    EXPECT_THAT(Names(), ElementsAre("defaults provider"));
    EXPECT_THAT(Create("defaults provider"), NotNull());
}

TEST_F(ProviderFactory, can_be_released_when_nothing_is_loaded)
{
    Factory().Release();
    Factory().Release();
    EXPECT_EQ(Factory().Count(), 0U);
    EXPECT_FALSE(mErrors.IsSet());
}

TEST_F(ProviderFactory, deletes_a_provider_in_its_own_module)
{
    mFolder.With("defaultsprovider");
    Factory().Load(mFolder.Path());
    Create("defaults provider").reset();
    Factory().Release();
    EXPECT_THAT(Events(), ElementsAre("+defaultsprovider", "-provider", "-defaultsprovider"));
}

TEST_F(ProviderFactory, bears_a_module_that_calls_it_while_being_loaded)
{
    mFolder.With("alpha").With("provider_calling_back").With("twin");
    Factory().Load(mFolder.Path());
    EXPECT_THAT(Names(), ElementsAre("alpha", "provider calling back", "twin"));
}

TEST_F(ProviderFactory, bears_a_creator_that_calls_it)
{
    mFolder.With("provider_calling_back").With("defaultsprovider");
    Factory().Load(mFolder.Path());
    EXPECT_THAT(Create("provider calling back")->Systems(), ElementsAre("at last"));
    EXPECT_THAT(Create("provider calling back", "defaults provider")->Systems(), ElementsAre(""));
    ExpectNotFound("provider calling back", "missing");
}

TEST_F(ProviderFactory, can_be_assigned_to_itself)
{
    mFolder.With("alpha");
    Factory().Load(mFolder.Path());
    CMetadataProviderFactory & same = Factory();
    Factory() = same;
    EXPECT_THAT(Names(), ElementsAre("alpha"));
}

TEST_F(ProviderFactory, shares_a_folder_with_the_factory_of_readers_and_writers)
{
    mFolder.With("storereader").With("defaultsprovider");
    CReaderWriterFactory::Ref().Load(mFolder.Path());
    Factory().Load(mFolder.Path());
    EXPECT_THAT(Names(), ElementsAre("defaults provider", "store reader"));
    Factory().Release();

    // The other one still has its modules.
    EXPECT_THAT(Events(), ElementsAre("+defaultsprovider"));
    const std::unique_ptr<IConfigReader> reader(
        CReaderWriterFactory::Ref().CreateReader("store reader", "", nullptr));
    EXPECT_THAT(reader, NotNull());
}
