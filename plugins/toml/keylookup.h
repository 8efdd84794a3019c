/// Which record a key of a file means.

#ifndef TOMLCONFIG_KEYLOOKUP_H
#define TOMLCONFIG_KEYLOOKUP_H

#include "values.h"

#include <configtools/context.h>
#include <configtools/metadataprovider.h>

#include <toml++/toml.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tomlconfig {

/// Asks a metadata provider. What it complains of is one finding, and then it isn't asked any more.
class CKeyLookup
{
public:
    /// Both stay the caller's and must outlive this object.
    CKeyLookup(IMetadataProvider & provider, CFindings & findings);

    /// A finding if no chip has the label in `context`; then there are no records to be had, and no findings for keys.
    void CheckChip(const toml::source_position & place, IConfigContext & context);

    /// The record of the key that has the number, the name or both of `table`; null, with a finding, if there is none.
    /// The context names chip and subsystem.
    const IMetadata * KeyOf(const toml::table & table, IConfigContext & context);

    /// Null, without a finding, for a number that isn't known.
    const IMetadata * ById(std::uint32_t psId, const toml::node & place, IConfigContext & context);

private:
    const IMetadata * ByName(const std::string & name, const toml::node & place, IConfigContext & context);
    template <typename AskT>
    const IMetadata * Ask(const toml::source_position & place, AskT ask);
    std::uint32_t NumberOf(const toml::node & node);
    void AddUnreadable(const toml::source_position & place, const std::string & error);
    void AddUnknown(const toml::node & node, const std::string & name, IConfigContext & context);
    bool Agree(const toml::node & node, const std::string & name, const IMetadata & record);

    IMetadataProvider & mProvider;
    CFindings & mFindings;
    CValueReader mValues;
    bool mIsUsable = true;
    int mAdvised = 0;   // unknown keys for which a name was looked for
};

}   // namespace tomlconfig

#endif
