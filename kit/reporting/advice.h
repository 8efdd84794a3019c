/// What was probably meant, and what would have been accepted.
///
///     Finding finding = MakeFinding("unknown-type", "unknown type " + Quoted("unit8"));
///     AddAdvice(finding, "unit8", { "uint8", "int8" });   // ...; did you mean "uint8"?

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

/// Appends `; expected "a", "b" or "c"` to the finding's text and sets what is expected; nothing without words.
Finding & AddExpected(Finding & finding, const std::vector<std::string> & known);

/// Appends `; did you mean "uint8"?` and sets the nearest word, if one of those known is like `word`; otherwise as
/// `AddExpected`.
Finding & AddAdvice(Finding & finding, const std::string & word, const std::vector<std::string> & known);

}   // namespace kit::reporting

#endif
