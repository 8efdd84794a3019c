/// Numbers, texts and enumerators of default values, checked against the key or field that they are for.

#ifndef WORKBENCH_COMPILER_LEAFVALUE_H
#define WORKBENCH_COMPILER_LEAFVALUE_H

#include "source.h"

#include <optional>
#include <string>
#include <vector>

namespace workbench::compiler {

/// The value of anything but a struct.
struct LeafValue
{
    std::vector<CNumber> mNumbers;   // one; of an array its items, of a field of more than 64 bits its words
    std::string mText;               // of an enumerator its name
};

class CLeafReader
{
public:
    explicit CLeafReader(CSourceFindings & findings);

    /// One item of anything but a struct. Nothing, with a finding, if it isn't what the item takes.
    std::optional<LeafValue> Read(const Item & item, const Value & value);

    std::optional<CNumber> NumberOf(const Value & value, const std::string & name, const NumberRange & range);

    /// By its name or its number.
    const Enumerator * EnumeratorOf(
        const Value & value, const std::string & name, const Enumerators & enumerators);

    void CheckCount(const Value & value, std::size_t count, const NumberRange & range);
    void Mismatch(const Value & value, const std::string & name, const std::string & expected);

private:
    std::optional<LeafValue> TextOf(const Item & item, const Value & value);
    std::optional<std::string> BytesOf(const Item & item, const Value & value);

    CSourceFindings & mFindings;
};

}   // namespace workbench::compiler

#endif
