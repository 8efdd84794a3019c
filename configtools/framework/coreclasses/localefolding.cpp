#include "localefolding.h"

namespace VrexZynConfigTools {

CLocaleFolding & CLocaleFolding::Instance()
{
    static constinit CLocaleFolding instance;
    return instance;
}

void CLocaleFolding::Renew()
{
    const CCaseFolding folding(mLower);
    if (folding == mFolding)
        return;
    mFolding = folding;
    ++mGeneration;
}

}   // namespace VrexZynConfigTools
