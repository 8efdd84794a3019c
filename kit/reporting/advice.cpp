#include <kit/reporting/advice.h>

#include <kit/nearestname/nearestname.h>
#include <kit/text/utf8.h>
#include <kit/text/words.h>

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

Finding & AddExpected(Finding & finding, const std::vector<std::string> & known)
{
    if (known.empty())
        return finding;
    finding.mExpected = QuotedAlternatives(known);
    finding.mText += "; expected " + finding.mExpected;
    return finding;
}

Finding & AddAdvice(Finding & finding, const std::string & word, const std::vector<std::string> & known)
{
    finding.mNearest = nearestname::Nearest(word, known);
    if (finding.mNearest.empty())
        return AddExpected(finding, known);
    finding.mText += "; did you mean " + Quoted(finding.mNearest) + '?';
    return finding;
}

}   // namespace kit::reporting
