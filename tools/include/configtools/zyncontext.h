/// The context of this chip family: typed accessors for the tags that describe a subsystem, and the two computed
/// subsystem keys by which a chip configuration files its subsystems.

#ifndef CONFIGTOOLS_ZYNCONTEXT_H
#define CONFIGTOOLS_ZYNCONTEXT_H

#include <configtools/context.h>

namespace VrexZynConfigTools {

/// Subsystem keys are text with fields separated by "|"; a missing tag gives a single blank, and the second field is
/// always a blank:
///
///     "subsystemkeybystore"   chip, blank, subsystem type, device, store    "abc| |2|15|3"
///     "subsystemkeybylayer"   chip, blank, subsystem type, layer            "abc| |2|4"
///
/// Only `GetTag` with exactly these spellings computes them; `TagMatches`, `GetTags` and `Tags` don't see them.
/// Asking for the by-layer key writes a cache, so even reading is not safe from two threads.
class CONFIGTOOLS_EXPORT CZynContext : public CBaseContext
{
public:
    CZynContext();
    CZynContext(const CZynContext & other);
    CZynContext(CZynContext && other) noexcept;
    CZynContext & operator=(const CZynContext & other);
    CZynContext & operator=(CZynContext && other) noexcept;
    ~CZynContext() override;

    std::string GetTag(const std::string & key) override;

    /// The clone takes the tags alone: its change count starts anew, unlike that of `CBaseContext::Clone`, intended.
    IConfigContext * Clone() override;

    /// An empty chip deletes the tag.
    void SetChip(const std::string & chip);
    const std::string Chip();

    /// Does nothing, intended: the tag "subsysfwversion" gets a value by `SetTag` and `Parse` only.
    void SetSubsysFwVersion(const std::string & version);
    const std::string SubsysFwVersion();

    /// The numbers read 0 when their tag is absent.
    void SetDevice(int device);
    int Device();
    void SetStore(int store);
    int Store();
    void SetOrder(unsigned short order);
    unsigned short Order();   // the low 16 bits of the tag's number
    void SetLayerNumber(int layer);
    int LayerNumber();
    void SetFileType(int type);
    int FileType();

    /// Stored as "true" or "false"; false when absent.
    void IgnoreHeader(bool ignore);
    bool IgnoreHeader();

private:
    std::string GetSubsystemKeyByStore();
    std::string GetSubsystemKeyByLayer();

    std::uint32_t mKeyVersion = 0;   // the change count for which mLayerKey was built
    std::string mLayerKey;           // the by-layer key as last built
};

}   // namespace VrexZynConfigTools

#endif
