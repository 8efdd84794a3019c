#include <configtools/metadata.h>

#include "changes.h"
#include "cutwalks.h"
#include <messages/trace.h>
#include <misc/keepforever.h>

#include <array>
#include <tuple>

namespace VrexZynConfigTools {

constinit std::atomic<std::uint64_t> metadataChanges = 1;

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

const char * TextOf(bool value)
{
    return value ? "true" : "false";
}

// Indexed by MetadataTypeEnum.
constexpr std::array TYPE_TEXTS = { "simple", "enum", "struct", "unknown" };
static_assert(TYPE_TEXTS.size() == METADATA_NONE + 1);

const char * TextOf(MetadataTypeEnum type)
{
    return type >= METADATA_SIMPLE && type < METADATA_NONE ? TYPE_TEXTS[static_cast<std::size_t>(type)]
                                                           : TYPE_TEXTS.back();
}

}   // namespace

CMetadata::CMetadata()
    : CMetadata(0, 0, "", "", "", false, "", 0, 0, "", "", "", false, 0, 0, "", "", "", "", "", "", "", "", 0,
          METADATA_NONE)
{}

CMetadata::CMetadata(int uid, std::uint32_t psId, const std::string & name, const std::string & label,
    const std::string & category, bool isInternal, const std::string & format, std::int64_t min,
    std::int64_t max, const std::string & oid, const std::string & internalType, const std::string & units,
    bool isArray, std::int64_t arrayMinLength, std::int64_t arrayMaxLength, const std::string & tableName,
    const std::string & description, const std::string & descriptionInternal,
    const std::string & sourceReference, const std::string & sourceDefault, const std::string & accessRights,
    const std::string & temporality, const std::string & hash, std::uint32_t numIndices,
    MetadataTypeEnum metadataType)
    : mUid(uid)
    , mPsId(psId)
    , mName(name)
    , mLabel(label)
    , mCategory(category)
    , mIsInternal(isInternal)
    , mFormat(format)
    , mMin(min)
    , mMax(max)
    , mOid(oid)
    , mInternalType(internalType)
    , mUnits(units)
    , mIsArray(isArray)
    , mArrayMinLength(arrayMinLength)
    , mArrayMaxLength(arrayMaxLength)
    , mTableName(tableName)
    , mDescription(description)
    , mDescriptionInternal(descriptionInternal)
    , mSourceReference(sourceReference)
    , mSourceDefault(sourceDefault)
    , mAccessRights(accessRights)
    , mTemporality(temporality)
    , mHash(hash)
    , mNumIndices(numIndices)
    , mMetadataType(metadataType)
    , mDetails(nullptr)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::CMetadata");
}

CMetadata::CMetadata(const CMetadata & other) = default;

CMetadata & CMetadata::operator=(const CMetadata & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::operator=");

    ++metadataChanges;
    // What this record held is forgotten without being freed, intended: another copy may share it.
    KeepForEver(mDetails);
    for (const CTableIndex * const index : mTableIndices)
        KeepForEver(index);

    CMetadata copy(other);
    Swap(copy);
    copy.mDetails = nullptr;
    copy.mTableIndices.clear();
    return *this;
}

CMetadata::~CMetadata()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::~CMetadata");

    ++metadataChanges;
    delete mDetails;
    for (const CTableIndex * const index : mTableIndices)
        delete index;
}

int CMetadata::Uid() const
{
    return mUid;
}

std::uint32_t CMetadata::PsId() const
{
    return mPsId;
}

std::string CMetadata::Name() const
{
    return mName;
}

std::string CMetadata::Label() const
{
    return mLabel;
}

std::string CMetadata::Category() const
{
    return mCategory;
}

bool CMetadata::IsInternal() const
{
    return mIsInternal;
}

std::string CMetadata::Format() const
{
    return mFormat;
}

std::int64_t CMetadata::Min() const
{
    return mMin;
}

std::int64_t CMetadata::Max() const
{
    return mMax;
}

std::string CMetadata::Oid() const
{
    return mOid;
}

std::string CMetadata::InternalType() const
{
    return mInternalType;
}

std::string CMetadata::Units() const
{
    return mUnits;
}

bool CMetadata::IsArray() const
{
    return mIsArray;
}

std::int64_t CMetadata::ArrayMinLength() const
{
    return mArrayMinLength;
}

std::int64_t CMetadata::ArrayMaxLength() const
{
    return mArrayMaxLength;
}

std::string CMetadata::TableName() const
{
    return mTableName;
}

std::string CMetadata::Description() const
{
    return mDescription;
}

std::string CMetadata::DescriptionInternal() const
{
    return mDescriptionInternal;
}

std::string CMetadata::SourceReference() const
{
    return mSourceReference;
}

std::string CMetadata::SourceDefault() const
{
    return mSourceDefault;
}

std::string CMetadata::AccessRights() const
{
    return mAccessRights;
}

std::string CMetadata::Temporality() const
{
    return mTemporality;
}

std::string CMetadata::Hash() const
{
    return mHash;
}

MetadataTypeEnum CMetadata::MetadataType() const
{
    return mMetadataType;
}

IMetadataDetail * CMetadata::Details() const
{
    return mDetails;
}

bool CMetadata::IsValid() const
{
    return true;
}

std::uint32_t CMetadata::NumIndices() const
{
    return mNumIndices;
}

CTableIndex * CMetadata::TableIndex(std::uint16_t position) const
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::TableIndex");

    if (NumIndices() == 0 || position == 0 || position > mTableIndices.size())
        return nullptr;
    return mTableIndices[position - 1U];
}

std::string CMetadata::ToString(const std::string & separator) const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadata::ToString", result);

    const std::string items[] = { std::to_string(Uid()), std::to_string(PsId()), Name(), Label(), Category(),
        TextOf(IsInternal()), Format(), std::to_string(Min()), std::to_string(Max()), Oid(), InternalType(),
        Units(), TextOf(IsArray()), TableName(), '"' + Description() + '"', DescriptionInternal(),
        SourceReference(), SourceDefault(), AccessRights(), Temporality(), Hash(), TextOf(MetadataType()) };
    for (const std::string & item : items)
        result.append(item).append(separator);
    if (IMetadataDetail * const details = Details())
        result += details->ToString(separator);
    return result;
}

void CMetadata::Inspect(IMetadataInspectorObserver & observer) const
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::Inspect");

    const bool isKey = mPsId != 0;
    if (isKey) {
        observer.StartElement(*this);
        InspectIndices(observer);
    }
    InspectDetails(observer);
    if (isKey)
        observer.EndElement();
}

void CMetadata::InspectIndices(IMetadataInspectorObserver & observer) const
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::InspectIndices");

    for (const CTableIndex * const index : mTableIndices) {
        if (index == nullptr)
            continue;
        if (index->Type() == CTableIndex::INDEX_INTEGER)
            observer.IntIndex(*index);
        else
            observer.EnumIndex(*index);
    }
}

void CMetadata::InspectDetails(IMetadataInspectorObserver & observer) const
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::InspectDetails");

    while (IMetadataDetail * const details = Details()) {
        if (!IsArray()) {
            details->Inspect(observer);
            return;
        }
        const std::uint64_t leftOut = structsLeftOut;
        observer.StartArrayItem();
        details->Inspect(observer);
        observer.EndArrayItem();
        // A walk that was cut off would be cut off in each further item too, and ask for values without an end.
        if (structsLeftOut != leftOut || !observer.InspectDetailAgain())
            return;
        // A field that is itself an array of structs ends after one item whatever the observer answers, intended.
        if (mPsId == 0 && details->GetStructFields() != nullptr)
            return;
    }
}

void CMetadata::SetDetails(IMetadataDetail & details)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::SetDetails");

    ++metadataChanges;
    if (mDetails != &details)
        KeepForEver(mDetails);   // dropped without being freed, intended
    mDetails = &details;
}

void CMetadata::AddTableIndex(CTableIndex * index)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadata::AddTableIndex");

    mTableIndices.push_back(index);
}

void CMetadata::Swap(CMetadata & other) noexcept
{
    const auto fieldsOf = [](CMetadata & record) {
        return std::tie(record.mUid, record.mPsId, record.mName, record.mLabel, record.mCategory,
            record.mIsInternal, record.mFormat, record.mMin, record.mMax, record.mOid, record.mInternalType,
            record.mUnits, record.mIsArray, record.mArrayMinLength, record.mArrayMaxLength, record.mTableName,
            record.mDescription, record.mDescriptionInternal, record.mSourceReference, record.mSourceDefault,
            record.mAccessRights, record.mTemporality, record.mHash, record.mNumIndices, record.mMetadataType,
            record.mDetails, record.mTableIndices);
    };
    auto mine = fieldsOf(*this);
    auto theirs = fieldsOf(other);
    mine.swap(theirs);
}

CNullMetadata::CNullMetadata() = default;

bool CNullMetadata::IsValid() const
{
    return false;
}

void CNullMetadata::Inspect(IMetadataInspectorObserver & /*observer*/) const
{
    // There is nothing to walk.
}

}   // namespace VrexZynConfigTools
