/// The compiler of metadata: what a person writes becomes a repository, or a list of what is wrong with it.
///
///     const auto compilation = workbench::compiler::CompileSources({ "system.toml", "bt.toml" });
///     const bool isWritten = compilation.mRepository &&
///                            workbench::compiler::WriteRepository(*compilation.mRepository, "system.zmd", findings);

#ifndef WORKBENCH_COMPILER_COMPILE_H
#define WORKBENCH_COMPILER_COMPILE_H

#include <workbench/finding.h>

#include <optional>
#include <string>
#include <vector>

namespace workbench::compiler {

/// What came of the sources.
struct Compilation
{
    std::vector<Finding> mFindings;           // errors and warnings, in the order of the sources
    std::optional<std::string> mRepository;   // its bytes, if there is no error among the findings
};

Compilation CompileSources(const std::vector<std::string> & sources);

/// Writes a repository whole or not at all: if it can't be, the sink gets the reason and the old file remains.
bool WriteRepository(const std::string & content, const std::string & path, IFindingSink & sink);

}   // namespace workbench::compiler

#endif
