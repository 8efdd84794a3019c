/// What a device doesn't give back: the compiler, `describe`, defaults and a real way into an image and back agree.

#include <toolprocess.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A field, a value of it that a device may lose, and whether it does.
struct Case
{
    std::string mName;
    std::string mField;   // without its name
    std::string mValue;
    bool mIsLost;
};

const std::vector<Case> & Cases()
{
    static const std::vector<Case> CASES{
        { "Kind", R"(type = "enum", position = 0, width = 16, values = { A = 0, B = 1 })", "\"B\"", false },
        { "Trim", R"(type = "int8", array = 2, position = 16)", "[-1, 2]", false },
        { "Label", R"(type = "string", length = [0, 4], position = 32, width = 32)", "\"ab\"", false },
        { "Total", R"(type = "uint64", position = 64)", "5", true },
        { "Words", R"(type = "integer", position = 132, width = 80)", "7", false },
        { "Crossing", R"(type = "uint16", position = 232, width = 12)", "4095", true },
    };
    return CASES;
}

constexpr char HEAD[] = R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
[[subsystem]]
name = "bt"
)";

class StructLosses : public testing::Test
{
protected:
    /// Metadata of a struct with all the fields.
    std::string Source(const std::string & defaults = "") const
    {
        std::string fields;
        for (const Case & each : Cases())
            fields += "{ name = \"" + each.mName + "\", " + each.mField + " },\n";
        return std::string(HEAD) + "[[subsystem.key]]\nid = 1\nname = \"S\"\ntype = \"struct\"\n" + defaults +
               "field = [\n" + fields + "]\n";
    }

    ToolResult Compile(const std::string & source)
    {
        return RunTool({ { "metadata", "compile", mFolder.File("system.toml", source), "-o", mSystem } });
    }

    ToolResult Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), { "--metadata", mSystem });
        return RunTool({ arguments });
    }

    /// A value of the struct in which one field has its value, and all others are empty.
    static std::string Value(const std::string & field)
    {
        static const std::vector<std::string> EMPTY{ "\"A\"", "[0, 0]", "\"\"", "0", "0", "0" };
        std::string text;
        for (std::size_t place = 0; place < Cases().size(); ++place)
            text += (text.empty() ? "{ " : ", ") + Cases()[place].mName + " = " +
                    (Cases()[place].mName == field ? Cases()[place].mValue : EMPTY[place]);
        return text + " }";
    }

    /// In a default a number of more than 64 bits is a list of its words.
    static std::string Default(const std::string & field)
    {
        std::string value = Value(field);
        const std::size_t number = value.find("Words = ") + std::string("Words = ").size();
        return value.replace(number, 1, '[' + value.substr(number, 1) + ", 0, 0, 0, 0]");
    }

    std::string Text(const std::string & field)
    {
        return mFolder.File("s.toml",
            "chip = \"c\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"eeprom\"\nstore = 1\n[[subsystem.key]]\n"
            "name = \"S\"\nvalue = " +
                Value(field) + '\n');
    }

    CTempFolder mFolder;
    const std::string mSystem = mFolder.File("system.zmd");
    const std::string mImage = mFolder.File("s.zimg");
};

}   // namespace

TEST_F(StructLosses, are_the_same_for_the_compiler_and_describe)
{
    const std::string warnings = Compile(Source()).mErr;
    const Json fields = Json::parse(Run({ "describe", "S", "--json" }).mOut)["struct"]["fields"];
    for (std::size_t place = 0; place < Cases().size(); ++place) {
        const Case & each = Cases()[place];
        EXPECT_EQ(warnings.find("doesn't carry \"" + each.mName + '"') != std::string::npos, each.mIsLost)
            << warnings;
        EXPECT_EQ(fields[place]["carried_back"], !each.mIsLost) << fields[place];
    }
}

TEST_F(StructLosses, are_refused_by_the_writer_of_images_and_nothing_else_is)
{
    Compile(Source());
    for (const Case & each : Cases()) {
        const std::string text = Text(each.mName);
        const ToolResult result = Run({ "convert", text, "-o", mImage });
        EXPECT_EQ(result.mExitCode, each.mIsLost ? 1 : 0) << each.mName << result.mErr;
        EXPECT_EQ(std::filesystem::exists(mImage), !each.mIsLost) << each.mName;
        if (each.mIsLost) {
            EXPECT_THAT(result.mErr,
                HasSubstr("key 1 (S): " + each.mName + ": the value " + each.mValue + " comes back as "));
            continue;
        }
        EXPECT_EQ(Run({ "get", "S", mImage }).mOut, Run({ "get", "S", text }).mOut);
        EXPECT_EQ(Run({ "get", "S", mImage, "--json" }).mOut, Run({ "get", "S", text, "--json" }).mOut);
        std::filesystem::remove(mImage);
    }
}

TEST_F(StructLosses, are_warnings_where_no_value_is_checked)
{
    Compile(Source());
    const ToolResult result = Run({ "convert", Text("Total"), "-o", mImage, "--context", "nodatacheck=true" });
    EXPECT_THAT(
        result.mErr, HasSubstr("key 1 (S): Total: the value 5 comes back as 0, as a field of exactly 64 bits"));
    EXPECT_THAT(result.mErr, Not(HasSubstr("error")));
    EXPECT_TRUE(std::filesystem::exists(mImage));
}

TEST_F(StructLosses, of_a_default_are_errors_at_its_place_and_nothing_else_is)
{
    const std::string nothing = mFolder.File("nothing.toml", "chip = \"c\"\n");
    for (const Case & each : Cases()) {
        const ToolResult result = Compile(Source("default = " + Default(each.mName) + '\n'));
        EXPECT_EQ(result.mExitCode, each.mIsLost ? 1 : 0) << each.mName << result.mErr;
        if (each.mIsLost) {
            const std::size_t column =
                std::string("default = ").size() + Default(each.mName).find(each.mValue) + 1;
            EXPECT_THAT(
                result.mErr, HasSubstr("system.toml:13:" + std::to_string(column) + ": error: \"" + each.mName +
                                       "\": the value " + each.mValue + " comes back as "));
        } else {
            EXPECT_EQ(Run({ "get", "S", nothing }).mOut, Run({ "get", "S", Text(each.mName) }).mOut)
                << each.mName;
        }
    }
}

}   // namespace zynconfig::test
