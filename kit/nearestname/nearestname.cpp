#include <kit/nearestname/nearestname.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace kit::nearestname {

namespace {

constexpr std::size_t LONGEST = 64;

std::string Lowered(std::string text)
{
    for (char & character : text)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    return text;
}

}   // namespace

CNearestName::CNearestName(const std::string & name)
    : mName(Lowered(name))
    , mBound(name.empty() || name.size() > LONGEST ? 0 : std::max<std::size_t>(1, name.size() / 3) + 1)
{
    for (std::vector<std::size_t> & row : mRows)
        row.resize(mName.size() + 1);
}

void CNearestName::Look(const std::string & candidate)
{
    const std::size_t difference =
        candidate.size() > mName.size() ? candidate.size() - mName.size() : mName.size() - candidate.size();
    if (difference >= mBound)
        return;
    const std::size_t distance = DistanceTo(Lowered(candidate));
    if (distance < mBound) {
        mBound = distance;
        mNearest = candidate;
    }
}

// The least number of differences, or any number from the bound on if it is not below that.
std::size_t CNearestName::DistanceTo(const std::string & candidate)
{
    auto & [before, last, row] = mRows;
    std::iota(last.begin(), last.end(), std::size_t{ 0 });
    std::size_t leastSoFar = 0;
    for (std::size_t i = 1; i <= candidate.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= mName.size(); ++j) {
            const std::size_t change = candidate[i - 1] == mName[j - 1] ? 0 : 1;
            row[j] = std::min({ last[j - 1] + change, last[j] + 1, row[j - 1] + 1 });
            if (i > 1 && j > 1 && candidate[i - 1] == mName[j - 2] && candidate[i - 2] == mName[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        const std::size_t least = *std::min_element(row.begin(), row.end());
        if (std::min(least, leastSoFar) >= mBound)
            return mBound;   // a swap reaches back two rows, so both have to be beyond
        leastSoFar = least;
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[mName.size()];
}

std::string Nearest(const std::string & name, const std::vector<std::string> & known)
{
    CNearestName nearest(name);
    for (const std::string & candidate : known)
        nearest.Look(candidate);
    return nearest.Result();
}

}   // namespace kit::nearestname
