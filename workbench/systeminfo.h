/// What chips and subsystems a system has, and what stores a chip: facts for a list, free of the library's classes.
///
///     for (const workbench::StoreFacts & store : workbench::StoresOf(session.Chip()))
///         Show(store.mLayer, NameOf(store.mStore), store.mSize);

#ifndef WORKBENCH_SYSTEMINFO_H
#define WORKBENCH_SYSTEMINFO_H

#include "catalog.h"

#include <configtools/chipconfig.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// A chip that the metadata know.
struct ChipFacts
{
    /// By which files and callers name the chip.
    std::string mLabel;

    /// The low byte of its number, by which the library distinguishes chips.
    int mNumber;

    /// The reference code, or what the library says where there is none.
    std::string mCode;

    std::string mName;

    /// The version of the system that the chip belongs to.
    std::string mSystem;

    std::string mDescription;

    /// Whether the catalogue has selected it.
    bool mIsSelected;
};

/// A subsystem of the selected system.
struct SubsystemFacts
{
    std::string mName;

    /// Another name; empty for none.
    std::string mAlias;

    std::string mVersion;
    std::string mDescription;
};

/// A store that has a layer.
struct StoreFacts
{
    /// From 1 for the bottom layer.
    int mLayer;

    Store mStore;

    /// The bytes that it holds, and those that are free; none where a reader hasn't said.
    std::optional<std::uint32_t> mSize;
    std::optional<std::int32_t> mFree;
};

/// The chips of all systems, in the provider's order. The tags of `context` go with the questions.
std::vector<ChipFacts> ChipsOf(const CCatalog & catalog, const VrexZynConfigTools::CZynContext & context);

/// In the provider's order.
std::vector<SubsystemFacts> SubsystemsOf(const CCatalog & catalog);

/// From the bottom layer up.
std::vector<StoreFacts> StoresOf(const VrexZynConfigTools::CChipConfig & chip);

}   // namespace workbench

#endif
