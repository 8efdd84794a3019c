/// Facts of the selected chip that need both the description of its system and its configuration.

#ifndef CONFIGTOOLS_HELPER_H
#define CONFIGTOOLS_HELPER_H

#include <configtools/export.h>
#include <configtools/types.h>

#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CChipConfig;
class IConfigContext;
class IElementProvider;
class IMetadataProvider;
class IPayload;

/// Answers questions about the chip that the context's tag "chip" selects. The tag holds a system version label, not
/// the name of a chip. Providers, contexts and elements stay the caller's.
class CONFIGTOOLS_EXPORT CHelper
{
public:
    static CHelper & Ref() { return mInstance; }

    CHelper(const CHelper &) = delete;
    CHelper & operator=(const CHelper &) = delete;

    /// Whether a chip of the provider has this label, without regard to case; then `label` gets the provider's
    /// spelling. An empty label is filled in where there is exactly one chip. All chips of the provider are looked
    /// at, whatever is selected elsewhere. Sets no error.
    bool IsSystemLabelVersionValid(IMetadataProvider & provider, std::string & label);

    /// The value of the key named `key` (without regard to case), from the highest layer that has one, 15 to 0; where
    /// none has, the key's default value. Empty if there is no default either. The context names chip and subsystem;
    /// its tag "layernumber" is left at the layer found, or at "0".
    ///
    /// The payloads stay those of the element they were found in: a caller must not keep them longer than that.
    ///
    /// Default values are read once in the life of the process, from the first provider that has any, by
    /// `IConfigReader::Read` with this context; they serve every later provider too, intended. The records that they
    /// point at end with that first provider: don't ask payloads of default values for their metadata afterwards. A
    /// provider that is no `IConfigReader` leaves the error "The metadata provider cannot behave like a data reader"
    /// in `GROUP_CORE_CLASSES`.
    const std::vector<IPayload *> RetrieveApplicablePayload(IMetadataProvider & provider,
        const IElementProvider & elements, IConfigContext & context, const std::string & key);

    /// The selected chip's reference code: 8 hexadecimal digits, 4 for the chip's number (the low byte, then the two
    /// nibbles above it, the lower one first, intended; "XX" where those are zero) and 4 for its fuses. A chip with
    /// several fuse values takes the one in the tag "efusehash"; a tag of more than 4 digits is told as a warning, and
    /// so is a missing one unless `placeholders`. Where the fuses aren't known, `placeholders` gives "XXXX" for them;
    /// without it the result is empty. Empty too if no chip has the selected label. Sets no error.
    const std::string GetRefCodeForSelectedChip(
        IMetadataProvider & provider, IConfigContext & context, bool placeholders) const;

    /// The subsystem that a text means: its keyword or, in the description of the system, its alias, both without
    /// regard to case. `SUBSYSTEM_UNKNOWN` for any other; sets no error.
    SubSystemTypeEnum SubsystemFromString(
        IMetadataProvider & provider, IConfigContext & context, const std::string & name);

    /// The low byte of the selected chip's number. Without the tag "chip" that of the first chip; 0 if there is no
    /// such chip or no provider. Sets no error.
    int GetAssociatedChipId(IMetadataProvider * provider, IConfigContext & context);

private:
    CHelper();

    static CHelper mInstance;
    static CChipConfig mDefaults;   // the default values of all keys, once they have been read
};

}   // namespace VrexZynConfigTools

#endif
