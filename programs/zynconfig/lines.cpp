#include "lines.h"

#include <kit/text/utf8.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zynconfig {

using kit::text::Columns;
using kit::text::Cut;
using kit::text::Padded;

namespace {

constexpr std::size_t DEFAULT_COLUMNS = 100;
constexpr std::size_t LEAST_FOR_TEXT = 20;   // a narrower text isn't worth wrapping
constexpr std::string_view PLAIN = "\033[0m";

std::string TextOfEnvironment(const char * name)
{
    const char * const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::size_t TerminalColumns()
{
    const std::string text = TextOfEnvironment("COLUMNS");
    std::size_t columns = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
    if (error == std::errc() && end == text.data() + text.size() && columns > 0)
        return columns;

    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : DEFAULT_COLUMNS;
}

std::vector<std::size_t> WidthsOf(const Cells & heading, const std::vector<Cells> & rows)
{
    std::vector<std::size_t> widths(heading.size(), 0);
    std::vector<bool> isUsed(heading.size(), false);
    for (const Cells & row : rows) {
        for (std::size_t i = 0; i < heading.size(); ++i) {
            widths[i] = std::max({ widths[i], Columns(row[i]), Columns(heading[i]) });
            isUsed[i] = isUsed[i] || !row[i].empty();
        }
    }
    for (std::size_t i = 0; i < heading.size(); ++i)
        widths[i] = isUsed[i] ? widths[i] : 0;
    return widths;
}

std::string RowText(const Cells & row, const std::vector<std::size_t> & widths)
{
    std::string text;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        if (widths[i] > 0)
            text.append(GAP).append(Padded(row[i], widths[i]));
    }
    text.erase(text.find_last_not_of(' ') + 1);   // what fits must not look cut off
    return text;
}

}   // namespace

TableStyle StyleOfOutput()
{
    const bool isColoured = isatty(STDOUT_FILENO) == 1 && TextOfEnvironment("NO_COLOR").empty() &&
                            TextOfEnvironment("TERM") != "dumb";
    return { TerminalColumns(), isColoured };
}

CLineMaker::CLineMaker(const TableStyle & style)
    : mStyle(style)
{}

void CLineMaker::Add(std::string_view line, std::string_view colour)
{
    std::string cut = Cut(line, mStyle.mColumns);
    cut.erase(cut.find_last_not_of(' ') + 1);
    const bool isColoured = mStyle.mIsColoured && !colour.empty() && !cut.empty();
    mText += isColoured ? std::string(colour) + cut + std::string(PLAIN) : cut;
    mText += '\n';
}

void CLineMaker::AddWrapped(std::string_view text, std::size_t indent)
{
    const std::size_t width = std::max(mStyle.mColumns, indent + LEAST_FOR_TEXT);
    std::string line;
    bool isEmpty = true;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' ', text.find_first_not_of(' ')));
        text.remove_prefix(word.size());
        if (!isEmpty && kit::text::Columns(line) + kit::text::Columns(word) > width) {
            Add(line);
            line.assign(indent, ' ').append(word.substr(std::min(word.find_first_not_of(' '), word.size())));
        } else {
            line.append(word);
        }
        isEmpty = false;
    }
    Add(line);
}

void AddTable(const Cells & heading, const std::vector<Cells> & rows, CLineMaker & lines)
{
    const std::vector<std::size_t> widths = WidthsOf(heading, rows);
    const bool hasHeading =
        std::any_of(heading.begin(), heading.end(), [](const auto & cell) { return !cell.empty(); });
    if (hasHeading)
        lines.Add(RowText(heading, widths), BOLD);
    for (const Cells & row : rows)
        lines.Add(RowText(row, widths));
}

}   // namespace zynconfig
