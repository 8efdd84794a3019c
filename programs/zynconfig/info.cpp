#include "commands.h"
#include "json.h"
#include "lines.h"
#include "session.h"

#include <configtools/helper.h>
#include <configtools/stores.h>
#include <kit/text/utf8.h>
#include <workbench/catalog.h>
#include <workbench/errors.h>
#include <workbench/losses.h>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Printable;

namespace {

struct ToldChip
{
    std::string mLabel;
    int mNumber;   // the low byte, as the library tells chips apart
    std::string mCode;
    std::string mName;
    std::string mSystem;
    std::string mDescription;
    bool mIsSelected;
};

struct ToldSubsystem
{
    std::string mName;
    std::string mAlias;
    std::string mVersion;
    std::string mDescription;
};

struct ToldStore
{
    int mLayer;
    Store mStore;
    std::optional<std::uint32_t> mSize;   // in bytes; none: unknown
    std::optional<std::int32_t> mFree;
};

struct ToldSystem
{
    std::vector<ToldChip> mChips;
    std::vector<ToldSubsystem> mSubsystems;
    std::vector<ToldStore> mStores;
};

// The list of chips stands only until the provider is asked again.
std::vector<ToldChip> ChipsOf(const CCatalog & catalog, const CZynContext & context)
{
    std::vector<ToldChip> chips;
    CZynContext anySystem;
    for (const IChipInfo * const chip : catalog.Provider().Chips(anySystem)) {
        if (chip != nullptr)
            chips.push_back({ chip->SystemVersionLabel(), 0, "", chip->ChipName(), chip->SystemVersion(),
                chip->SystemDescription(), false });
    }
    for (ToldChip & chip : chips) {
        CZynContext selected = context;
        selected.SetChip(chip.mLabel);
        chip.mNumber = CHelper::Ref().GetAssociatedChipId(&catalog.Provider(), selected);
        chip.mCode = CHelper::Ref().GetRefCodeForSelectedChip(catalog.Provider(), selected, true);
        chip.mIsSelected = chip.mLabel == catalog.Chip();
    }
    return chips;
}

std::vector<ToldSubsystem> SubsystemsOf(const CCatalog & catalog)
{
    std::vector<ToldSubsystem> subsystems;
    CZynContext context = catalog.Context();
    for (const ISubsystemInfo * const subsystem : catalog.Provider().Subsystems(context)) {
        if (subsystem != nullptr)
            subsystems.push_back(
                { subsystem->Name(), subsystem->Alias(), subsystem->Version(), subsystem->Description() });
    }
    return subsystems;
}

std::vector<ToldStore> StoresOf(const CChipConfig & chip)
{
    std::vector<ToldStore> stores;
    for (const CStoreInfo * const store : chip.Stores()) {
        ToldStore told = { static_cast<int>(stores.size()) + 1, { store->DeviceId(), store->StoreId() }, {},
            {} };
        if (store->StoreSize() != UNKNOWN_SIZE)
            told.mSize = store->StoreSize();
        if (store->StoreSizeFree() != CStoreInfo::INVALID_STORE_SIZE)
            told.mFree = store->StoreSizeFree();
        stores.push_back(told);
    }
    return stores;
}

void AddPart(const char * title, const Cells & heading, const std::vector<Cells> & rows, CLineMaker & lines)
{
    if (rows.empty())
        return;
    lines.Add(title, BOLD);
    AddTable(heading, rows, lines);
    lines.Add("");
}

void AddChips(const ToldSystem & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    bool isAnySelected = false;
    for (const ToldChip & chip : system.mChips) {
        isAnySelected = isAnySelected || chip.mIsSelected;
        rows.push_back({ chip.mIsSelected ? "*" : "", Printable(chip.mLabel), std::to_string(chip.mNumber),
            Printable(chip.mCode), Printable(chip.mName), Printable(chip.mSystem),
            Printable(chip.mDescription) });
    }
    AddPart("Chips", { "", "LABEL", "NUMBER", "CODE", "NAME", "VERSION", "DESCRIPTION" }, rows, lines);
}

void AddSubsystems(const ToldSystem & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const ToldSubsystem & subsystem : system.mSubsystems)
        rows.push_back({ Printable(subsystem.mName), Printable(subsystem.mAlias), Printable(subsystem.mVersion),
            Printable(subsystem.mDescription) });
    AddPart("Subsystems", { "NAME", "ALIAS", "VERSION", "DESCRIPTION" }, rows, lines);
}

template <typename NumberT>
std::string TextOrUnknown(const std::optional<NumberT> & number)
{
    return number ? std::to_string(*number) : "unknown";
}

void AddStores(const ToldSystem & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const ToldStore & store : system.mStores)
        rows.push_back({ std::to_string(store.mLayer), NameOf(store.mStore), TextOrUnknown(store.mSize),
            TextOrUnknown(store.mFree) });
    AddPart("Stores, from bottom to top, in bytes", { "LAYER", "STORE", "SIZE", "FREE" }, rows, lines);
}

std::string Render(const ToldSystem & system)
{
    CLineMaker lines(StyleOfOutput());
    AddChips(system, lines);
    AddSubsystems(system, lines);
    AddStores(system, lines);
    std::string text = lines.Take();
    if (!text.empty())
        text.pop_back();   // the empty line behind the last part
    return text.empty() ? "No stores\n" : text;
}

template <typename NumberT>
Json JsonOf(const std::optional<NumberT> & number)
{
    return number ? Json(*number) : Json();
}

std::string RenderJson(const ToldSystem & system)
{
    Json chips = Json::array();
    for (const ToldChip & chip : system.mChips)
        chips.push_back({ { "label", JsonText(chip.mLabel) }, { "number", chip.mNumber },
            { "reference_code", JsonText(chip.mCode) }, { "name", JsonText(chip.mName) },
            { "version", JsonText(chip.mSystem) }, { "description", JsonText(chip.mDescription) },
            { "selected", chip.mIsSelected } });
    Json subsystems = Json::array();
    for (const ToldSubsystem & subsystem : system.mSubsystems)
        subsystems.push_back({ { "name", JsonText(subsystem.mName) }, { "alias", JsonText(subsystem.mAlias) },
            { "version", JsonText(subsystem.mVersion) }, { "description", JsonText(subsystem.mDescription) } });
    Json stores = Json::array();
    for (const ToldStore & store : system.mStores)
        stores.push_back({ { "layer", store.mLayer }, { "device", JsonOfDevice(store.mStore) },
            { "store", JsonOfNumber(store.mStore.mNumber) }, { "size", JsonOf(store.mSize) },
            { "free", JsonOf(store.mFree) } });
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chips", std::move(chips) },
        { "subsystems", std::move(subsystems) }, { "stores", std::move(stores) } });
}

// The label of the files selects the chip, else the command line's.
bool AddMetadata(CSession & session, const std::string & label, ToldSystem & system)
{
    if (session.Metadata() == nullptr)
        return true;
    CCatalog catalog(*session.Metadata(), session.ReadContext());
    // Without a selection there is something to tell all the same: the chips from which to choose.
    const bool isSelected = label.empty() ? catalog.SelectOnly() : catalog.Select(label);
    system.mChips = ChipsOf(catalog, session.ReadContext());
    system.mSubsystems = SubsystemsOf(catalog);
    return isSelected;
}

}   // namespace

bool Info(CSession & session)
{
    ToldSystem system;
    std::string label = session.Asked().mChip;
    bool isWell = true;
    if (!session.Asked().mFiles.empty()) {
        if (!session.ReadAll())
            return false;
        isWell = !ReportErrors(LossesOfRead(session.Chip(), session.Watch()));
        system.mStores = StoresOf(session.Chip());
        label = label.empty() ? session.Watch().Chip() : label;
    }
    isWell = AddMetadata(session, label, system) && isWell;
    return WriteOutput(session.Asked().mIsJson ? RenderJson(system) : Render(system)) && isWell;
}

}   // namespace zynconfig
