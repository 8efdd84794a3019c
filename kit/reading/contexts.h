/// The contexts that a read hands on: of the whole file, of a subsystem, of a key.
///
///     const ContextOwner file = FileContext(callerContext, "abc");
///     const ContextOwner subsystem = SubsystemContext(*file, { SUBSYSTEM_WLAN, IStoreManager::DEVICE_EEPROM, 1 });
///     CKeyContexts keys(*subsystem);
///     IConfigContext & row = keys.Of({ 1, 2 });

#ifndef KIT_READING_CONTEXTS_H
#define KIT_READING_CONTEXTS_H

#include <configtools/context.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kit::reading {

using ContextOwner = std::unique_ptr<VrexZynConfigTools::IConfigContext>;

/// Type, device and store of a subsystem, as the tags of a context have them; none where the source doesn't say.
struct SubsystemPlace
{
    std::optional<int> mType;
    std::optional<int> mDevice;
    std::optional<int> mStore;
    std::optional<int> mLayer = std::nullopt;   // where the reader determines it; default values are in layer 0
};

/// What a reader hands on is always made of the caller's context, so that its options ("insertmode", "layerfilter" and
/// those that only tools and observers know) travel on. An empty label leaves the chip as the caller has it.
ContextOwner FileContext(VrexZynConfigTools::IConfigContext & caller, const std::string & chip);

/// Sets the layer too if the place has one. Otherwise sets it, or deletes it for a store that isn't listed, if the
/// caller's context lists the stores' layers ("storelayers", see storetags.h), and leaves it alone if not.
ContextOwner SubsystemContext(VrexZynConfigTools::IConfigContext & fileContext, const SubsystemPlace & place);

/// The contexts with which the keys of one subsystem are delivered. A context costs more to copy than a key to store, so
/// all plain keys have the subsystem's own, and table rows one copy whose indices change from row to row.
class CKeyContexts
{
public:
    /// The subsystem's context stays the caller's and must outlive this.
    explicit CKeyContexts(VrexZynConfigTools::IConfigContext & subsystemContext)
        : mPlain(subsystemContext)
    {}

    /// The context of a key with these indices, none for a plain key; it stays this object's until the next call. A table
    /// row has its indices in the context, which is where a subsystem finds them.
    VrexZynConfigTools::IConfigContext & Of(const std::vector<std::uint32_t> & indices);

private:
    VrexZynConfigTools::IConfigContext & mPlain;
    ContextOwner mRow;             // null before the first row
    std::size_t mIndexCount = 0;   // of the rows that mRow is for
};

}   // namespace kit::reading

#endif
