#include "systeminfo.h"

#include <configtools/helper.h>
#include <configtools/stores.h>

namespace workbench {

using namespace VrexZynConfigTools;

// The list of chips is valid only until the provider is asked again.
std::vector<ChipFacts> ChipsOf(const CCatalog & catalog, const CZynContext & context)
{
    std::vector<ChipFacts> chips;
    CZynContext anySystem;
    for (const IChipInfo * const chip : catalog.Provider().Chips(anySystem)) {
        if (chip != nullptr)
            chips.push_back({ chip->SystemVersionLabel(), 0, "", chip->ChipName(), chip->SystemVersion(),
                chip->SystemDescription(), false });
    }
    for (ChipFacts & chip : chips) {
        CZynContext selected = context;
        selected.SetChip(chip.mLabel);
        chip.mNumber = CHelper::Ref().GetAssociatedChipId(&catalog.Provider(), selected);
        chip.mCode = CHelper::Ref().GetRefCodeForSelectedChip(catalog.Provider(), selected, true);
        chip.mIsSelected = chip.mLabel == catalog.Chip();
    }
    return chips;
}

std::vector<SubsystemFacts> SubsystemsOf(const CCatalog & catalog)
{
    std::vector<SubsystemFacts> subsystems;
    CZynContext context = catalog.Context();
    for (const ISubsystemInfo * const subsystem : catalog.Provider().Subsystems(context)) {
        if (subsystem != nullptr)
            subsystems.push_back(
                { subsystem->Name(), subsystem->Alias(), subsystem->Version(), subsystem->Description() });
    }
    return subsystems;
}

std::vector<StoreFacts> StoresOf(const CChipConfig & chip)
{
    std::vector<StoreFacts> stores;
    for (const CStoreInfo * const store : chip.Stores()) {
        StoreFacts facts = { static_cast<int>(stores.size()) + 1, { store->DeviceId(), store->StoreId() }, {},
            {} };
        if (store->StoreSize() != UNKNOWN_SIZE)
            facts.mSize = store->StoreSize();
        if (store->StoreSizeFree() != CStoreInfo::INVALID_STORE_SIZE)
            facts.mFree = store->StoreSizeFree();
        stores.push_back(facts);
    }
    return stores;
}

}   // namespace workbench
