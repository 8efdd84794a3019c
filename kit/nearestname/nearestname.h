/// The guess at what a misspelt name was to be.

#ifndef KIT_NEARESTNAME_NEARESTNAME_H
#define KIT_NEARESTNAME_NEARESTNAME_H

#include <cstddef>
#include <string>
#include <vector>

namespace kit::nearestname {

/// Keeps the name most like a given one. Names differ by the letters to insert, to remove, to change or to swap with
/// their neighbour; case doesn't count. A name that differs by more than a third of the given one's letters is not
/// like it (one letter is always allowed), and neither is a name to one of more than 64 letters. Of equals the first
/// stays.
class CNearestName
{
public:
    explicit CNearestName(const std::string & name);

    void Look(const std::string & candidate);
    const std::string & Result() const { return mNearest; }

private:
    std::size_t DistanceTo(const std::string & candidate);

    std::string mName;    // in lower case
    std::size_t mBound;   // how many differences are too many
    std::string mNearest;
    std::vector<std::size_t> mRows[3];   // of the table of distances: the current one and the two before
};

/// That of `known` which is most like `name`; empty if none is like it.
std::string Nearest(const std::string & name, const std::vector<std::string> & known);

}   // namespace kit::nearestname

#endif
