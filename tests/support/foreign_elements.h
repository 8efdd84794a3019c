/// Element classes as a plug-in might write them: what they call the same place is their own affair.

#ifndef TESTS_SUPPORT_FOREIGN_ELEMENTS_H
#define TESTS_SUPPORT_FOREIGN_ELEMENTS_H

#include <configtools/elements.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// BaseT: a class of the library, such as CElementRaw or CIndexedElement. Without a rule it behaves as its base.
template <typename BaseT>
class ForeignElement : public BaseT
{
public:
    using SameRule = std::function<bool(const ForeignElement & self, CElement & other)>;
    using BaseT::BaseT;

    ForeignElement * Ruled(SameRule rule)
    {
        mRule = std::move(rule);
        return this;
    }
    ForeignElement * Invalid()
    {
        mIsValid = false;
        return this;
    }

    // Number and name are protected, not private: a class may change its own at any time.
    void Rename(const std::string & name) { this->mName = name; }
    void Renumber(std::uint32_t psId) { this->mPsId = psId; }

    bool Same(CElement & other) const override { return mRule ? mRule(*this, other) : BaseT::Same(other); }
    bool IsValid() const override { return mIsValid; }

private:
    SameRule mRule;
    bool mIsValid = true;
};

using ForeignRaw = ForeignElement<CElementRaw>;
using ForeignRow = ForeignElement<CIndexedElement>;

}   // namespace VrexZynConfigTools::support

#endif
