#include "showtable.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace zynconfig {

using namespace workbench;
using kit::text::Columns;
using kit::text::Cut;
using kit::text::Padded;
using kit::text::Printable;

namespace {

constexpr std::size_t LEAST_FOR_NAME = 12;
constexpr std::size_t LEAST_FOR_VALUE = 20;   // names give way to it

/// One line of the list of keys.
struct Row
{
    std::string mNumber;
    std::string mName;
    std::string mLayer;
    std::string mValue;
    bool mIsWinner;
};

struct Widths
{
    std::size_t mNumber;
    std::size_t mName;
    std::size_t mLayer;
};

std::string LayerText(int number)
{
    return number == 0 ? "-" : std::to_string(number);
}

std::string SubsystemNames(const std::vector<int> & types)
{
    std::string names;
    for (const int type : types)
        names.append(names.empty() ? "" : ", ").append(SubsystemName(type));
    return names;
}

void AddLayers(const std::vector<Layer> & layers, CLineMaker & lines)
{
    std::size_t width = 0;
    for (const Layer & layer : layers)
        width = std::max(width, Columns(NameOf(layer.mStore)));
    for (const Layer & layer : layers) {
        const std::string number = std::to_string(layer.mNumber);
        lines.Add(std::string(4 - std::min<std::size_t>(number.size(), 3), ' ').append(number).append(GAP) +
                  Padded(NameOf(layer.mStore), width).append(GAP) + SubsystemNames(layer.mSubsystems));
    }
}

// The number stands in a key's first row only, the name also where it changes.
std::vector<Row> RowsOf(const LayeredKey & key)
{
    std::vector<Row> rows;
    std::string_view name;
    for (const LayeredValue & value : key.mValues) {
        const bool isFirst = rows.empty();
        rows.push_back(
            { isFirst ? NumberText(key.mKey) : "", isFirst || value.mName != name ? Printable(value.mName) : "",
                LayerText(value.mLayer) + ' ' + NameOf(value.mStore), ToText(value.mValue), value.mIsWinner });
        name = value.mName;
    }
    return rows;
}

Widths WidthsOf(const std::vector<std::vector<Row>> & keys, std::size_t columns)
{
    Widths widths = { 3, 4, 5 };   // those of the headings
    for (const auto & rows : keys) {
        for (const Row & row : rows) {
            widths.mNumber = std::max(widths.mNumber, Columns(row.mNumber));
            widths.mName = std::max(widths.mName, Columns(row.mName));
            widths.mLayer = std::max(widths.mLayer, Columns(row.mLayer));
        }
    }
    const std::size_t others = widths.mNumber + widths.mLayer + LEAST_FOR_VALUE + 5 * GAP.size();
    const std::size_t room = columns > others ? columns - others : 0;
    widths.mName = std::min(widths.mName, std::max(room, LEAST_FOR_NAME));
    return widths;
}

std::string LineOf(const Row & row, const Widths & widths, std::string_view mark)
{
    return std::string(GAP).append(Padded(row.mNumber, widths.mNumber)).append(GAP) +
           Padded(Cut(row.mName, widths.mName), widths.mName).append(GAP).append(mark) +
           Padded(row.mLayer, widths.mLayer).append(GAP) + row.mValue;
}

void AddKeys(const std::vector<LayeredKey> & keys, std::size_t columns, CLineMaker & lines)
{
    std::vector<std::vector<Row>> rowsByKey;
    std::transform(keys.begin(), keys.end(), std::back_inserter(rowsByKey), RowsOf);
    const Widths widths = WidthsOf(rowsByKey, columns);

    lines.Add(LineOf({ "KEY", "NAME", "LAYER", "VALUE", false }, widths, GAP), BOLD);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i == 0 || keys[i].mKey.mSubsystem != keys[i - 1].mKey.mSubsystem)
            lines.Add(SubsystemName(keys[i].mKey.mSubsystem), BOLD);
        for (const Row & row : rowsByKey[i])
            lines.Add(
                LineOf(row, widths, row.mIsWinner ? "* " : GAP), row.mIsWinner ? std::string_view() : DIM);
    }
}

}   // namespace

std::string RenderTable(const LayeredChip & chip, const TableStyle & style)
{
    CLineMaker lines(style);
    lines.Add("Chip " + Printable(chip.mLabel), BOLD);
    lines.Add(chip.mLayers.empty() ? "No layers" : "Layers, from bottom to top:");
    AddLayers(chip.mLayers, lines);
    lines.Add("");
    if (chip.mKeys.empty()) {
        lines.Add("No keys");
    } else {
        AddKeys(chip.mKeys, style.mColumns, lines);
        lines.Add("");
        lines.Add("* marks the value that holds.");
    }
    return lines.Take();
}

}   // namespace zynconfig
