// How programs that use the library begin and end.

#include "run_program.h"

#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace VrexZynConfigTools;
using support::ModuleFolder;
using support::ProgramEnd;
using support::RunProgram;
using testing::HasSubstr;

namespace {

/// A folder with modules of every fate: kept, unloaded, refused, replaced.
class Plugins : public ModuleFolder
{
public:
    Plugins()
    {
        With("storereader").With("storemanager").With("alpha").With("no_name").With("wrong_signature");
        With("twin", "twin1.zpm").With("other_twin", "twin2.zpm");
    }
};

/// The lines that a static tool prints before and after its way out of main.
const std::string BEFORE = "error before main\nnull\ninvalid\nnot valid\n"
                           "+alpha\n+no_name\n-no_name\n+twin\n+other_twin\n+wrong_signature\n2 stores\n";

}   // namespace

TEST(AToolWithStaticHolders, ends_cleanly_when_main_returns)
{
    const Plugins plugins;
    const ProgramEnd end = RunProgram({ STATIC_HOLDERS_TOOL, plugins.Path(), "return" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    EXPECT_EQ(end.mOutput.substr(0, BEFORE.size()), BEFORE);
    EXPECT_THAT(end.mOutput, HasSubstr("\nerror after main\n"));
}

TEST(AToolWithStaticHolders, ends_cleanly_by_exit)
{
    const Plugins plugins;
    const ProgramEnd end = RunProgram({ STATIC_HOLDERS_TOOL, plugins.Path(), "exit" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    EXPECT_THAT(end.mOutput, HasSubstr("\nerror after main\n"));
}

TEST(AToolWithStaticHolders, ends_cleanly_without_plug_ins)
{
    const ModuleFolder empty;
    const ProgramEnd end = RunProgram({ STATIC_HOLDERS_TOOL, empty.Path(), "return" });
    EXPECT_EQ(end.mExitCode, 3) << end.mOutput;
    EXPECT_THAT(end.mOutput, HasSubstr("\nerror after main\n"));
}

TEST(AToolWithAProvider, ends_while_the_default_values_still_have_the_code_of_their_module)
{
    ModuleFolder folder;
    folder.With("defaultsprovider");
    const std::string begin = "+defaultsprovider\n+element\nvolume 5\nvolume 5\n";
    // A module's own static objects came last and so go first.
    const std::string end = "-defaultsprovider\n-provider\nthe tool ends with 1 modules\n-element\n";
    for (const char * const way : { "return", "exit" }) {
        const ProgramEnd tool = RunProgram({ PROVIDER_HOLDER_TOOL, folder.Path(), way });
        EXPECT_EQ(tool.mExitCode, 0) << way;
        EXPECT_EQ(tool.mOutput, begin + end) << way;
    }
}

TEST(AToolWithAProvider, ends_cleanly_after_its_provider)
{
    ModuleFolder folder;
    folder.With("defaultsprovider");
    const ProgramEnd tool = RunProgram({ PROVIDER_HOLDER_TOOL, folder.Path(), "delete" });
    EXPECT_EQ(tool.mExitCode, 0) << tool.mOutput;
    EXPECT_THAT(tool.mOutput,
        HasSubstr("volume 5\n-provider\n-defaultsprovider\nthe tool ends with 1 modules\n-element\n"));
}

TEST(AToolWithAProvider, ends_cleanly_after_its_module_if_the_default_values_are_of_library_classes)
{
    ModuleFolder folder;
    folder.With("defaultsprovider");
    const ProgramEnd tool = RunProgram({ PROVIDER_HOLDER_TOOL, folder.Path(), "release" });
    EXPECT_EQ(tool.mExitCode, 0) << tool.mOutput;
    EXPECT_EQ(tool.mOutput, "+defaultsprovider\nvolume 6\nvolume 6\n-provider\n-defaultsprovider\n"
                            "the tool ends with 0 modules\n");
}

TEST(AToolWithAProvider, ends_cleanly_without_plug_ins)
{
    const ModuleFolder empty;
    const ProgramEnd tool = RunProgram({ PROVIDER_HOLDER_TOOL, empty.Path(), "return" });
    EXPECT_EQ(tool.mExitCode, 3) << tool.mOutput;
    EXPECT_EQ(tool.mOutput, "the tool ends with 0 modules\n");
}

TEST(TheLibrary, destroys_the_factory_after_everything_else_and_can_tell_so)
{
    const Plugins plugins;
    const ProgramEnd end = RunProgram({ STATIC_HOLDERS_TOOL, plugins.Path(), "traced" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    const std::string chip = "VrexZynConfigTools::CChipConfig::~CChipConfig\n";
    const std::string element = "VrexZynConfigTools::CElement::~CElement\n";
    const std::string factory = "plugin::CPluginManager::~CPluginManager\n"
                                "VrexZynConfigTools::CReaderWriterFactory::~CReaderWriterFactory\n";
    EXPECT_THAT(end.mOutput, HasSubstr(chip));
    EXPECT_THAT(end.mOutput, HasSubstr(element));
    ASSERT_GE(end.mOutput.size(), factory.size());
    EXPECT_EQ(end.mOutput.substr(end.mOutput.size() - factory.size()), factory) << end.mOutput;
}

TEST(TheLibrary, bears_both_orders_on_the_linker_s_line)
{
    const Plugins plugins;
    for (const char * const tool : { LIBRARY_FIRST_TOOL, LIBRARY_LAST_TOOL }) {
        const ProgramEnd end = RunProgram({ tool, plugins.Path() });
        EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
        EXPECT_EQ(end.mOutput, "4 modules\nreader let go\n") << tool;
    }
}

TEST(TheLibrary, can_be_opened_late_and_left_open)
{
    const Plugins plugins;
    const ProgramEnd end = RunProgram({ LATE_LOADER_TOOL, LIBRARY, HOLDER, plugins.Path(), "keep" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    EXPECT_EQ(end.mOutput, "4 modules\nreader let go\n");
}

TEST(TheLibrary, can_be_opened_late_and_closed_while_modules_are_loaded)
{
    const Plugins plugins;
    const ProgramEnd end = RunProgram({ LATE_LOADER_TOOL, LIBRARY, HOLDER, plugins.Path(), "close" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    EXPECT_EQ(end.mOutput, "4 modules\nreader let go\nclosed\n");
}

TEST(TheLibrary, can_be_opened_late_and_closed_without_any_module)
{
    const ModuleFolder empty;
    const ProgramEnd end = RunProgram({ LATE_LOADER_TOOL, LIBRARY, HOLDER, empty.Path(), "close" });
    EXPECT_EQ(end.mExitCode, 0) << end.mOutput;
    EXPECT_EQ(end.mOutput, "0 modules\nnothing held\nclosed\n");
}
