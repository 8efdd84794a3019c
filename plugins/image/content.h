/// What an image holds, as elements.

#ifndef IMAGECONFIG_CONTENT_H
#define IMAGECONFIG_CONTENT_H

#include "image.h"

#include <kit/reading/filereader.h>
#include <kit/reporting/findings.h>

#include <string>
#include <vector>

namespace VrexZynConfigTools {
class IMetadataProvider;
}

namespace imageconfig {

struct Content
{
    std::vector<kit::reading::Subsystem> mSubsystems;   // of keys that are in a row in a store
    std::vector<std::string> mUnknownKeys;              // those that the provider doesn't know
    std::vector<std::string> mChangedKeys;   // those whose structs would not be written as they were read
};

/// Builds every element; what is wrong goes to `findings`, store by store and key by key. Without a provider all keys come
/// raw. The context is that of the file.
Content BuildContent(const Image & image, VrexZynConfigTools::IConfigContext & context,
    VrexZynConfigTools::IMetadataProvider * provider, kit::reporting::CFindings & findings);

}   // namespace imageconfig

#endif
