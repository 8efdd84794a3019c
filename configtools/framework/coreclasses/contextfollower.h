/// What an upper floor works out of a context's tags and stores with the context.

#ifndef CONFIGTOOLS_CONTEXTFOLLOWER_H
#define CONFIGTOOLS_CONTEXTFOLLOWER_H

#include <string>

namespace VrexZynConfigTools {

/// Belongs to one context, which owns it and reports each change of its tags to it. It is left out of every copy and
/// move, and an assignment is a change of all tags.
class IContextFollower
{
public:
    virtual ~IContextFollower() = default;

    /// The tag of this key, in lower case, is written; with null any of them.
    virtual void OnTagsChanged(const std::string * key) noexcept = 0;
};

}   // namespace VrexZynConfigTools

#endif
