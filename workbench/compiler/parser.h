/// From source files in TOML to what they tell.

#ifndef WORKBENCH_COMPILER_PARSER_H
#define WORKBENCH_COMPILER_PARSER_H

#include "findings.h"
#include "source.h"

#include <string>
#include <vector>

namespace workbench::compiler {

/// All files together make one system. What isn't understood is a finding and left out.
Source ParseSources(const std::vector<std::string> & paths, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
