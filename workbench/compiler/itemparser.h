/// Keys, fields of structs and layouts, as they stand in a source.

#ifndef WORKBENCH_COMPILER_ITEMPARSER_H
#define WORKBENCH_COMPILER_ITEMPARSER_H

#include "source.h"
#include "tablereader.h"

#include <memory>

namespace workbench::compiler {

Key ParseKey(const toml::table & table, std::size_t file, CSourceFindings & findings);

/// The fields of `reader`'s table that tell a layout.
std::shared_ptr<Layout> ParseLayout(CTableReader & reader, std::size_t file, CSourceFindings & findings);

/// Structs may stand within one another as deep as the library takes them.
inline constexpr int MAX_DEPTH = 64;

/// The largest struct that a repository keeps, in bits: what 16 bits count of words.
inline constexpr std::int64_t MAX_STRUCT_BITS = 1'048'576;

}   // namespace workbench::compiler

#endif
