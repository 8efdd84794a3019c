#include "advice.h"

#include <kit/nearestname/nearestname.h>
#include <kit/text/utf8.h>
#include <kit/text/words.h>

#include <cstddef>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr std::size_t LONGEST_LIST = 16;   // words in a message

}   // namespace

std::string Advice(const std::string & word, const std::vector<std::string> & known)
{
    const std::string nearest = kit::nearestname::Nearest(word, known);
    if (!nearest.empty())
        return "; did you mean " + Quoted(nearest) + '?';
    if (known.empty() || known.size() > LONGEST_LIST)
        return "";
    std::vector<std::string> quoted;
    for (const std::string & each : known)
        quoted.push_back(Quoted(each));
    return "; expected " + kit::text::Alternatives(quoted);
}

}   // namespace workbench::compiler
