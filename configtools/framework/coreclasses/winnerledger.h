/// Which places hold a pointer to which element, so that none points at an element that is gone.

#ifndef CONFIGTOOLS_WINNERLEDGER_H
#define CONFIGTOOLS_WINNERLEDGER_H

#include <unordered_map>
#include <utility>

namespace VrexZynConfigTools {

class CElement;
class IConfigReaderElementObserver;

/// A chip configuration keeps the winners of a filtered read; its subsystems replace and delete elements. The ledger
/// stands between them: it follows places that hold an element's address.
class CWinnerLedger
{
public:
    /// The ledger of the chip configuration that `observer` is; null for any other observer. Implemented with the chip
    /// configuration, so that what is below it needn't know that class.
    static CWinnerLedger * Of(IConfigReaderElementObserver * observer);

    /// Lets `place` point at `element` and follows it from now on, in place of what it held before.
    void Set(CElement *& place, CElement * element)
    {
        const auto added = element != nullptr ? mPlaces.emplace(element, &place) : mPlaces.end();
        Forget(place, added);
        place = element;
    }

    /// Tells that `element` goes: the places that held it hold `successor` now, which may be null.
    void OnElementGone(const CElement * element, CElement * successor)
    {
        for (auto found = mPlaces.find(element); found != mPlaces.end(); found = mPlaces.find(element)) {
            auto node = mPlaces.extract(found);
            *node.mapped() = successor;
            if (successor == nullptr)
                continue;
            node.key() = successor;
            mPlaces.insert(std::move(node));
        }
    }

private:
    using Places = std::unordered_multimap<const CElement *, CElement **>;

    void Forget(CElement *& place, Places::const_iterator keep)
    {
        const auto range = mPlaces.equal_range(place);
        for (auto found = range.first; found != range.second; ++found) {
            if (found->second == &place && found != keep) {
                mPlaces.erase(found);
                return;
            }
        }
    }

    Places mPlaces;
};

}   // namespace VrexZynConfigTools

#endif
