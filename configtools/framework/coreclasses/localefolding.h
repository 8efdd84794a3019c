/// Follows the program's locale, which may change at any time and behind the library's back.

#ifndef CONFIGTOOLS_LOCALEFOLDING_H
#define CONFIGTOOLS_LOCALEFOLDING_H

#include "namehash.h"

#include <misc/platform.h>

#include <cstdint>

namespace VrexZynConfigTools {

/// The rules of case by which names are hashed at present. One for the whole process, as the locale is.
class CLocaleFolding
{
public:
    static CLocaleFolding & Instance();

    const CCaseFolding & Folding() const { return mFolding; }

    /// Changes whenever `Folding` does: a hash made before, of a name with bytes above 127, is out of date then.
    std::uint32_t Generation() const { return mGeneration; }

    /// Whether names with bytes above 127 play a part in this process. As long as they don't, there is nothing to follow.
    bool IsNeeded() const { return mIsNeeded; }
    void Need() { mIsNeeded = true; }

    /// Takes over the rules of the locale in force.
    void Follow()
    {
        if (platform::UpdateLowerCases(mLower))
            Renew();
    }

private:
    constexpr CLocaleFolding() = default;
    void Renew();

    platform::LowerCases mLower{};   // of the locale that was last followed; zeros before
    CCaseFolding mFolding;
    std::uint32_t mGeneration = 0;
    bool mIsNeeded = false;
};

}   // namespace VrexZynConfigTools

#endif
