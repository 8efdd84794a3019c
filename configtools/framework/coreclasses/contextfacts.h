/// What the layered store works out of a context's tags: the options of a read, and the subsystems of a lookup. Reading
/// tags means lowering keys, searching a map and copying texts; done for every element and lookup that costs more
/// than the work itself, so it is done once per change of the context and stored with it.
///
/// Only contexts of exactly the library's own classes have facts, because any other class may compute its tags anew at
/// each call.

#ifndef CONFIGTOOLS_CONTEXTFACTS_H
#define CONFIGTOOLS_CONTEXTFACTS_H

#include "contextfollower.h"
#include "selectedlayers.h"

#include <configtools/zyncontext.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {

/// How an element that is already stored counts, by the tag "insertmode".
enum class InsertModeEnum
{
    ADD,        // no test is made
    KEEP,       // "new"
    OVERWRITE   // "overwrite"
};

/// What the tags of a context mean for the elements that a reader delivers with it.
struct CReadOptions
{
    InsertModeEnum mInsertMode = InsertModeEnum::ADD;
    bool mIsFiltered = false;              // "layerfilter" has a value
    std::vector<std::uint32_t> mIndices;   // of a table row; empty for a plain key
};

class CContextFacts final : public IContextFollower
{
public:
    /// The facts of `context`; they stay the context's. Null for foreign context classes.
    static CContextFacts * Of(IConfigContext & context)
    {
        CContextFacts * const facts = IsChipContext(context) ? Known(context) : nullptr;
        return facts != nullptr ? facts : Make(context);
    }

    /// The layers that a chip context selects. Null for contexts of any other class, which don't compute the keys of
    /// subsystems or may do so in ways of their own.
    static CSelectedLayers * LayersOf(IConfigContext & context)
    {
        return IsChipContext(context) ? &Of(context)->Layers() : nullptr;
    }

    /// These read the tags, whatever the class of the context.
    static InsertModeEnum InsertModeOf(IConfigContext & context);
    static std::vector<std::uint32_t> IndicesOf(IConfigContext & context);

    /// The options of the context that has these facts.
    const CReadOptions & ReadOptions(IConfigContext & context);

    /// `isChanged` becomes true when the context's store, subsystem type or device is written.
    void WatchPlace(std::shared_ptr<bool> isChanged) noexcept { mIsPlaceChanged = std::move(isChanged); }

    void OnTagsChanged(const std::string * key) noexcept override;

private:
    static bool IsChipContext(IConfigContext & context) { return &typeid(context) == &typeid(CZynContext); }
    static CContextFacts * Known(IConfigContext & context)
    {
        return static_cast<CContextFacts *>(static_cast<CBaseContext &>(context).mFollower.get());
    }
    static CContextFacts * Make(IConfigContext & context);
    CSelectedLayers & Layers()
    {
        if (mLayers == nullptr)
            mLayers = std::make_unique<CSelectedLayers>();
        return *mLayers;
    }

    std::optional<CReadOptions> mOptions;
    std::unique_ptr<CSelectedLayers> mLayers;   // null before the first lookup
    std::shared_ptr<bool> mIsPlaceChanged;      // null if nobody watches
};

}   // namespace VrexZynConfigTools

#endif
