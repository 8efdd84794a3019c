/// Findings at places of a file in TOML.

#ifndef TOMLCONFIG_FINDINGS_H
#define TOMLCONFIG_FINDINGS_H

#include <kit/reporting/advice.h>
#include <kit/reporting/findings.h>

#include <toml++/toml.h>

#include <string>

namespace tomlconfig {

using kit::reporting::CFindings;
using kit::reporting::Finding;
using kit::reporting::Quoted;
using kit::reporting::WithAdvice;
using kit::reporting::WithAlternatives;
using kit::reporting::WithExpected;
using kit::reporting::WithNearest;

/// An error. Control characters in the text, which may quote others, are escaped.
Finding FindingAt(const toml::source_position & place, const std::string & code, const std::string & text);

/// The same at the begin of a node.
Finding FindingAt(const toml::node & node, const std::string & code, const std::string & text);

/// What is no mistake but has to be known, such as a value that is left out.
Finding WarningAt(const toml::node & node, const std::string & code, const std::string & text);

}   // namespace tomlconfig

#endif
