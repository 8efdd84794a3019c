/// @file
/// The description of a chip system, as a metadata plug-in delivers it: its chips and subsystems, the records of its
/// keys, and the mapping between the names of subsystems and their types.
///
/// @code
/// #include <configtools/metadata.h>
/// #include <configtools/zyncontext.h>
///
/// std::string RangeOf(VrexZynConfigTools::IMetadataProvider & provider, const std::string & key)
/// {
///     VrexZynConfigTools::CZynContext context;
///     context.SetChip("trindle7");
///     context.SetSubsystemType(VrexZynConfigTools::SUBSYSTEM_BT);
///     const VrexZynConfigTools::IMetadata & record = provider.MetadataByName(key, context);
///     return record.IsValid() ? std::to_string(record.Min()) + " to " + std::to_string(record.Max()) : "unknown key";
/// }
/// @endcode

#ifndef CONFIGTOOLS_METADATAPROVIDER_H
#define CONFIGTOOLS_METADATAPROVIDER_H

#include <configtools/export.h>
#include <configtools/readerwriter.h>
#include <configtools/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class IConfigContext;
class IElementProvider;
class IMetadata;

/// One subsystem of a chip system, as texts; an unknown one is empty. The order of the virtual operations is a binary
/// contract.
class CONFIGTOOLS_EXPORT ISubsystemInfo
{
public:
    /// The subsystem's keyword, such as "wlan", which `CSubsystemInfo::GetSubsystemType` maps to its type.
    virtual const std::string Name() const = 0;

    /// The version of the subsystem's firmware.
    virtual const std::string Version() const = 0;

    /// Another name by which people call the subsystem; `CHelper::SubsystemFromString` accepts it.
    virtual const std::string Alias() const = 0;

    /// The layer of the subsystem in its repository; the layered store doesn't use it.
    virtual const std::string Layer() const = 0;

    /// A description for people.
    virtual const std::string Description() const = 0;

    /// When the description was built, in the words of the repository.
    virtual const std::string BuildDate() const = 0;

    /// The variant of the subsystem.
    virtual const std::string Variant() const = 0;
    virtual ~ISubsystemInfo() = default;
};

/// A record of the texts that it was made with, and the mapping between the names of subsystems and their types.
class CONFIGTOOLS_EXPORT CSubsystemInfo : public ISubsystemInfo
{
public:
    /// The texts come in another order than the operations, intended: plug-ins are built against either order.
    CSubsystemInfo(const std::string & name, const std::string & version, const std::string & alias,
        const std::string & layer, const std::string & variant, const std::string & description,
        const std::string & buildDate);

    const std::string Name() const override;
    const std::string Version() const override;
    const std::string Alias() const override;
    const std::string Layer() const override;
    const std::string Description() const override;
    const std::string BuildDate() const override;
    const std::string Variant() const override;

    /// The type that a keyword such as "wlan" names, without regard to case; `SUBSYSTEM_UNKNOWN` for any other text, an
    /// alias among them.
    static SubSystemTypeEnum GetSubsystemType(const std::string & name);

    /// The keyword of a type; empty for `SUBSYSTEM_UNKNOWN` and any value outside the enumeration.
    static std::string GetSubsystemType(SubSystemTypeEnum type);

private:
    std::string mName;
    std::string mVersion;
    std::string mAlias;
    std::string mLayer;
    std::string mVariant;
    std::string mDescription;
    std::string mBuildDate;
};

/// One chip of a chip system, as texts; an unknown one is empty. The order of the virtual operations is a binary
/// contract.
class CONFIGTOOLS_EXPORT IChipInfo
{
public:
    /// The name of the chip, for people.
    virtual const std::string ChipName() const = 0;

    /// The number of the chip as decimal text; any other text counts as 0.
    virtual const std::string ChipId() const = 0;

    /// The name of the chip's ROM.
    virtual const std::string RomName() const = 0;

    /// The version of the chip's ROM.
    virtual const std::string RomVersion() const = 0;

    /// The value of the chip's fuses as decimal text, or `keywords::MULTIPLE_EFUSES` if the chip exists with several;
    /// any other text means that the value isn't known.
    virtual const std::string EfuseHash() const = 0;

    /// What selects the chip: the value of the tag "chip".
    virtual const std::string SystemVersionLabel() const = 0;

    /// A description of the system, for people.
    virtual const std::string SystemDescription() const = 0;

    /// The version of the system.
    virtual const std::string SystemVersion() const = 0;

    /// When the description was built, in the words of the repository.
    virtual const std::string BuildDate() const = 0;
    virtual ~IChipInfo() = default;
};

/// A record of the texts that it was made with.
class CONFIGTOOLS_EXPORT CChipInfo : public IChipInfo
{
public:
    /// The texts in the order of the operations.
    CChipInfo(const std::string & chipName, const std::string & chipId, const std::string & romName,
        const std::string & romVersion, const std::string & efuseHash, const std::string & systemVersionLabel,
        const std::string & systemDescription, const std::string & systemVersion,
        const std::string & buildDate);

    const std::string ChipName() const override;
    const std::string ChipId() const override;
    const std::string RomName() const override;
    const std::string RomVersion() const override;
    const std::string EfuseHash() const override;
    const std::string SystemVersionLabel() const override;
    const std::string SystemDescription() const override;
    const std::string SystemVersion() const override;
    const std::string BuildDate() const override;

private:
    std::string mChipName;
    std::string mChipId;
    std::string mRomName;
    std::string mRomVersion;
    std::string mEfuseHash;
    std::string mSystemVersionLabel;
    std::string mSystemDescription;
    std::string mSystemVersion;
    std::string mBuildDate;
};

/// Describes what chip systems consist of and what their keys mean. A metadata plug-in implements it; readers,
/// writers and tools call it. The order of the virtual operations is a binary contract.
///
/// A context selects a system by its tag "chip", the label of one of the system's chips, which is compared exactly.
/// Without the tag all systems are meant, in the order of `Systems`; a label that no chip has selects none, and every
/// result is empty. The tag "subsystemtype" restricts the results about records to one subsystem.
///
/// Whatever is returned by reference stays the provider's. A record exists as long as its provider, a list until the
/// next call. A failure, such as a repository that can't be read, leaves an error in `GROUP_FRAMEWORK` and gives the
/// empty result.
class CONFIGTOOLS_EXPORT IMetadataProvider
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IMetadataProvider() = default;
    IMetadataProvider(const IMetadataProvider &) = default;
    IMetadataProvider & operator=(const IMetadataProvider &) { return *this; }
    ///@}

    /// The record of the key with this number, or the null record, whose `IsValid` is false. If several subsystems or
    /// systems have the number, it is the record of the first, in the order of `Systems` and `Subsystems`.
    virtual const IMetadata & MetadataById(std::uint32_t psId, IConfigContext & context) = 0;

    /// As `MetadataById`, by the name of the key, which is compared without regard to case, as the names of elements
    /// are.
    virtual const IMetadata & MetadataByName(const std::string & name, IConfigContext & context) = 0;

    /// Every record that the context selects, subsystem by subsystem, in ascending order of numbers.
    virtual const std::vector<const IMetadata *> & AllMetadata(IConfigContext & context) = 0;

    /// The names of all systems.
    virtual const std::vector<std::string> & Systems() = 0;

    /// The subsystems, or the chips, of the selected systems. The tag "subsystemtype" plays no part. The vector stays
    /// the provider's; what a caller changes in it lasts, as the vector does, until the next call at least.
    ///@{
    virtual std::vector<ISubsystemInfo *> & Subsystems(IConfigContext & context) = 0;
    virtual std::vector<IChipInfo *> & Chips(IConfigContext & context) = 0;
    ///@}

    /// The name of the selected record that is spelt most like `name`, for a message about an unknown key; empty if
    /// none is similar.
    virtual std::string NearestName(const std::string & name, IConfigContext & context) = 0;

    /// Whether the provider is usable; on false with the reason as an error in `GROUP_FRAMEWORK`.
    virtual bool Check() = 0;

    /// Reads the repository anew. Records that were returned before stay valid, and as they are.
    virtual void Refresh() = 0;

    virtual ~IMetadataProvider() = default;
};

/// Checks a chip system and its configuration. A plug-in may implement it for tools; the library never calls it. What
/// is wrong is reported as an error in `GROUP_FRAMEWORK`, and the result is false. The order of the virtual
/// operations is a binary contract.
class CONFIGTOOLS_EXPORT ISystemValidator
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    ISystemValidator() = default;
    ISystemValidator(const ISystemValidator &) = default;
    ISystemValidator & operator=(const ISystemValidator &) { return *this; }
    ///@}

    /// Whether the description of the system that the context selects is consistent.
    virtual bool ValidateSystem(IConfigContext & context) = 0;

    /// Whether the elements, looked up in the subsystem and layer that the context names, fit that system.
    virtual bool ValidateElements(const IElementProvider & elements, IConfigContext & context) = 0;

    virtual ~ISystemValidator() = default;
};

/// A base for metadata providers. It is a reader too, so that a provider can deliver the default values of its keys; a
/// plug-in implements `Read` and the operations of `IMetadataProvider` ahead of `Check`.
class CONFIGTOOLS_EXPORT CBaseMetadataProvider : public IMetadataProvider, public IConfigReader
{
public:
    /// `source` names the repository; its meaning is the derived class's. There are no observers at first.
    explicit CBaseMetadataProvider(const std::string & source);

    /// Copies and moves take all members: both providers use the same observers afterwards.
    ///@{
    CBaseMetadataProvider(const CBaseMetadataProvider & other);
    CBaseMetadataProvider(CBaseMetadataProvider && other) noexcept;
    CBaseMetadataProvider & operator=(const CBaseMetadataProvider & other);
    CBaseMetadataProvider & operator=(CBaseMetadataProvider && other) noexcept;
    ///@}
    ~CBaseMetadataProvider() override;

    /// True.
    bool Check() override;

    /// Does nothing.
    void Refresh() override;

    /// Stores the address of the observer, which stays the caller's and must outlive its use.
    ///@{
    void SetObserver(IConfigReaderObserver & observer) override;
    void SetElementObserver(IConfigReaderElementObserver & observer) override;
    ///@}

    /// Does nothing: this object is its own provider.
    void SetMetadataProvider(IMetadataProvider & provider) override;

protected:
    /// The text given to the constructor.
    std::string mSource;
    /// Not owned; null at first.
    IConfigReaderObserver * mObserver;
    /// Not owned; null at first.
    IConfigReaderElementObserver * mElementObserver;
};

}   // namespace VrexZynConfigTools

#endif
