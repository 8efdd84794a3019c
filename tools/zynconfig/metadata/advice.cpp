#include "advice.h"

#include "../text.h"
#include "word.h"

#include <algorithm>
#include <numeric>

namespace zynconfig::metadata {

namespace {

constexpr std::size_t LONGEST_WORD = 100;   // a longer one is no slip of the pen
constexpr std::size_t LONGEST_LIST = 16;    // words in a message

// The least number of letters to insert, remove, change or swap with their neighbour that turns one word into the other.
std::size_t DistanceOf(const std::string & left, const std::string & right)
{
    std::vector<std::vector<std::size_t>> rows(left.size() + 1, std::vector<std::size_t>(right.size() + 1));
    std::iota(rows[0].begin(), rows[0].end(), std::size_t{ 0 });
    for (std::size_t i = 1; i <= left.size(); ++i) {
        rows[i][0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t change = left[i - 1] == right[j - 1] ? 0 : 1;
            rows[i][j] = std::min({ rows[i - 1][j - 1] + change, rows[i][j - 1] + 1, rows[i - 1][j] + 1 });
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
    }
    return rows[left.size()][right.size()];
}

std::string Nearest(const std::string & word, const std::vector<std::string> & known)
{
    if (word.size() > LONGEST_WORD)
        return "";
    const std::string lowered = Lowered(word);
    std::string nearest;
    std::size_t best = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string & candidate : known) {
        if (candidate.size() > LONGEST_WORD)
            continue;
        const std::size_t distance = DistanceOf(lowered, Lowered(candidate));
        if (distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

}   // namespace

std::string Advice(const std::string & word, const std::vector<std::string> & known)
{
    const std::string nearest = Nearest(word, known);
    if (!nearest.empty())
        return "; did you mean " + Quoted(nearest) + '?';
    if (known.empty() || known.size() > LONGEST_LIST)
        return "";
    std::string list;
    for (std::size_t position = 0; position < known.size(); ++position) {
        if (position != 0)
            list += position + 1 < known.size() ? ", " : " or ";
        list += Quoted(known[position]);
    }
    return "; expected " + list;
}

}   // namespace zynconfig::metadata
