/// Keys and fields by themselves: the type and what belongs to it.

#ifndef WORKBENCH_COMPILER_ITEMSETTLER_H
#define WORKBENCH_COMPILER_ITEMSETTLER_H

#include "source.h"

#include <unordered_map>

namespace workbench::compiler {

class CItemSettler
{
public:
    CItemSettler(Source & source, CSourceFindings & findings);

    /// All but what depends on a width. `what`: "a key".
    void Settle(Item & item, const std::string & what);

    /// Format and range of a number that has `width` bits.
    void SettleNumber(Item & item, std::int64_t width);

    /// The enumerators have to fit `width` bits.
    void CheckEnumeratorsFit(const Item & item, std::int64_t width);

    bool CheckOrder(const Placed<NumberRange> & range, const char * name);

    /// `name` is given, but doesn't go with the item's type.
    void RefuseForeign(const char * name, const Item & item, const Place & place);

private:
    void SettleType(Item & item, const std::string & what);
    void SettleFormat(Item & item);
    void SettleLength(Item & item, const std::string & what);
    void SettleEnum(Item & item, const std::string & what);
    void RefuseForeign(const Item & item);

    std::unordered_map<std::string, const SharedEnum *> mEnums;
    std::vector<std::string> mEnumNames;
    bool mIsWhole;
    CSourceFindings & mFindings;
};

}   // namespace workbench::compiler

#endif
