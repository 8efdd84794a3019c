
#include <kit/text/utf8.h>
#include <showtable.h>

#include <gmock/gmock.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace zynconfig {

using namespace workbench;
using kit::text::Columns;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr Store OTP = { 1, 1 };
constexpr Store EEPROM = { 15, 2 };

Value Number(std::uint64_t number)
{
    return { "uint32", number };
}

Value Text(const std::string & text)
{
    return { "string", Value::Text{ text } };
}

void AddKey(LayeredChip & chip, const Key & key, const std::vector<LayeredValue> & values)
{
    LayeredKey & shown = chip.mKeys.emplace_back();
    shown.mKey = key;
    shown.mValues = values;
}

LayeredChip AChip()
{
    LayeredChip chip = { "demo", { { 1, OTP, { 1, 2 } }, { 2, EEPROM, { 1 } } }, {}, {} };
    AddKey(chip, { 1, 100, false, {} },
        { { 1, OTP, "NAME", Text("low"), false }, { 2, EEPROM, "NAME", Text("high"), true } });
    AddKey(chip, { 2, 7, true, { 3, 4 } }, { { 1, OTP, "ROW", Number(9), true } });
    return chip;
}

std::vector<std::string> Lines(const std::string & text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

}   // namespace

TEST(RenderTable, shows_layers_from_the_bottom_and_each_keys_values_with_the_winner_marked)
{
    EXPECT_THAT(Lines(RenderTable(AChip(), { 100, false })),
        ElementsAre("Chip demo",                       //
            "Layers, from bottom to top:",             //
            "   1  otp.1     bt, wlan",                //
            "   2  eeprom.2  bt",                      //
            "",                                        //
            "  KEY    NAME    LAYER       VALUE",      //
            "bt",                                      //
            "  100    NAME    1 otp.1     \"low\"",    //
            "               * 2 eeprom.2  \"high\"",   //
            "wlan",                                    //
            "  7.3.4  ROW   * 1 otp.1     9",          //
            "",                                        //
            "* marks the value that holds."));
}

TEST(RenderTable, repeats_a_name_where_a_layer_has_another)
{
    LayeredChip chip = AChip();
    chip.mKeys[0].mValues[1].mName = "OTHER";
    EXPECT_THAT(Lines(RenderTable(chip, { 100, false }))[8], "         OTHER  * 2 eeprom.2  \"high\"");
}

TEST(RenderTable, fits_every_width)
{
    LayeredChip chip = AChip();
    chip.mLabel = std::string(300, 'c');
    chip.mKeys[0].mValues[0].mName = std::string(300, 'n');
    chip.mKeys[0].mValues[0].mValue = Text(std::string(300, 'v'));
    for (const std::size_t columns : { 1U, 2U, 5U, 10U, 20U, 40U, 80U, 132U, 1000U }) {
        for (const std::string & line : Lines(RenderTable(chip, { columns, false })))
            EXPECT_LE(Columns(line), columns) << line;
    }
}

TEST(RenderTable, cuts_names_before_values)
{
    LayeredChip chip = AChip();
    chip.mKeys[0].mValues[0].mName = std::string(60, 'n');
    chip.mKeys[0].mValues[0].mValue = Text("18 letters fit....");
    EXPECT_THAT(RenderTable(chip, { 60, false }), HasSubstr("\"18 letters fit....\""));
}

TEST(RenderTable, colours_nothing_without_a_terminal)
{
    EXPECT_THAT(RenderTable(AChip(), { 100, false }), Not(HasSubstr("\033")));
}

TEST(RenderTable, colours_whole_lines_and_differs_in_nothing_else)
{
    std::string coloured = RenderTable(AChip(), { 30, true });
    EXPECT_THAT(coloured, HasSubstr("\033[1mChip demo\033[0m\n"));
    for (const std::string code : { "\033[1m", "\033[2m", "\033[0m" }) {
        for (auto place = coloured.find(code); place != std::string::npos; place = coloured.find(code))
            coloured.erase(place, code.size());
    }
    EXPECT_EQ(coloured, RenderTable(AChip(), { 30, false }));
}

TEST(RenderTable, shows_a_value_without_a_layer)
{
    LayeredChip chip = AChip();
    chip.mKeys[1].mValues[0] = { 0, { 13, 1 }, "ROW", Number(9), false };
    EXPECT_THAT(RenderTable(chip, { 100, false }), HasSubstr("  7.3.4  ROW     - cur_cfg.1  9\n"));
}

TEST(RenderTable, says_that_there_is_nothing)
{
    EXPECT_EQ(RenderTable({ "x\n", {}, {}, {} }, { 100, false }), "Chip x\\n\nNo layers\n\nNo keys\n");
}

}   // namespace zynconfig
