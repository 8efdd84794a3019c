/// What an image holds, as elements.

#ifndef IMAGECONFIG_CONTENT_H
#define IMAGECONFIG_CONTENT_H

#include "image.h"
#include "report.h"

#include <configtools/elements.h>
#include <kit/reading/contexts.h>

#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class IMetadataProvider;
}

namespace imageconfig {

struct Key
{
    std::unique_ptr<VrexZynConfigTools::CElement> mElement;
    std::vector<std::uint32_t> mIndices;   // of a table row; empty for a plain key
};

/// Keys of one subsystem that stand one after the other in a store.
struct Subsystem
{
    kit::reading::SubsystemPlace mPlace;
    std::vector<Key> mKeys;
};

struct Content
{
    std::vector<Subsystem> mSubsystems;
    std::vector<std::string> mUnknownKeys;   // those that the provider doesn't know
    std::vector<std::string> mChangedKeys;   // those whose structs would not be written as they were read
};

/// Builds every element; what is wrong goes to `findings`, store by store and key by key. Without a provider all keys come
/// raw. The context is that of the file.
Content BuildContent(const Image & image, VrexZynConfigTools::IConfigContext & context,
    VrexZynConfigTools::IMetadataProvider * provider, CFindings & findings);

}   // namespace imageconfig

#endif
