#include <kit/text/words.h>

#include <fmt/format.h>

#include <algorithm>

namespace kit::text {

std::string Counted(std::uint64_t count, std::string_view noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string Joined(const std::vector<std::string> & words, std::string_view separator, std::size_t limit)
{
    const auto end = words.begin() + static_cast<std::ptrdiff_t>(std::min(words.size(), limit));
    const std::string list = fmt::format("{}", fmt::join(words.begin(), end, separator));
    return words.size() > limit ? fmt::format("{}{}...", list, separator) : list;
}

std::string Alternatives(const std::vector<std::string> & words, std::size_t limit)
{
    if (words.size() > limit)
        return Joined(words, ", ", limit);
    if (words.size() < 2)
        return Joined(words, "");
    return fmt::format("{} or {}", fmt::join(words.begin(), words.end() - 1, ", "), words.back());
}

}   // namespace kit::text
