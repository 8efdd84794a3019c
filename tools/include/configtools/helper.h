/// @file
/// Facts of the selected chip that need both the description of its system and its configuration.
///
/// @code
/// #include <configtools/chipconfig.h>
/// #include <configtools/payloads.h>
/// #include <configtools/zyncontext.h>
///
/// std::string TrimOf(VrexZynConfigTools::CChipConfig & chip, VrexZynConfigTools::IMetadataProvider & provider)
/// {
///     using namespace VrexZynConfigTools;
///     CZynContext context;
///     context.SetChip("trindle7");
///     context.SetSubsystemType(SUBSYSTEM_BT);
///     const auto value = CHelper::Ref().RetrieveApplicablePayload(provider, chip, context, "CrystalTrim");
///     return value.empty() ? "not set" : value.front()->ToString();   // the payloads stay the chip's
/// }
/// @endcode

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

/// Answers questions about the chip that the context's tag "chip" selects. The tag is a system version label, not the
/// name of a chip. Providers, contexts and elements stay the caller's. There is one object, without a state but for the
/// default values that it has read; use it from one thread at a time.
class CONFIGTOOLS_EXPORT CHelper
{
public:
    /// The one object.
    static CHelper & Ref() { return mInstance; }

    CHelper(const CHelper &) = delete;
    CHelper & operator=(const CHelper &) = delete;

    /// Whether a chip of the provider has this label, compared without regard to case; then `label` gets the
    /// provider's spelling, which all other operations need, since they compare exactly. An empty label is filled in
    /// where there is exactly one chip. All chips of the provider are considered, whatever is selected elsewhere. On
    /// false `label` stays as it was. Sets no error.
    bool IsSystemLabelVersionValid(IMetadataProvider & provider, std::string & label);

    /// The value of the key named `key` (without regard to case), from the highest layer that has one, 15 to 0; where
    /// none has, the key's default value. Empty if there is no default value either. The context names chip and
    /// subsystem; its tag "layernumber" is left at the layer found, or at "0" where none was.
    ///
    /// The payloads belong to the element in which they were found, and are valid as long as it exists: until the
    /// configuration is cleared, the element removed or its value replaced.
    ///
    /// Default values are read once in the life of the process, from the first provider that has any, by
    /// `IConfigReader::Read` with this context. They serve every later provider too, intended: a tool works with one
    /// repository, and reading all defaults is slow. The records that they point at end with that first provider: don't
    /// ask payloads of default values for their metadata afterwards. A provider that is no `IConfigReader` leaves the
    /// error "The metadata provider cannot behave like a data reader" in `GROUP_CORE_CLASSES`, and the result is empty.
    const std::vector<IPayload *> RetrieveApplicablePayload(IMetadataProvider & provider,
        const IElementProvider & elements, IConfigContext & context, const std::string & key);

    /// The reference code of the selected chip, in 8 upper-case hexadecimal digits:
    ///  - 4 for the chip's number: its low byte, then bits 8 to 11, then bits 12 to 15, an order that is intended
    ///    because the codes in use are written so; "XX" for the last two digits where bits 8 to 15 are all zero;
    ///  - 4 for the value of its fuses. For a chip that exists with several values the tag "efusehash" selects one,
    ///    in 1 to 4 hexadecimal digits. A longer tag causes a status message, and so does a missing one, unless
    ///    `placeholders`.
    ///
    /// Where the fuses aren't known, the result is empty; with `placeholders` they are written as "XXXX". It is empty
    /// too if no chip has the selected label, which is compared exactly. Sets no error.
    ///
    /// Chip number 0x1234 with the fuse value 65535 gives "3421FFFF".
    const std::string GetRefCodeForSelectedChip(
        IMetadataProvider & provider, IConfigContext & context, bool placeholders) const;

    /// The subsystem that a text means: its keyword, such as "wlan", or else the alias that the description of the
    /// system gives it, both without regard to case. `SUBSYSTEM_UNKNOWN` for any other text. The context selects the
    /// system by its tag "chip". Sets no error.
    SubSystemTypeEnum SubsystemFromString(
        IMetadataProvider & provider, IConfigContext & context, const std::string & name);

    /// The low byte of the selected chip's number, 0 to 255. Without the tag "chip" that of the first chip, unlike
    /// `GetRefCodeForSelectedChip`, which finds none then; intended, because tools that know one chip only set no
    /// tag. 0 if no chip has the label, which is compared exactly, or if `provider` is null. Sets no error.
    int GetAssociatedChipId(IMetadataProvider * provider, IConfigContext & context);

private:
    CHelper();

    static CHelper mInstance;
    static CChipConfig mDefaults;   // the default values of all keys, once they have been read
};

}   // namespace VrexZynConfigTools

#endif
