/// The description of a chip system: its subsystems, and the mapping between their names and types.

#ifndef CONFIGTOOLS_METADATAPROVIDER_H
#define CONFIGTOOLS_METADATAPROVIDER_H

#include <configtools/export.h>
#include <configtools/types.h>

#include <string>

namespace VrexZynConfigTools {

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

}   // namespace VrexZynConfigTools

#endif
