/// A key on the command line: [SUBSYSTEM:]NAME-or-NUMBER[.INDEX...].

#ifndef WORKBENCH_KEYTEXT_H
#define WORKBENCH_KEYTEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// The parts of such a text, none of them looked up.
struct KeyText
{
    std::string mSubsystem;   // empty: any
    std::string mKey;         // a name or a number
    std::vector<std::string> mIndices;
};

/// What is wrong with the form of `text`, or an empty text.
std::string KeyTextProblem(const std::string & text);

/// For a text without a problem.
KeyText ParseKeyText(const std::string & text);

/// The number that `text` is, in the library's manner: 16, 0x10 and 020 are the same. None for any other text.
std::optional<std::uint32_t> NumberOf(const std::string & text);

}   // namespace workbench

#endif
