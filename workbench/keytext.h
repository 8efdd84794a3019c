/// A key as people write it: [SUBSYSTEM:]NAME-or-NUMBER[.INDEX...].
///
///     KeyTextProblem("bt:258");               // empty: there is none
///     ParseKeyText("RateLimit.FAST.0").mKey;  // RateLimit, with the indices FAST and 0
///     NumberOf("0x102");                      // 258

#ifndef WORKBENCH_KEYTEXT_H
#define WORKBENCH_KEYTEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// The parts of such a text, none of them looked up; `CCatalog::Find` and `CCatalog::RowOf` do that.
struct KeyText
{
    /// A keyword or an alias; empty for any subsystem.
    std::string mSubsystem;

    /// A name or a number.
    std::string mKey;

    /// Of a table row: numbers, or names of enumerators.
    std::vector<std::string> mIndices;
};

/// What is wrong with the form of `text`, as the end of a message; empty for nothing. Whether there is such a key isn't
/// asked.
std::string KeyTextProblem(const std::string & text);

/// Splits a text without a problem; of any other one the result is whatever the separators give.
KeyText ParseKeyText(const std::string & text);

/// The number that `text` is, in the library's manner: 16, 0x10 and 020 are the same. None for any other text,
/// a sign, blanks, and what is beyond 32 bits.
std::optional<std::uint32_t> NumberOf(const std::string & text);

}   // namespace workbench

#endif
