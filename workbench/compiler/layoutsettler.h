/// Structs: their fields with widths, the structs within them, and their sizes.

#ifndef WORKBENCH_COMPILER_LAYOUTSETTLER_H
#define WORKBENCH_COMPILER_LAYOUTSETTLER_H

#include "source.h"

#include <unordered_map>

namespace workbench::compiler {

class CItemSettler;

class CLayoutSettler
{
public:
    CLayoutSettler(Source & source, CItemSettler & items, CSourceFindings & findings);

    /// Finds the layout of a key or field that is a struct, and settles it. `depth`: 1 for a key.
    void SettleStruct(Item & item, int depth);

    void SettleLayout(Layout & layout, int depth);

private:
    bool FindLayout(Item & item);
    void SettleField(Field & field, int depth);
    void SettleWidth(Field & field);
    void SettlePlainWidth(Field & field);
    void SettleStructWidth(Field & field);
    void CheckNumberWidth(const Field & field);
    void CheckTextWidth(const Field & field);
    void CheckPosition(const Field & field);
    void SumUp(Layout & layout);

    std::unordered_map<std::string, std::shared_ptr<Layout>> mStructs;
    std::vector<std::string> mStructNames;
    bool mIsWhole;
    CItemSettler & mItems;
    CSourceFindings & mFindings;
};

}   // namespace workbench::compiler

#endif
