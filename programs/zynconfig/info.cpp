#include "commands.h"
#include "json.h"
#include "lines.h"

#include <kit/text/utf8.h>
#include <workbench/losses.h>
#include <workbench/systeminfo.h>

namespace zynconfig {

using kit::text::Printable;
using namespace workbench;

namespace {

struct SystemFacts
{
    std::vector<ChipFacts> mChips;
    std::vector<SubsystemFacts> mSubsystems;
    std::vector<StoreFacts> mStores;
};

void AddPart(const char * title, const Cells & heading, const std::vector<Cells> & rows, CLineMaker & lines)
{
    if (rows.empty())
        return;
    lines.Add(title, BOLD);
    AddTable(heading, rows, lines);
    lines.Add("");
}

void AddChips(const SystemFacts & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    bool isAnySelected = false;
    for (const ChipFacts & chip : system.mChips) {
        isAnySelected = isAnySelected || chip.mIsSelected;
        rows.push_back({ chip.mIsSelected ? "*" : "", Printable(chip.mLabel), std::to_string(chip.mNumber),
            Printable(chip.mCode), Printable(chip.mName), Printable(chip.mSystem),
            Printable(chip.mDescription) });
    }
    AddPart("Chips", { "", "LABEL", "NUMBER", "CODE", "NAME", "VERSION", "DESCRIPTION" }, rows, lines);
}

void AddSubsystems(const SystemFacts & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const SubsystemFacts & subsystem : system.mSubsystems)
        rows.push_back({ Printable(subsystem.mName), Printable(subsystem.mAlias), Printable(subsystem.mVersion),
            Printable(subsystem.mDescription) });
    AddPart("Subsystems", { "NAME", "ALIAS", "VERSION", "DESCRIPTION" }, rows, lines);
}

template <typename NumberT>
std::string TextOrUnknown(const std::optional<NumberT> & number)
{
    return number ? std::to_string(*number) : "unknown";
}

void AddStores(const SystemFacts & system, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (const StoreFacts & store : system.mStores)
        rows.push_back({ std::to_string(store.mLayer), NameOf(store.mStore), TextOrUnknown(store.mSize),
            TextOrUnknown(store.mFree) });
    AddPart("Stores, from bottom to top, in bytes", { "LAYER", "STORE", "SIZE", "FREE" }, rows, lines);
}

std::string Render(const SystemFacts & system)
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

std::string RenderJson(const SystemFacts & system)
{
    Json chips = Json::array();
    for (const ChipFacts & chip : system.mChips)
        chips.push_back({ { "label", JsonText(chip.mLabel) }, { "number", chip.mNumber },
            { "reference_code", JsonText(chip.mCode) }, { "name", JsonText(chip.mName) },
            { "version", JsonText(chip.mSystem) }, { "description", JsonText(chip.mDescription) },
            { "selected", chip.mIsSelected } });
    Json subsystems = Json::array();
    for (const SubsystemFacts & subsystem : system.mSubsystems)
        subsystems.push_back({ { "name", JsonText(subsystem.mName) }, { "alias", JsonText(subsystem.mAlias) },
            { "version", JsonText(subsystem.mVersion) }, { "description", JsonText(subsystem.mDescription) } });
    Json stores = Json::array();
    for (const StoreFacts & store : system.mStores)
        stores.push_back({ { "layer", store.mLayer }, { "device", JsonOfDevice(store.mStore) },
            { "store", JsonOfNumber(store.mStore.mNumber) }, { "size", JsonOf(store.mSize) },
            { "free", JsonOf(store.mFree) } });
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chips", std::move(chips) },
        { "subsystems", std::move(subsystems) }, { "stores", std::move(stores) } });
}

// The label of the files selects the chip, else the command line's.
bool AddMetadata(const CSession & session, const std::string & label, SystemFacts & system)
{
    if (session.Metadata() == nullptr)
        return true;
    CCatalog catalog(*session.Metadata(), session.ReadContext(), session.Sink());
    // Without a selection there is something to show all the same: the chips from which to choose.
    const bool isSelected = label.empty() ? catalog.SelectOnly() : catalog.Select(label);
    system.mChips = ChipsOf(catalog, session.ReadContext());
    system.mSubsystems = SubsystemsOf(catalog);
    return isSelected;
}

}   // namespace

bool ShowInfo(Invocation & invocation)
{
    const CSession & session = invocation.mSession;
    const Options & options = invocation.mOptions;
    SystemFacts system;
    std::string label = options.mChip;
    bool isWell = true;
    if (!options.mFiles.empty()) {
        if (!ReadFiles(invocation))
            return false;
        isWell = !PassOn(LossesOfRead(session.Chip(), session.Watch()), session.Sink());
        system.mStores = StoresOf(session.Chip());
        label = label.empty() ? session.Watch().Chip() : label;
    }
    isWell = AddMetadata(session, label, system) && isWell;
    return invocation.mConsole.Write(options.mIsJson ? RenderJson(system) : Render(system)) && isWell;
}

}   // namespace zynconfig
