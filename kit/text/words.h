/// Words in messages.
///
///     Counted(1, "byte");                          // 1 byte
///     Counted(3, "byte");                          // 3 bytes
///     Joined({ "a", "b", "c" }, ", ", 2);          // a, b, ...
///     Alternatives({ "\"a\"", "\"b\"", "\"c\"" }); // "a", "b" or "c"

#ifndef KIT_TEXT_WORDS_H
#define KIT_TEXT_WORDS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kit::text {

/// The number and the noun, with an "s" unless there is exactly one.
std::string Counted(std::uint64_t count, std::string_view noun);

/// The first `limit` words, and "..." in place of any further ones.
std::string Joined(const std::vector<std::string> & words, std::string_view separator,
    std::size_t limit = std::numeric_limits<std::size_t>::max());

/// With commas, and "or" before the last word. Of more than `limit` words the first, and "..." at the end.
std::string Alternatives(
    const std::vector<std::string> & words, std::size_t limit = std::numeric_limits<std::size_t>::max());

}   // namespace kit::text

#endif
