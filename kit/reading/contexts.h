/// The contexts that a read hands on: of the whole file, of a subsystem, of a key.

#ifndef KIT_READING_CONTEXTS_H
#define KIT_READING_CONTEXTS_H

#include <configtools/context.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kit::reading {

using ContextOwner = std::unique_ptr<VrexZynConfigTools::IConfigContext>;

/// Type, device and store of a subsystem; none where the source doesn't say.
struct SubsystemPlace
{
    std::optional<int> mType;
    std::optional<int> mDevice;
    std::optional<int> mStore;
};

/// What a reader hands on is always made of the caller's context, so that its options ("insertmode", "layerfilter" and
/// those that only tools and observers know) travel on. An empty label leaves the chip as the caller has it.
ContextOwner FileContext(VrexZynConfigTools::IConfigContext & caller, const std::string & chip);

/// Sets the layer too, or deletes it, if the caller's context lists the stores' layers ("storelayers").
ContextOwner SubsystemContext(VrexZynConfigTools::IConfigContext & fileContext, const SubsystemPlace & place);

/// A table row has its indices in the context, which is where a subsystem finds them. None for a plain key.
ContextOwner KeyContext(
    VrexZynConfigTools::IConfigContext & subsystemContext, const std::vector<std::uint32_t> & indices);

}   // namespace kit::reading

#endif
