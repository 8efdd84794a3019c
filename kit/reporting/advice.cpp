#include <kit/reporting/advice.h>

#include <kit/nearestname/nearestname.h>
#include <kit/text/utf8.h>
#include <kit/text/words.h>

#include <utility>

namespace kit::reporting {

namespace {

constexpr std::size_t QUOTE_LIMIT = 60;   // bytes of user text in a message

}   // namespace

std::string Quoted(std::string_view text)
{
    const std::string_view shown = kit::text::Beginning(text, QUOTE_LIMIT);
    return '"' + kit::text::Escaped(shown) + (shown.size() < text.size() ? "...\"" : "\"");
}

std::string QuotedAlternatives(const std::vector<std::string> & words, std::size_t limit)
{
    std::vector<std::string> quoted;
    quoted.reserve(words.size());
    for (const std::string & word : words)
        quoted.push_back(Quoted(word));
    return kit::text::Alternatives(quoted, limit);
}

Finding WithAlternatives(Finding finding, const std::vector<std::string> & known)
{
    return known.empty() ? finding : WithExpected(std::move(finding), QuotedAlternatives(known));
}

Finding WithNearest(Finding finding, const std::string & nearest)
{
    finding.mNearest = nearest;
    if (!nearest.empty())
        finding.mText += "; did you mean " + Quoted(nearest) + '?';
    return finding;
}

Finding WithAdvice(Finding finding, const std::string & word, const std::vector<std::string> & known)
{
    const std::string nearest = nearestname::Nearest(word, known);
    return nearest.empty() ? WithAlternatives(std::move(finding), known)
                           : WithNearest(std::move(finding), nearest);
}

}   // namespace kit::reporting
