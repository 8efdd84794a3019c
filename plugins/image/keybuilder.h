/// From the raw value of a key to its element.

#ifndef IMAGECONFIG_KEYBUILDER_H
#define IMAGECONFIG_KEYBUILDER_H

#include "chunk.h"
#include "rawsource.h"

#include <configtools/elements.h>
#include <configtools/readerwriter.h>

#include <memory>
#include <string>
#include <string_view>

namespace VrexZynConfigTools {
class IConfigContext;
class IMetadata;
}   // namespace VrexZynConfigTools

namespace imageconfig {

/// Builds elements, one after the other. The errors of the framework's group and that of outer readers are cleared for
/// each.
class CKeyBuilder
{
public:
    /// The context says whether values are checked; it is changed.
    explicit CKeyBuilder(VrexZynConfigTools::IConfigContext & context);

    /// The element of a key, by its record; without one, with words or octets as they are. Null, with the reason in
    /// `error`, if the value isn't what the record describes.
    std::unique_ptr<VrexZynConfigTools::CElement> Build(
        const RawKey & key, const VrexZynConfigTools::IMetadata * record, std::string & error);

private:
    using ElementOwner = std::unique_ptr<VrexZynConfigTools::CElement>;

    ElementOwner BuildStructs(const RawKey & key, const VrexZynConfigTools::IMetadata & record);
    ElementOwner BuildEnumerators(const RawKey & key, const VrexZynConfigTools::IMetadata & record);
    ElementOwner BuildPart(
        const RawKey & key, std::string_view part, const VrexZynConfigTools::IMetadata & record);
    void Fail(const std::string & text);

    VrexZynConfigTools::IConfigContext & mContext;
    bool mChecks;
    std::string mError;
};

}   // namespace imageconfig

#endif
