/// @file
/// The context of this chip family: typed accessors for the tags that describe a subsystem, and the two computed
/// subsystem keys by which a chip configuration orders its subsystems.
///
/// @code
/// std::string KeyOfBtInLayer4()
/// {
///     VrexZynConfigTools::CZynContext context;
///     context.SetChip("abc");
///     context.SetSubsystemType(1);
///     context.SetLayerNumber(4);
///     return context.GetTag("subsystemkeybylayer");   // "abc| |1|4"
/// }
/// @endcode

#ifndef CONFIGTOOLS_ZYNCONTEXT_H
#define CONFIGTOOLS_ZYNCONTEXT_H

#include <configtools/context.h>

namespace VrexZynConfigTools {

/// The context that tools and plug-ins use with this chip family. Its name is "zyncontext". No operation fails or sets
/// an error.
///
/// Subsystem keys are text with fields separated by "|". An absent tag gives a single blank, and the second field is
/// always a blank, intended: no tag fills it, and tools compare and split keys of this form:
///
///     "subsystemkeybystore"   chip, blank, subsystem type, device, store    "abc| |2|15|3"
///     "subsystemkeybylayer"   chip, blank, subsystem type, layer            "abc| |2|4"
///
/// Only `GetTag` with exactly these spellings computes them; `TagMatches`, `GetTags` and `Tags` look at stored tags
/// only, as those of `CBaseContext` do. `GetTag` for the by-layer key writes a cache, so even reading is not safe
/// from two threads.
class CONFIGTOOLS_EXPORT CZynContext : public CBaseContext
{
public:
    /// A context without tags.
    CZynContext();

    /// Takes the tags, the change count and the cached key; see `CBaseContext`.
    CZynContext(const CZynContext & other);

    /// As the copy; leaves `other` without name and tags.
    CZynContext(CZynContext && other) noexcept;

    /// Takes the tags, the change count and the cached key, in place of its own.
    CZynContext & operator=(const CZynContext & other);

    /// As the copy; leaves `other` without name and tags.
    CZynContext & operator=(CZynContext && other) noexcept;
    ~CZynContext() override;

    /// The value of a tag, or one of the two computed keys; an empty text if there is none. `key` is compared with the
    /// names of the computed keys with regard to case, and with those of tags without.
    std::string GetTag(const std::string & key) override;

    /// A copy that belongs to the caller. It takes the tags alone: its change count starts at 0,
    /// unlike that of `CBaseContext::Clone`, intended: the count belongs to the cached key, which isn't copied either.
    IConfigContext * Clone() override;

    /// The tag "chip": the system version label of the selected chip; empty if it is absent. An empty label deletes
    /// the tag.
    ///@{
    void SetChip(const std::string & chip);
    const std::string Chip();
    ///@}

    /// Does nothing, intended: tools rely on the tag "subsysfwversion" to contain only what `SetTag` and `Parse`
    /// stored.
    void SetSubsysFwVersion(const std::string & version);

    /// The tag "subsysfwversion"; empty if it is absent.
    const std::string SubsysFwVersion();

    /// The tags of numbers: "device" (an `IStoreManager::DEVICE` value), "store", "order", "layernumber" and
    /// "filetype". A number reads as 0 if its tag is absent or isn't a number. `Order` returns the low 16 bits of
    /// what the tag contains.
    ///@{
    void SetDevice(int device);
    int Device();
    void SetStore(int store);
    int Store();
    void SetOrder(unsigned short order);
    unsigned short Order();
    void SetLayerNumber(int layer);
    int LayerNumber();
    void SetFileType(int type);
    int FileType();
    ///@}

    /// The tag "ignoreheader", stored as "true" or "false"; false if it is absent. What a plug-in makes of it is the
    /// plug-in's to document.
    ///@{
    void IgnoreHeader(bool ignore);
    bool IgnoreHeader();
    ///@}

private:
    std::string GetSubsystemKeyByStore();
    std::string GetSubsystemKeyByLayer();

    std::uint32_t mKeyVersion = 0;   // the change count for which mLayerKey was built
    std::string mLayerKey;           // the by-layer key as last built
};

}   // namespace VrexZynConfigTools

#endif
