/// One finding: what is wrong, where, and what was expected. It is the record that the message channel carries from a
/// plug-in to a tool, so that the text for people is composed from it and never parsed.
///
///     Finding finding = MakeFinding("out-of-range", "\"value\": 300 is out of range");
///     finding.mKey = "gain";
///     finding = WithExpected(WithPlace(finding, "radio.toml", 3, 8), "0 to 255");
///     LineOf(finding);   // radio.toml:3:8: "value": 300 is out of range; expected 0 to 255

#ifndef KIT_REPORTING_FINDING_H
#define KIT_REPORTING_FINDING_H

#include <messages/messages.h>

#include <cstdint>
#include <string>

namespace kit::reporting {

/// Code, severity, place, key, text, what was expected; see there for each member.
using Finding = VrexZynConfigTools::ErrorRecord;

/// An error of which nothing else is known. `code` is stable: lower-case words joined by hyphens, for programs.
Finding MakeFinding(const std::string & code, const std::string & text);

/// The same with its place. Line and column count from 1; 0 leaves them out.
Finding WithPlace(Finding finding, const std::string & file, std::uint32_t line = 0, std::uint32_t column = 0);

/// The same with `expected`, and "; expected " and it at the end of the text.
Finding WithExpected(Finding finding, const std::string & expected);

/// "FILE:LINE:COLUMN", as much of it as is known; empty without a file.
std::string PlaceOf(const Finding & finding);

/// "FILE:LINE:COLUMN: TEXT", the line for people; the text alone where there is no file.
std::string LineOf(const Finding & finding);

}   // namespace kit::reporting

#endif
