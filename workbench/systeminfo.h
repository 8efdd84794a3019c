/// What chips and subsystems a system has, and what stores a chip: facts for a list, free of the library's classes.

#ifndef WORKBENCH_SYSTEMINFO_H
#define WORKBENCH_SYSTEMINFO_H

#include "catalog.h"

#include <configtools/chipconfig.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// A chip that the metadata knows.
struct ChipFacts
{
    std::string mLabel;
    int mNumber;   // the low byte, by which the library distinguishes chips
    std::string mCode;
    std::string mName;
    std::string mSystem;   // the version of the system
    std::string mDescription;
    bool mIsSelected;   // by the catalogue
};

/// A subsystem of the selected system.
struct SubsystemFacts
{
    std::string mName;
    std::string mAlias;
    std::string mVersion;
    std::string mDescription;
};

/// A store that has a layer.
struct StoreFacts
{
    int mLayer;
    Store mStore;
    std::optional<std::uint32_t> mSize;   // in bytes; none: unknown
    std::optional<std::int32_t> mFree;    // likewise
};

/// The chips of all systems, in the provider's order. The tags of `context` go with the questions.
std::vector<ChipFacts> ChipsOf(const CCatalog & catalog, const VrexZynConfigTools::CZynContext & context);

/// In the provider's order.
std::vector<SubsystemFacts> SubsystemsOf(const CCatalog & catalog);

/// From the bottom layer up.
std::vector<StoreFacts> StoresOf(const VrexZynConfigTools::CChipConfig & chip);

}   // namespace workbench

#endif
