#include "findings.h"

#include "vocabulary.h"

#include <kit/nearestname/nearestname.h>

#include <algorithm>

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
    const std::string nearest = kit::nearestname::Nearest(word, known);
    if (!nearest.empty())
        return "; did you mean " + Quoted(nearest) + '?';
    return Expected(known);
}

}   // namespace tomlconfig
