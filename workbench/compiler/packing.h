/// Structs packed and unpacked by the device format itself.

#ifndef WORKBENCH_COMPILER_PACKING_H
#define WORKBENCH_COMPILER_PACKING_H

#include "records.h"

#include <configtools/payloads.h>

#include <memory>
#include <string>
#include <vector>

namespace workbench::compiler {

/// The value of a field that isn't a struct.
struct LeafValue
{
    std::vector<CNumber> mNumbers;   // one; of an array its items, of a field of more than 64 bits its words
    std::string mText;               // of an enumerator its name
};

using LeafValues = std::vector<LeafValue>;   // of a struct, in the order in which the target holds them

/// The fields of a struct that aren't structs, in the order of `LeafValues`.
std::vector<const Field *> LeavesOf(const CStructRecords & records);

/// The octets of the packed struct: of one that is kept in words each word with its low octet first. What went wrong
/// stands in `error`.
std::string Pack(const CStructRecords & records, const LeafValues & values, std::string & error);

/// The leaves that come of a packed struct, each as text. What went wrong stands in `error`.
std::vector<std::string> Unpack(
    const CStructRecords & records, const std::string & octets, std::string & error);

/// The same of values that weren't packed.
std::vector<std::string> TextsOf(const CStructRecords & records, const LeafValues & values);

}   // namespace workbench::compiler

#endif
