/// Default values: checked against their keys, and in the form in which a repository keeps them.

#ifndef WORKBENCH_COMPILER_DEFAULTS_H
#define WORKBENCH_COMPILER_DEFAULTS_H

#include "source.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace workbench::compiler {

struct Octets
{
    std::string mBytes;
};

/// A number, a text, or octets (a packed struct included).
using DefaultItem = std::variant<std::int64_t, std::string, Octets>;

struct DefaultRow
{
    std::vector<std::int64_t> mIndices;   // of a table
    std::vector<DefaultItem> mItems;
};

/// One row, or of a table those that have a default, or none. Of a key that isn't sound there is nothing to say.
std::vector<DefaultRow> DefaultsOf(const Key & key, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
