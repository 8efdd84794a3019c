/// One table of a source file, read field by field. What nobody asked for by the end is an unknown field.

#ifndef WORKBENCH_COMPILER_TABLEREADER_H
#define WORKBENCH_COMPILER_TABLEREADER_H

#include "findings.h"
#include "source.h"

#include <toml++/toml.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench::compiler {

class CTableReader
{
public:
    /// `what`: the table in words, such as "a key".
    CTableReader(const toml::table & table, std::size_t file, std::string what, CSourceFindings & findings);

    Place Begin() const;
    Place PlaceOf(const toml::node & node) const;

    /// Null where it isn't given.
    const toml::node * Find(const char * name);

    Placed<std::string> Text(const char * name);
    std::string PlainText(const char * name);
    Placed<bool> Flag(const char * name, bool usual);
    Placed<std::int64_t> Integer(const char * name, std::int64_t min, std::int64_t max);

    /// [min, max]; the order of the two isn't looked at.
    Placed<NumberRange> Range(const char * name);

    /// One number for both ends, or [min, max].
    Placed<NumberRange> Length(const char * name);

    /// NAME = number, ...
    Placed<Enumerators> EnumeratorTable(const char * name);

    /// The tables of [[name]], or of an array of inline tables.
    std::vector<const toml::table *> Tables(const char * name, const std::string & header);

    std::optional<Value> AnyValue(const char * name);

    /// A finding for each field that nobody asked for. Last.
    void RefuseUnknown();

    void Mismatch(const toml::node & node, const std::string & name, const std::string & expected);

private:
    std::optional<CNumber> Number(const toml::node & node, const std::string & name);
    std::optional<NumberRange> Pair(const toml::node & node, const std::string & name);
    Value ValueOf(const toml::node & node) const;
    Enumerator EnumeratorOf(const toml::key & key, const toml::node & node);

    const toml::table & mTable;
    std::size_t mFile;
    std::string mWhat;
    CSourceFindings & mFindings;
    std::vector<std::string> mKnown;
};

}   // namespace workbench::compiler

#endif
