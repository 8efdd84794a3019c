/// Runs of the tool beside plug-ins that stand in for the real ones, with a system that a fake repository knows by heart.

#ifndef TESTS_ZYNCONFIG_METADATARUN_H
#define TESTS_ZYNCONFIG_METADATARUN_H

#include <toolprocess.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace zynconfig::test {

class MetadataRun : public testing::Test
{
protected:
    using Json = nlohmann::json;

    static constexpr int WRONG_DATA = 1;

    /// Runs with a repository of this name, which tells the fake what to do.
    ToolResult Run(const std::vector<std::string> & arguments, const std::string & repository = "system.zmd",
        const std::string & columns = "")
    {
        std::vector<std::string> all = { "--plugin-dir", FAKE_PLUGIN_DIR, "--metadata", repository };
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunTool({ .mArguments = all, .mEnvironment = { { "COLUMNS", columns } } });
    }

    /// What a run that has to succeed prints as JSON.
    Json RunJson(std::vector<std::string> arguments)
    {
        arguments.emplace_back("--json");
        const ToolResult result = Run(arguments);
        EXPECT_EQ(result.mExitCode, 0) << result.mErr;
        EXPECT_EQ(result.mErr, "");
        return Json::parse(result.mOut);
    }

    /// Expects that nothing is printed but one error.
    void ExpectError(const std::vector<std::string> & arguments, const std::string & error,
        const std::string & repository = "system.zmd")
    {
        const ToolResult result = Run(arguments, repository);
        EXPECT_EQ(result.mExitCode, WRONG_DATA) << error;
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mErr, "zynconfig: error: " + error + '\n');
    }

    std::string File(const std::string & name, const std::string & orders)
    {
        return mFolder.File(name, orders);
    }

    CTempFolder mFolder;
};

}   // namespace zynconfig::test

#endif
