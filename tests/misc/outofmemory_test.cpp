// Each allocation of a listing and of a load fails in turn.

#include <misc/fileutil.h>
#include <misc/pluginmanager.h>

#include <messages/messages.h>

#include <support/allocations.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>
#include <string>

using namespace VrexZynConfigTools;
using plugin::CPluginManager;
using support::FailEachAllocation;
using support::ModuleFolder;
using testing::ElementsAre;
using Names = std::list<std::string>;

TEST(OutOfMemory, leaves_the_list_of_files_alone)
{
    ModuleFolder folder;
    folder.WithFile("a file with a long name.txt", "").WithFile("another file with a long name.txt", "");
    const std::string path = folder.Path();
    Names files = { "before" };
    const auto failures = FailEachAllocation(
        [&] { fileutil::GetFiles(path, "*.txt", files); }, [&] { EXPECT_THAT(files, ElementsAre("before")); });
    EXPECT_GT(failures, 5U);
    EXPECT_EQ(files.size(), 3U);
}

TEST(OutOfMemory, leaves_a_plug_in_manager_with_whole_records)
{
    ModuleFolder folder;
    folder.With("alpha").With("twin", "twin1.zpm").With("other_twin", "twin2.zpm").With("wrong_signature");
    const std::string path = folder.Path();
    CPluginManager manager("GetPlugInName", "GetPlugInSignature", "ZynConfigTool");
    ModuleFolder first;   // brings the libraries of the modules, whose static objects can't do without memory
    manager.Load(first.With("alpha").Path(), "*.zpm");
    const auto failures = FailEachAllocation([&] { manager.Load(path, "*.zpm"); },
        [&] {
            Names names;
            EXPECT_EQ(manager.ModulesName(names), manager.Count());
            for (const std::string & name : names) {
                ASSERT_NE(manager.GetModule(name), nullptr);
                EXPECT_EQ(manager.GetModule(name)->mName, name);
            }
        });
    EXPECT_GT(failures, 20U);
    EXPECT_EQ(manager.Count(), 2U);
}

TEST(OutOfMemory, leaves_the_list_of_names_alone)
{
    ModuleFolder folder;
    folder.With("alpha").With("beta");
    CPluginManager manager("GetPlugInName", "GetPlugInSignature", "ZynConfigTool");
    manager.Load(folder.Path(), "*.zpm");
    Names names = { "before" };
    FailEachAllocation([&] { manager.ModulesName(names); }, [&] { EXPECT_THAT(names, ElementsAre("before")); });
    EXPECT_THAT(names, ElementsAre("before", "alpha", "beta"));
}

TEST(OutOfMemory, leaves_the_error_that_stands)
{
    CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_UTILITIES, "", false);
    handler.SetErrorMsg(1, "the former error");
    short code = 0;
    std::string text;
    const auto check = [&] {
        ASSERT_TRUE(handler.GetErrorMsg(GROUP_UTILITIES, code, text));
        EXPECT_EQ(code, 1);
        EXPECT_EQ(text, "the former error");
    };
    const std::string longText(100, 'x');
    EXPECT_GT(FailEachAllocation([&] { handler.ModifyErrorMsg(0, longText, GROUP_UTILITIES); }, check), 0U);
    handler.SetErrorMsg(1, "the former error");
    EXPECT_GT(FailEachAllocation([&] { handler.SetErrorMsg(2, longText); }, check), 0U);
    handler.ClearError(GROUP_UTILITIES);
}
