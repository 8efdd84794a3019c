/// The description of a chip system, as a metadata plug-in knows it: its chips and subsystems, the records of its keys,
/// and the mapping between the names of subsystems and their types.

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

/// One subsystem of a chip system. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT ISubsystemInfo
{
public:
    virtual const std::string Name() const = 0;
    virtual const std::string Version() const = 0;
    virtual const std::string Alias() const = 0;
    virtual const std::string Layer() const = 0;
    virtual const std::string Description() const = 0;
    virtual const std::string BuildDate() const = 0;
    virtual const std::string Variant() const = 0;
    virtual ~ISubsystemInfo() = default;
};

/// The texts as given at construction. Note that the arguments come in another order than the operations, intended.
class CONFIGTOOLS_EXPORT CSubsystemInfo : public ISubsystemInfo
{
public:
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

    /// The type that a keyword such as "wlan" names, without regard to case; `SUBSYSTEM_UNKNOWN` for any other text.
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

/// One chip of a chip system. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IChipInfo
{
public:
    virtual const std::string ChipName() const = 0;

    /// The chip's number as decimal text.
    virtual const std::string ChipId() const = 0;
    virtual const std::string RomName() const = 0;
    virtual const std::string RomVersion() const = 0;

    /// The fuses' value as decimal text, or `keywords::MULTIPLE_EFUSES` where the chip exists with several; any other
    /// text means that it isn't known.
    virtual const std::string EfuseHash() const = 0;

    /// What selects the chip: the contents of the tag "chip".
    virtual const std::string SystemVersionLabel() const = 0;
    virtual const std::string SystemDescription() const = 0;
    virtual const std::string SystemVersion() const = 0;
    virtual const std::string BuildDate() const = 0;
    virtual ~IChipInfo() = default;
};

/// The texts as given at construction, in the order of the operations.
class CONFIGTOOLS_EXPORT CChipInfo : public IChipInfo
{
public:
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

/// Knows what chip systems consist of and what their keys mean. A metadata plug-in implements it; readers, writers and
/// tools ask it. The order of the virtual operations is a binary contract.
///
/// A context selects a system by its tag "chip", the label of one of the system's chips, which is compared exactly.
/// Without the tag all systems are meant, in the order of `Systems`; a label that no chip has selects none, and every
/// answer is empty. The tag "subsystemtype" narrows the answers about records to one subsystem.
///
/// Whatever is returned by reference stays the provider's. A record lives as long as its provider, a list until the
/// next call. A failure, such as a repository that can't be read, leaves an error in `GROUP_FRAMEWORK` and gives the
/// empty answer.
class CONFIGTOOLS_EXPORT IMetadataProvider
{
public:
    IMetadataProvider() = default;
    IMetadataProvider(const IMetadataProvider &) = default;
    IMetadataProvider & operator=(const IMetadataProvider &) { return *this; }

    /// The record of the key with this number, or the null record (`IsValid` is false). Where several subsystems or
    /// systems have the number, the first in the order of `Systems` and `Subsystems` answers.
    virtual const IMetadata & MetadataById(std::uint32_t psId, IConfigContext & context) = 0;

    /// The same by name, which is compared without regard to case, as the names of elements are.
    virtual const IMetadata & MetadataByName(const std::string & name, IConfigContext & context) = 0;

    /// Every record selected, subsystem by subsystem, in ascending order of numbers.
    virtual const std::vector<const IMetadata *> & AllMetadata(IConfigContext & context) = 0;

    /// The names of all systems.
    virtual const std::vector<std::string> & Systems() = 0;

    /// The subsystems and the chips of the systems selected. The tag "subsystemtype" plays no part. The vectors are the
    /// provider's, and what a caller changes in one lasts, like the vector itself, until the next call at least.
    virtual std::vector<ISubsystemInfo *> & Subsystems(IConfigContext & context) = 0;
    virtual std::vector<IChipInfo *> & Chips(IConfigContext & context) = 0;

    /// The name of the record selected that is spelt most like `name`, for a message about an unknown key; empty if
    /// none is like it.
    virtual std::string NearestName(const std::string & name, IConfigContext & context) = 0;

    /// Whether the provider is usable.
    virtual bool Check() = 0;

    /// Makes the provider look at its repository anew. Records handed out before stay valid, and as they are.
    virtual void Refresh() = 0;

    virtual ~IMetadataProvider() = default;
};

/// Judges a chip system and its configuration. A plug-in may implement it; the framework never calls it. What is wrong
/// is reported as an error in `GROUP_FRAMEWORK`, and the result is false.
class CONFIGTOOLS_EXPORT ISystemValidator
{
public:
    ISystemValidator() = default;
    ISystemValidator(const ISystemValidator &) = default;
    ISystemValidator & operator=(const ISystemValidator &) { return *this; }

    /// Whether the description of the system that the context selects is sound.
    virtual bool ValidateSystem(IConfigContext & context) = 0;

    /// Whether the elements, looked up in the subsystem and layer that the context names, fit that system.
    virtual bool ValidateElements(const IElementProvider & elements, IConfigContext & context) = 0;

    virtual ~ISystemValidator() = default;
};

/// What metadata providers have in common. It is a reader too, so that a provider can deliver the default values of
/// its keys; a plug-in implements `Read` and the questions above.
class CONFIGTOOLS_EXPORT CBaseMetadataProvider : public IMetadataProvider, public IConfigReader
{
public:
    /// `source` says where the metadata is; its meaning is the derived class's.
    explicit CBaseMetadataProvider(const std::string & source);

    /// Member by member: the observers are shared with the source, a moved-from provider keeps its observers.
    CBaseMetadataProvider(const CBaseMetadataProvider & other);
    CBaseMetadataProvider(CBaseMetadataProvider && other) noexcept;
    CBaseMetadataProvider & operator=(const CBaseMetadataProvider & other);
    CBaseMetadataProvider & operator=(CBaseMetadataProvider && other) noexcept;
    ~CBaseMetadataProvider() override;

    bool Check() override;     // true
    void Refresh() override;   // nothing

    /// The addresses are stored; the observers stay the caller's and must outlive their use.
    void SetObserver(IConfigReaderObserver & observer) override;
    void SetElementObserver(IConfigReaderElementObserver & observer) override;

    /// Nothing: this object is its own provider.
    void SetMetadataProvider(IMetadataProvider & provider) override;

protected:
    std::string mSource;
    IConfigReaderObserver * mObserver;                 // not owned; null at first
    IConfigReaderElementObserver * mElementObserver;   // not owned; null at first
};

}   // namespace VrexZynConfigTools

#endif
