// The factory of metadata providers when memory runs out.

#include <configtools/metadataprovider.h>
#include <configtools/metadataproviderfactory.h>

#include <support/allocations.h>
#include <support/framework_errors.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::FailEachAllocation;
using support::ModuleFolder;

class ProvidersWithoutMemory : public testing::Test
{
protected:
    ProvidersWithoutMemory() { mFolder.With("alpha").With("defaultsprovider"); }
    ~ProvidersWithoutMemory() override { Factory().Release(); }

    static CMetadataProviderFactory & Factory() { return CMetadataProviderFactory::Ref(); }

    const support::FrameworkErrors mErrors;
    ModuleFolder mFolder;
    const std::string mPath = mFolder.Path();
};

TEST_F(ProvidersWithoutMemory, a_load_that_broke_off_can_be_done_again)
{
    const auto failures = FailEachAllocation([&] { Factory().Load(mPath); }, [] {});
    EXPECT_GE(failures, 4U);
    EXPECT_EQ(Factory().Count(), 2U);
    Factory().Release();
    Factory().Load(mPath);
    EXPECT_EQ(Factory().Count(), 2U);
}

TEST_F(ProvidersWithoutMemory, a_provider_that_cannot_be_made_is_not_lost)
{
    Factory().Load(mPath);
    const std::string argument(100, 'x');
    std::unique_ptr<IMetadataProvider> provider;
    std::uint64_t granted = 0;
    for (; provider == nullptr && granted < 100; ++granted) {
        support::FailAllocationsAfter(granted);
        try {
            provider.reset(Factory().Create("defaults provider", argument));
        } catch (const std::bad_alloc &) {   // where the error's own text finds no room
        }
        support::LetAllocationsPass();
    }
    EXPECT_GE(granted, 4U);
    ASSERT_NE(provider, nullptr);
    EXPECT_EQ(provider->Systems().at(0), argument);
}

TEST_F(ProvidersWithoutMemory, names_already_there_stay)
{
    Factory().Load(mPath);
    std::vector<std::string> names{ "zebra", "ape" };
    FailEachAllocation(
        [&] { Factory().Providers(names); }, [&] { EXPECT_THAT(names, testing::ElementsAre("zebra", "ape")); });
    EXPECT_THAT(names, testing::ElementsAre("zebra", "ape", "alpha", "defaults provider"));
}

}   // namespace
}   // namespace VrexZynConfigTools
