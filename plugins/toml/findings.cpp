#include "findings.h"

#include "vocabulary.h"

#include <algorithm>
#include <numeric>

namespace tomlconfig {

namespace {

constexpr std::size_t QUOTE_LIMIT = 60;   // bytes of user text in a message

std::string Printable(std::string_view text)
{
    if (IsPlainText(text))
        return std::string(text);
    std::string printable;
    for (const char character : text) {
        if (character >= 0x20 && character < 0x7F)
            printable += character;
        else
            printable += "\\x" + HexText(std::string_view(&character, 1), "");
    }
    return printable;
}

std::string Lowered(std::string text)
{
    for (char & character : text)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    return text;
}

// The least number of letters to insert, remove, change or swap with their neighbour that turns one word into the other.
std::size_t DistanceOf(const std::string & left, const std::string & right)
{
    std::vector<std::vector<std::size_t>> rows(left.size() + 1, std::vector<std::size_t>(right.size() + 1));
    std::iota(rows[0].begin(), rows[0].end(), std::size_t{ 0 });
    for (std::size_t i = 1; i <= left.size(); ++i) {
        rows[i][0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t change = left[i - 1] == right[j - 1] ? 0 : 1;
            rows[i][j] = std::min({ rows[i - 1][j - 1] + change, rows[i][j - 1] + 1, rows[i - 1][j] + 1 });
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
    }
    return rows[left.size()][right.size()];
}

std::string Nearest(const std::string & word, const std::vector<std::string> & known)
{
    constexpr std::size_t LONGEST = 64;   // hardly any name is longer
    if (word.size() > LONGEST)
        return "";
    std::string nearest;
    std::size_t best = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string & candidate : known) {
        if (candidate.size() > LONGEST)
            continue;
        const std::size_t distance = DistanceOf(Lowered(word), Lowered(candidate));
        if (distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

}   // namespace

CFindings::CFindings(const std::string & path)
    : mPath(path)
{}

void CFindings::Add(const toml::source_position & place, const std::string & text)
{
    mFindings.push_back({ place, Printable(text) });
}

void CFindings::Add(const toml::node & node, const std::string & text)
{
    Add(node.source().begin, text);
}

void CFindings::Warn(const toml::node & node, const std::string & text)
{
    mWarnings.push_back(PlaceText(mPath, node.source().begin) + ": " + Printable(text));
}

bool CFindings::IsEmpty() const
{
    return mFindings.empty();
}

std::size_t CFindings::Count() const
{
    return mFindings.size();
}

const std::vector<std::string> & CFindings::Warnings() const
{
    return mWarnings;
}

std::string CFindings::Text() const
{
    std::vector<Finding> sorted = mFindings;
    std::stable_sort(sorted.begin(), sorted.end(),
        [](const Finding & left, const Finding & right) { return left.mPlace < right.mPlace; });
    std::string text;
    for (const Finding & finding : sorted) {
        if (!text.empty())
            text += '\n';
        text += PlaceText(mPath, finding.mPlace) + ": " + finding.mText;
    }
    return text;
}

std::string PlaceText(const std::string & path, const toml::source_position & place)
{
    const auto line = std::max(place.line, toml::source_index{ 1 });   // an empty file has no line of its own
    const auto column = std::max(place.column, toml::source_index{ 1 });
    return path + ':' + std::to_string(line) + ':' + std::to_string(column);
}

std::string Quoted(std::string_view text)
{
    const std::string printable = Printable(text.substr(0, QUOTE_LIMIT));
    return '"' + printable + (text.size() > QUOTE_LIMIT ? "...\"" : "\"");
}

const char * KindOf(const toml::node & node)
{
    switch (node.type()) {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::string:
        return "a text";
    case toml::node_type::integer:
        return "a whole number";
    case toml::node_type::floating_point:
        return "a number with a fraction";
    case toml::node_type::boolean:
        return "a boolean";
    default:
        return "a date or time";
    }
}

std::string Expected(const std::vector<std::string> & known)
{
    constexpr std::size_t MOST = 20;
    if (known.empty())
        return "";
    std::string list = Quoted(known.front());
    for (std::size_t position = 1; position < std::min(known.size(), MOST); ++position)
        list += (position + 1 < known.size() ? ", " : " or ") + Quoted(known[position]);
    return "; expected " + list + (known.size() > MOST ? ", ..." : "");
}

std::string Advice(const std::string & word, const std::vector<std::string> & known)
{
    const std::string nearest = Nearest(word, known);
    if (!nearest.empty())
        return "; did you mean " + Quoted(nearest) + '?';
    return Expected(known);
}

}   // namespace tomlconfig
