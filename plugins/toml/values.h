/// From the values of a file to payloads. Whatever can't be understood becomes a finding, and nothing is returned.

#ifndef TOMLCONFIG_VALUES_H
#define TOMLCONFIG_VALUES_H

#include "findings.h"
#include "vocabulary.h"

#include <toml++/toml.h>

#include <configtools/payloads.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tomlconfig {

using PayloadList = std::vector<std::unique_ptr<IPayload>>;

class CValueReader
{
public:
    /// The findings stay the caller's and must outlive this object.
    explicit CValueReader(CFindings & findings);

    /// A finding for each entry of `table` that isn't one of the known fields. `where` says what the table is.
    void CheckFields(
        const toml::table & table, const std::string & where, const std::vector<std::string> & known);

    /// The entry, with a finding if it is missing.
    const toml::node * Required(const toml::table & table, const char * name, const std::string & what);

    /// `"value": expected ..., found ...`
    void AddMismatch(const toml::node & node, const std::string & name, const std::string & expected);

    /// Bytes as a text of hexadecimal pairs.
    std::optional<std::string> Octets(const toml::node & node, const std::string & name);

    /// A text as it is, or { hex = "..." }.
    std::optional<std::string> Text(const toml::node & node, const std::string & name);

    std::optional<std::int64_t> Integer(
        const toml::node & node, const std::string & name, std::int64_t min, std::int64_t max);

    /// The value's bits: those of a negative number are its two's complement. The type word is that of a number.
    std::optional<std::uint64_t> Number(const toml::node & node, const std::string & typeWord);

    /// The value of a type word that stands for one payload: an integer, a text, an octet string, an enumerator.
    std::unique_ptr<IPayload> Leaf(const toml::node & node, const std::string & typeWord);

    std::optional<std::pair<std::string, std::int32_t>> Enumerator(const toml::node & node);
    std::optional<std::string> TextOrOctets(const toml::node & node, bool isOctet);

    /// The fields of a structure, in order. Stops at no finding.
    PayloadList Fields(const toml::array & array, int depth);

private:
    std::unique_ptr<IPayload> Field(const toml::node & node, int depth);
    std::unique_ptr<IPayload> TypedField(const toml::table & table, int depth);
    std::unique_ptr<IPayload> Structure(
        const toml::array & array, std::unique_ptr<CComplexPayload> structure, int depth);

    CFindings & mFindings;
};

}   // namespace tomlconfig

#endif
