/// What was probably meant, and what would have been accepted.
///
///     WithAdvice(MakeFinding("unknown-type", "unknown type " + Quoted("unit8")), "unit8", { "uint8", "int8" });
///     // unknown type "unit8"; did you mean "uint8"?

#ifndef KIT_REPORTING_ADVICE_H
#define KIT_REPORTING_ADVICE_H

#include <kit/reporting/finding.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kit::reporting {

/// User text in double quotes: its unprintable bytes as "\x1b", cut after 60 bytes. It may come from a file that was
/// never meant to be read.
std::string Quoted(std::string_view text);

/// The words in double quotes, as in `"a", "b" or "c"`; of more than `limit` the first, and "...".
std::string QuotedAlternatives(const std::vector<std::string> & words, std::size_t limit = 20);

/// The same with `; expected "a", "b" or "c"` at the end of the text; unchanged without words.
Finding WithAlternatives(Finding finding, const std::vector<std::string> & known);

/// The same with `nearest`, and `; did you mean "uint8"?` at the end of the text; unchanged for an empty one.
Finding WithNearest(Finding finding, const std::string & nearest);

/// The same with that of the known words which is most like `word`; with all of them where none is like it.
Finding WithAdvice(Finding finding, const std::string & word, const std::vector<std::string> & known);

}   // namespace kit::reporting

#endif
