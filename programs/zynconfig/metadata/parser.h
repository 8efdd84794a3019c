/// From source files in TOML to what they tell.

#ifndef ZYNCONFIG_METADATA_PARSER_H
#define ZYNCONFIG_METADATA_PARSER_H

#include "findings.h"
#include "source.h"

#include <string>
#include <vector>

namespace zynconfig::metadata {

/// All files together make one system. What isn't understood is a finding and left out.
Source ParseSources(const std::vector<std::string> & paths, CFindings & findings);

}   // namespace zynconfig::metadata

#endif
