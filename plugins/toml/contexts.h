/// The contexts that a read hands on: of the whole file, of a subsystem, of a key.

#ifndef TOMLCONFIG_CONTEXTS_H
#define TOMLCONFIG_CONTEXTS_H

#include "document.h"

#include <configtools/context.h>

#include <memory>
#include <string>

namespace tomlconfig {

using ContextOwner = std::unique_ptr<IConfigContext>;

/// What a reader hands on is always made of the caller's context, so that its options ("insertmode", "layerfilter" and
/// those that only tools and observers know) travel on. An empty label leaves the chip as the caller has it.
ContextOwner FileContext(IConfigContext & caller, const std::string & chip);

ContextOwner SubsystemContext(IConfigContext & fileContext, const Subsystem & subsystem);

/// A table row has its indices in the context, which is where a subsystem finds them.
ContextOwner KeyContext(IConfigContext & subsystemContext, const Key & key);

}   // namespace tomlconfig

#endif
