#include "valuelist.h"

#include "scalars.h"

#include <configtools/metadata.h>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

// All but arrays of plain values, whose items stand in the list one by one or not at all.
bool IsSingle(const IMetadata & record)
{
    return !record.IsArray() || record.MetadataType() == METADATA_STRUCT;
}

}   // namespace

CValueList::CValueList(CComplexPayload & instance, CMetadataDetailStruct & layout)
    : mValues(WithoutNulls(instance))
{
    for (const CStructField * const field : *layout.GetStructFields()) {
        const IMetadata * const record = field->Metadata();
        if (record == nullptr)
            continue;
        ++mFieldsLeft[record];
        if (IsSingle(*record))
            ++mSinglesLeft;
    }
}

void CValueList::BeginField(const IMetadata & record)
{
    --mFieldsLeft[&record];
    if (IsSingle(record))
        --mSinglesLeft;
}

std::size_t CValueList::Left() const
{
    return mValues.size() - mNext;
}

IPayload * CValueList::Next() const
{
    return Left() != 0 ? mValues[mNext] : nullptr;
}

IPayload * CValueList::Take()
{
    IPayload * const value = Next();
    if (value != nullptr)
        ++mNext;
    return value;
}

const IMetadata * CValueList::OwnRecord(IPayload & value) const
{
    auto * const user = dynamic_cast<IMetadataUser *>(&value);
    const IMetadata * const record = user != nullptr ? user->Metadata() : nullptr;
    return mFieldsLeft.count(record) != 0 ? record : nullptr;
}

bool CValueList::IsNextFor(const IMetadata & record) const
{
    if (Left() == 0)
        return false;
    const IMetadata * const own = OwnRecord(*Next());
    return own == nullptr || own == &record;
}

bool CValueList::IsNextOwn(const IMetadata & record) const
{
    return Left() != 0 && OwnRecord(*Next()) == &record;
}

bool CValueList::IsSurplus(const IMetadata & record) const
{
    return IsNextOwn(record) && mFieldsLeft.at(&record) == 0;
}

std::vector<IPayload *> CValueList::TakeRun(const IMetadata & record, std::uint64_t most)
{
    std::vector<IPayload *> run;
    while (most == 0 || run.size() < most) {
        const bool isOwn = IsNextOwn(record);
        const bool isFree =
            IsNextFor(record) && Left() > mSinglesLeft && dynamic_cast<CComplexPayload *>(Next()) == nullptr;
        if (!isOwn && !isFree)
            break;
        run.push_back(Take());
    }
    return run;
}

}   // namespace kit::layout
