/// `zynconfig show` with the real plug-in: the table, the JSON text, and that they agree.

#include <toolprocess.h>

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace {

using Json = nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char FACTORY[] = R"(chip = "demo"

[[subsystem]]
type = "bt"
device = "otp"
store = 1

[[subsystem.key]]
id = 100
name = "NAME"
type = "string"
value = "Speaker"

[[subsystem.key]]
id = 120
name = "LIMIT"
type = "uint16"
index = [3, 7]
value = 12

[[subsystem.key]]
id = 130
name = "MODE"
type = "enum"
value = { name = "FAST", number = -2 }

[[subsystem]]
type = "wlan"
device = "otp"
store = 1

[[subsystem.key]]
id = 100
name = "CHANNELS"
type = "uint8"
value = [1, 6, 11]

[[subsystem.key]]
id = 101
name = "BIG"
type = "uint64"
value = "0xffffffffffffffff"

[[subsystem.key]]
id = 102
name = "ADDRESS"
type = "octet_string"
value = "00ff0a"
)";

constexpr char USER[] = R"(chip = "demo"

[[subsystem]]
type = "bt"
device = "eeprom"
store = 1

[[subsystem.key]]
id = 100
name = "NAME"
type = "string"
value = "Küchenlautsprecher \" mit \\ und\nZeilenende"

[[subsystem.key]]
id = 120
name = "LIMIT"
type = "uint16"
index = [3, 8]
value = 13
)";

class Show : public testing::Test
{
protected:
    ToolResult ShowFiles(std::vector<std::string> arguments, const std::string & columns = "")
    {
        arguments.insert(arguments.begin(), "show");
        return RunTool({ .mArguments = arguments, .mEnvironment = { { "COLUMNS", columns } } });
    }

    CTempFolder mFolder;
    const std::string mFactory = mFolder.File("factory.toml", FACTORY);
    const std::string mUser = mFolder.File("user.toml", USER);
};

/// The list of keys in a table wide enough for it, a line each, with single blanks.
std::vector<std::string> KeyLines(const std::string & table)
{
    std::vector<std::string> lines;
    bool isInKeys = false;
    for (std::string line : LinesOf(table)) {
        if (isInKeys && line.empty())
            return lines;
        isInKeys = isInKeys || line.find("KEY") != std::string::npos;
        for (auto place = line.find("  "); place != std::string::npos; place = line.find("  "))
            line.erase(place, 1);
        if (isInKeys)
            lines.push_back(line);
    }
    return lines;
}

/// The same list, made of the JSON text.
std::vector<std::string> KeyLinesOf(const Json & root)
{
    std::vector<std::string> lines = { " KEY NAME LAYER VALUE" };
    std::string subsystem;
    for (const Json & key : root["keys"]) {
        if (key["subsystem"] != subsystem)
            lines.push_back(key["subsystem"]);
        subsystem = key["subsystem"];
        std::string head = ' ' + std::to_string(key["id"].get<std::uint32_t>());
        for (const Json & index : key["indices"])
            head += '.' + std::to_string(index.get<std::uint32_t>());
        head += ' ';
        std::string name;
        for (const Json & value : key["values"]) {
            head += value["name"] == name ? "" : value["name"].get<std::string>() + ' ';
            name = value["name"];
            lines.push_back(head + (value["winner"] ? "* " : "") + std::to_string(value["layer"].get<int>()) +
                            ' ' + value["device"].get<std::string>() + '.' +
                            std::to_string(value["store"].get<int>()) + ' ' + value["text"].get<std::string>());
            head = " ";
        }
    }
    return lines;
}

const Json & KeyOf(const Json & root, const std::string & subsystem, int id)
{
    for (const Json & key : root["keys"]) {
        if (key["subsystem"] == subsystem && key["id"] == id)
            return key;
    }
    throw std::runtime_error("no such key");
}

}   // namespace

TEST_F(Show, tells_layers_keys_and_winners)
{
    const ToolResult result = ShowFiles({ mFactory, mUser });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(result.mErr, IsEmpty());
    EXPECT_EQ(result.mOut, R"(Chip demo
Layers, from bottom to top:
   1  otp.1     bt, wlan
   2  eeprom.1  bt

  KEY      NAME        LAYER       VALUE
bt
  100      NAME        1 otp.1     "Speaker"
                     * 2 eeprom.1  "Küchenlautsprecher \" mit \\ und\nZeilenende"
  120.3.7  LIMIT     * 1 otp.1     12
  120.3.8  LIMIT     * 2 eeprom.1  13
  130      MODE      * 1 otp.1     FAST (-2)
wlan
  100      CHANNELS  * 1 otp.1     [1, 6, 11]
  101      BIG       * 1 otp.1     18446744073709551615
  102      ADDRESS   * 1 otp.1     00 ff 0a

* marks the value that holds.
)");
}

TEST_F(Show, does_not_depend_on_the_order_of_files_of_different_devices)
{
    EXPECT_EQ(ShowFiles({ mFactory, mUser }).mOut, ShowFiles({ mUser, mFactory }).mOut);
    EXPECT_EQ(ShowFiles({ mFactory, mUser, "--json" }).mOut, ShowFiles({ mUser, mFactory, "--json" }).mOut);
}

TEST_F(Show, numbers_stores_of_one_device_by_first_sight)
{
    std::string second = USER;
    second.replace(second.find("store = 1"), 9, "store = 2");
    const std::string other = mFolder.File("second.toml", second);
    EXPECT_THAT(ShowFiles({ mUser, other }).mOut, HasSubstr("   1  eeprom.1  bt\n   2  eeprom.2  bt\n"));
    EXPECT_THAT(ShowFiles({ other, mUser }).mOut, HasSubstr("   1  eeprom.2  bt\n   2  eeprom.1  bt\n"));
}

TEST_F(Show, json_has_the_documented_shape)
{
    const ToolResult result = ShowFiles({ mFactory, mUser, "--json" });
    EXPECT_EQ(result.mExitCode, 0);
    const Json root = Json::parse(result.mOut);
    EXPECT_EQ(root["format"], 1);
    EXPECT_EQ(root["chip"], "demo");
    EXPECT_EQ(root["layers"], Json::parse(R"([
        { "layer": 1, "device": "otp", "store": 1, "subsystems": ["bt", "wlan"] },
        { "layer": 2, "device": "eeprom", "store": 1, "subsystems": ["bt"] }])"));
    EXPECT_EQ(
        KeyOf(root, "bt", 100), Json::parse(R"({ "subsystem": "bt", "id": 100, "indices": null, "values": [
        { "layer": 1, "device": "otp", "store": 1, "name": "NAME", "winner": false, "type": "string",
          "value": "Speaker", "text": "\"Speaker\"" },
        { "layer": 2, "device": "eeprom", "store": 1, "name": "NAME", "winner": true, "type": "string",
          "value": "Küchenlautsprecher \" mit \\ und\nZeilenende",
          "text": "\"Küchenlautsprecher \\\" mit \\\\ und\\nZeilenende\"" }] })"));
}

TEST_F(Show, json_keeps_values_by_their_types)
{
    const Json root = Json::parse(ShowFiles({ mFactory, "--json" }).mOut);
    const auto valueOf = [&](const std::string & subsystem, int id) {
        return KeyOf(root, subsystem, id)["values"][0];
    };
    EXPECT_EQ(KeyOf(root, "bt", 120)["indices"], Json({ 3, 7 }));
    EXPECT_EQ(valueOf("bt", 120)["name"], "LIMIT");
    EXPECT_EQ(valueOf("bt", 120)["value"], 12);
    EXPECT_EQ(valueOf("bt", 120)["type"], "uint16");
    EXPECT_EQ(valueOf("bt", 130)["value"], Json::parse(R"({ "name": "FAST", "number": -2 })"));
    EXPECT_EQ(valueOf("bt", 130)["type"], "enum");
    EXPECT_EQ(valueOf("wlan", 100)["value"], Json({ 1, 6, 11 }));
    EXPECT_EQ(valueOf("wlan", 100)["type"], "uint8");
    EXPECT_EQ(valueOf("wlan", 101)["value"].get<std::uint64_t>(), 18446744073709551615ULL);
    EXPECT_EQ(valueOf("wlan", 102)["value"], Json::parse(R"({ "hex": "00ff0a" })"));
    EXPECT_EQ(valueOf("wlan", 102)["type"], "octet_string");
}

TEST_F(Show, json_and_table_agree)
{
    const Json root = Json::parse(ShowFiles({ mFactory, mUser, "--json" }).mOut);
    EXPECT_EQ(KeyLines(ShowFiles({ mFactory, mUser }, "1000").mOut), KeyLinesOf(root));
}

TEST_F(Show, a_variable_tells_the_width)
{
    for (const int columns : { 20, 30, 40, 60, 80 }) {
        for (const std::string & line : LinesOf(ShowFiles({ mFactory, mUser }, std::to_string(columns)).mOut)) {
            const auto isContinuation = [](char each) { return (each & 0xC0) == 0x80; };
            const auto continuations = std::count_if(line.begin(), line.end(), isContinuation);
            EXPECT_LE(static_cast<int>(line.size()) - static_cast<int>(continuations), columns) << line;
        }
    }
    EXPECT_THAT(ShowFiles({ mUser }, "50").mOut, HasSubstr("\"Küchenlautsprech…\n"));
}

TEST_F(Show, a_variable_without_a_sensible_width_is_ignored)
{
    const std::string expected = ShowFiles({ mFactory, mUser }).mOut;
    for (const char * columns : { "0", "-5", "x", "80x", "99999999999999999999999" })
        EXPECT_EQ(ShowFiles({ mFactory, mUser }, columns).mOut, expected) << columns;
}

TEST_F(Show, a_hundred_columns_are_the_rule_without_a_terminal)
{
    const std::string file =
        mFolder.File("long.toml", "chip = \"demo\"\n[[subsystem]]\ntype = \"bt\"\ndevice = \"otp\"\nstore = 1\n"
                                  "[[subsystem.key]]\nid = 1\ntype = \"string\"\nvalue = \"" +
                                      std::string(200, 'x') + "\"\n");
    const auto lines = LinesOf(ShowFiles({ file }).mOut);
    const auto line = std::find_if(lines.begin(), lines.end(),
        [](const std::string & each) { return each.find("xxx") != std::string::npos; });
    ASSERT_NE(line, lines.end());
    EXPECT_EQ(line->size(), 100U + 2U);   // the ellipsis takes three bytes and one column
    EXPECT_THAT(*line, testing::EndsWith("…"));
}

TEST_F(Show, a_terminal_tells_its_width_and_gets_colours)
{
    const ToolResult result = RunTool(
        { .mArguments = { "show", mFactory, mUser }, .mOutput = Output::Terminal, .mTerminalColumns = 50 });
    EXPECT_EQ(result.mExitCode, 0);
    EXPECT_THAT(
        result.mOut, AllOf(HasSubstr("\033[1mChip demo\033[0m\n"), HasSubstr("Küchenlauts"), HasSubstr("…")));
    EXPECT_THAT(result.mOut, HasSubstr("\033[2m  100      NAME"));
}

TEST_F(Show, colours_can_be_refused)
{
    for (const std::map<std::string, std::string> & environment :
        { std::map<std::string, std::string>{ { "NO_COLOR", "1" } }, { { "TERM", "dumb" } } })
    {
        const ToolResult result = RunTool({ .mArguments = { "show", mFactory },
            .mEnvironment = environment,
            .mOutput = Output::Terminal,
            .mTerminalColumns = 100 });
        EXPECT_EQ(result.mOut, ShowFiles({ mFactory }).mOut);
    }
}

TEST_F(Show, a_terminal_without_a_width_has_a_hundred_columns)
{
    const ToolResult result = RunTool({ .mArguments = { "show", mFactory },
        .mEnvironment = { { "NO_COLOR", "1" } },
        .mOutput = Output::Terminal });
    EXPECT_EQ(result.mOut, ShowFiles({ mFactory }).mOut);
}

TEST_F(Show, a_chip_without_keys_is_shown)
{
    const std::string file = mFolder.File("empty.toml", "chip = \"demo\"\n");
    const ToolResult result = ShowFiles({ file });
    EXPECT_EQ(result.mExitCode, 0) << result.mErr;
    EXPECT_EQ(result.mOut, "Chip demo\nNo layers\n\nNo keys\n");
    const Json root = Json::parse(ShowFiles({ file, "--json" }).mOut);
    EXPECT_EQ(root, Json::parse(R"({ "format": 1, "chip": "demo", "layers": [], "keys": [] })"));
}

TEST_F(Show, files_of_different_chips_are_refused)
{
    std::string text = USER;
    text.replace(text.find("demo"), 4, "next");
    const std::string other = mFolder.File("other.toml", text);
    const ToolResult result = ShowFiles({ mFactory, other });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mOut, IsEmpty());
    EXPECT_THAT(result.mErr,
        AllOf(StartsWith("zynconfig: error: " + other + ":1:"), HasSubstr("\"next\""), HasSubstr("\"demo\"")));
}

TEST_F(Show, files_of_different_chips_are_refused_also_without_subsystems)
{
    const std::string empty = mFolder.File("empty.toml", "chip = \"next\"\n");
    EXPECT_EQ(ShowFiles({ mFactory, empty }).mExitCode, 1);
    EXPECT_EQ(ShowFiles({ empty, mFactory }).mExitCode, 1);
}

TEST_F(Show, what_is_wrong_in_a_file_is_told_with_its_place)
{
    const std::string file = mFolder.File(
        "bad.toml", "chip = \"demo\"\n[[subsystem]]\ntype = \"btt\"\ndevice = \"otp\"\nstore = \"x\"\n");
    const ToolResult result = ShowFiles({ file });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(LinesOf(result.mErr), ElementsAre(StartsWith("zynconfig: error: " + file + ":3:8: "),
                                          StartsWith("zynconfig: error: " + file + ":5:9: ")));
}

TEST_F(Show, a_file_that_is_none_is_an_error)
{
    const std::string missing = mFolder.File("missing.toml");
    const std::string empty = mFolder.File("empty.toml", "");
    const std::string folder = mFolder.File("folder.toml");
    std::filesystem::create_directory(folder);
    for (const std::string & file : { missing, empty, folder, std::string("/dev/null/x.toml") }) {
        const ToolResult result = ShowFiles({ file });
        EXPECT_EQ(result.mExitCode, 1) << file;
        EXPECT_THAT(result.mOut, IsEmpty());
        EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: " + file));
    }
}

TEST_F(Show, an_unreadable_file_is_an_error)
{
    if (geteuid() == 0)
        std::filesystem::create_symlink(
            "/proc/self/mem", mFolder.File("unreadable.toml"));   // not even root reads it
    else
        std::filesystem::permissions(mFolder.File("unreadable.toml", USER), std::filesystem::perms::none);
    const ToolResult result = ShowFiles({ mFolder.File("unreadable.toml") });
    EXPECT_EQ(result.mExitCode, 1);
    EXPECT_THAT(result.mErr, StartsWith("zynconfig: error: " + mFolder.File("unreadable.toml")));
}

TEST_F(Show, names_of_files_may_hold_anything)
{
    const std::string file = mFolder.File("a b;c=d 'ä'\n.toml", USER);
    EXPECT_EQ(ShowFiles({ file }).mExitCode, 0);
    const std::string dash = mFolder.File("-x.toml", USER);
    EXPECT_EQ(ShowFiles({ "--", dash }).mExitCode, 0);
    EXPECT_EQ(ShowFiles({ mFolder.File("UPPER.TOML", USER) }).mExitCode, 0);
}

}   // namespace zynconfig::test
