/// The manual and the front page: what they show is what the tool prints.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

/// A command of the manual and what it prints there. "..." stands for anything: on a line of its own for any number of
/// lines, at the end of a line for its rest.
struct Example
{
    std::string mCommand;
    std::vector<std::string> mLines;
};

std::vector<Example> ExamplesOf(const std::string & manual)
{
    std::vector<Example> examples;
    bool isInConsole = false;
    for (const std::string & line : LinesOf(manual)) {
        if (line.rfind("```", 0) == 0)
            isInConsole = line == "```console";
        else if (isInConsole && line.rfind("$ ", 0) == 0)
            examples.push_back({ line.substr(2), {} });
        else if (isInConsole)
            examples.back().mLines.push_back(line);
    }
    return examples;
}

bool LineMatches(const std::string & expected, const std::string & line)
{
    const auto rest = expected.find("...");
    const bool isOpen = rest != std::string::npos && rest + 3 == expected.size();
    return isOpen ? line.compare(0, rest, expected, 0, rest) == 0 : line == expected;
}

using Lines = std::vector<std::string>::const_iterator;

bool LinesMatch(Lines expected, Lines expectedEnd, Lines line, Lines end)
{
    if (expected == expectedEnd)
        return line == end;
    if (*expected == "...")
        return LinesMatch(expected + 1, expectedEnd, line, end) ||
               (line != end && LinesMatch(expected, expectedEnd, line + 1, end));
    return line != end && LineMatches(*expected, *line) && LinesMatch(expected + 1, expectedEnd, line + 1, end);
}

}   // namespace

class Manual : public testing::TestWithParam<const char *>
{};

// A shell of its own for each command; what one exports, the later ones have too.
TEST_P(Manual, shows_what_the_tool_prints)
{
    const CTempFolder folder;
    const std::filesystem::path source = SOURCE_DIR;
    std::filesystem::create_directory_symlink(source / "samples", folder.Path() / "samples");
    const std::string path = std::filesystem::path(TOOL).parent_path().string() + ":/usr/bin:/bin";

    const std::vector<Example> examples = ExamplesOf(ContentOf(source / GetParam()));
    ASSERT_FALSE(examples.empty());
    std::string exports;
    for (const Example & example : examples) {
        const std::string command =
            "cd " + folder.Path().string() + " && { " + exports + example.mCommand + "\n} 2>&1";
        const ToolResult result = RunTool(
            { .mArguments = { "-c", command }, .mEnvironment = { { "PATH", path } }, .mProgram = "/bin/sh" });
        const std::vector<std::string> lines = LinesOf(result.mOut);
        EXPECT_TRUE(LinesMatch(example.mLines.begin(), example.mLines.end(), lines.begin(), lines.end()))
            << "$ " << example.mCommand << '\n'
            << result.mOut;
        if (example.mCommand.rfind("export ", 0) == 0)
            exports += example.mCommand + '\n';
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, Manual, testing::Values("docs/zynconfig.md", "README.md"),
    [](const testing::TestParamInfo<const char *> & each) {
        return std::string(each.param) == "README.md" ? "front_page" : "manual";
    });

}   // namespace zynconfig::test
