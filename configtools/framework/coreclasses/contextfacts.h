/// What the layered store works out of a context's tags: the options of a read, and the subsystems of a lookup. Reading
/// tags means lowering keys, searching a map and copying texts; done for every element and lookup that costs more
/// than the work itself, so it is done once per change of the context and kept with it.
///
/// Only contexts of exactly the library's own classes have facts, because any other class may compute its tags anew at
/// each call. Every copy, move and assignment of a context drops its facts: equal change counts don't mean equal tags.

#ifndef CONFIGTOOLS_CONTEXTFACTS_H
#define CONFIGTOOLS_CONTEXTFACTS_H

#include <configtools/zyncontext.h>
#include <messages/messages.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <vector>

namespace VrexZynConfigTools {

class CElementIndex;
class CSubsystemConfig;

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

/// The subsystems in which a lookup searches, topmost layer first.
struct CSearchPath
{
    static constexpr std::size_t MAX_LENGTH = 16;   // layers 15 to 0

    std::array<CSubsystemConfig *, MAX_LENGTH> mSubsystems;   // the first mLength are set
    std::array<CElementIndex *, MAX_LENGTH> mIndexes;         // theirs, in the same order
    std::size_t mLength = 0;
};

class CContextFacts
{
public:
    /// The facts of `context`, up to date with its tags; they stay the context's. Null for foreign context classes and
    /// while debug output is active: then the tags are to be read one by one, so that each access shows in the trace.
    static CContextFacts * Of(IConfigContext & context)
    {
        if (CTheMsgHnd::DebugActivated())
            return nullptr;
        if (&typeid(context) == &typeid(CZynContext)) {
            const auto & base = static_cast<const CBaseContext &>(context);
            CContextFacts * const facts = base.mFacts.get();
            if (facts != nullptr && facts->mVersion == base.mChangeCount)
                return facts;
        }
        return Renew(context);
    }

    /// These read the tags, whatever the class of the context.
    static InsertModeEnum InsertModeOf(IConfigContext & context);
    static std::vector<std::uint32_t> IndicesOf(IConfigContext & context);

    /// The options of the context that has these facts, as last read, or read now.
    const CReadOptions & ReadOptions(IConfigContext & context);

    /// The search path kept for a chip's set of subsystems, which `stamp` identifies; null if there is none.
    const CSearchPath * SearchPath(std::uint64_t stamp) const { return mPathStamp == stamp ? &mPath : nullptr; }
    const CSearchPath & KeepSearchPath(const CSearchPath & path, std::uint64_t stamp);

private:
    static CContextFacts * Renew(IConfigContext & context);

    std::uint32_t mVersion = 0;   // the change count of the context for which all below holds
    bool mHasOptions = false;
    CReadOptions mOptions;
    std::uint64_t mPathStamp = 0;   // 0 for no path; no chip has the stamp 0
    CSearchPath mPath;
};

}   // namespace VrexZynConfigTools

#endif
