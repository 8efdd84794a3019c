/// `zynconfig metadata compile`: metadata as a person writes it becomes a repository, or a list of what is wrong with it.

#ifndef WORKBENCH_COMPILER_COMPILE_H
#define WORKBENCH_COMPILER_COMPILE_H

#include <optional>
#include <string>
#include <vector>

namespace workbench::compiler {

/// What came of the sources.
struct Compilation
{
    std::vector<std::string> mFindings;       // "file:line:column: error|warning: text"
    std::optional<std::string> mRepository;   // its bytes, if there is no error among the findings
};

Compilation CompileSources(const std::vector<std::string> & sources);

/// Prints the findings on standard error. False, with nothing written, if one of them is an error, and if the repository
/// can't be written: the old one stays then.
bool Compile(const std::vector<std::string> & sources, const std::string & output);

}   // namespace workbench::compiler

#endif
