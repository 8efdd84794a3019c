/// From checked metadata to the repository that keeps it.

#ifndef WORKBENCH_COMPILER_REPOSITORYWRITER_H
#define WORKBENCH_COMPILER_REPOSITORYWRITER_H

#include "defaults.h"
#include "source.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace workbench::compiler {

using Defaults = std::unordered_map<const Key *, std::vector<DefaultRow>>;

/// The bytes of the repository. All of `source` must be sound. Throws `CDatabaseError` for what the schema refuses,
/// which would be a fault of the checks.
std::string MakeRepository(const Source & source, const Defaults & defaults);

}   // namespace workbench::compiler

#endif
