#include "defaults.h"

#include "chipwalk.h"

#include <configtools/readerwriter.h>

#include <algorithm>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

// Where a system has several chips and none is selected, the first one's values are told.
std::string ChipFor(const CCatalog & catalog, CZynContext & context)
{
    if (!catalog.Chip().empty())
        return catalog.Chip();
    const std::vector<IChipInfo *> & chips = catalog.Provider().Chips(context);
    return chips.empty() || chips.front() == nullptr ? "" : chips.front()->SystemVersionLabel();
}

}   // namespace

std::vector<DefaultValue> DefaultsOf(const CCatalog & catalog, const Record & record)
{
    auto * const reader = dynamic_cast<IConfigReader *>(&catalog.Provider());
    if (reader == nullptr)
        return {};
    CZynContext context = catalog.Context(record.mSubsystem);
    context.SetChip(ChipFor(catalog, context));
    CChipConfig chip;
    reader->SetObserver(chip);
    reader->Read(context);

    std::vector<DefaultValue> defaults;
    ForEachElement(chip, [&](const ChipEntry & entry) {
        if (entry.mKey.mSubsystem == record.mSubsystem && entry.mKey.mId == record.mMetadata->PsId())
            defaults.push_back({ entry.mKey, ValueOf(*entry.mElement) });
    });
    std::sort(defaults.begin(), defaults.end(),
        [](const DefaultValue & left, const DefaultValue & right) { return left.mKey < right.mKey; });
    return defaults;
}

}   // namespace workbench
