#include <configtools/metadata.h>

#include "changes.h"
#include "cutwalks.h"
#include <configtools/keywords.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <memory>

namespace VrexZynConfigTools {

constinit std::uint64_t structsLeftOut = 0;

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

constexpr int MAX_NESTING = 64;
constexpr int MAX_STRUCTS = 65536;

/// One walk over structs within structs. Bad metadata may nest without end, or reach one struct on millions of ways:
/// such a walk is cut off. What has been opened is closed, but nothing is opened any more.
struct StructWalk
{
    int mDepth;
    int mStructs;
    bool mIsCutOff;
};

/// One struct on the way of a walk. The outermost one begins the walk anew.
class StructOnWalk
{
public:
    StructOnWalk(StructWalk & walk, const char * function)
        : mWalk(walk)
    {
        if (mWalk.mDepth == 0)
            mWalk = {};
        ++mWalk.mDepth;
        ++mWalk.mStructs;
        if (!mWalk.mIsCutOff && (mWalk.mDepth > MAX_NESTING || mWalk.mStructs > MAX_STRUCTS)) {
            mWalk.mIsCutOff = true;
            ZYN_HANDLER(function).SetErrorMsg(0, "the metadata nests structs too deep");
        }
        if (mWalk.mIsCutOff)
            ++structsLeftOut;
    }
    ~StructOnWalk() { --mWalk.mDepth; }
    StructOnWalk(const StructOnWalk &) = delete;
    StructOnWalk & operator=(const StructOnWalk &) = delete;

    bool IsCutOff() const { return mWalk.mIsCutOff; }

private:
    StructWalk & mWalk;
};

StructWalk inspectWalk = {};
StructWalk printWalk = {};
StructWalk orderWalk = {};

bool IsStruct(const CStructField & field)
{
    return field.Metadata() != nullptr && field.Metadata()->MetadataType() == METADATA_STRUCT;
}

bool FillsWord(const CStructField & field)
{
    // As an unsigned number, so that a negative width counts too, intended.
    return static_cast<unsigned>(field.ElemBitWidth()) >= 16;
}

bool EndsOnWordBoundary(const CStructField & field)
{
    const unsigned end = (static_cast<unsigned>(field.ElemLsbBitPos()) & 0xFFU) +
                         (static_cast<unsigned>(field.ElemBitWidth()) & 0xFFU);
    return (end & 0xFU) == 0;
}

void ReverseWithinWords(std::vector<const CStructField *> & fields)
{
    auto runStart = fields.begin();
    auto cursor = fields.begin();
    while (cursor != fields.end()) {
        const CStructField & field = **cursor;
        if (FillsWord(field)) {
            std::reverse(runStart, cursor);
            runStart = ++cursor;
        } else {
            ++cursor;
            if (EndsOnWordBoundary(field)) {
                std::reverse(runStart, cursor);
                runStart = cursor;
            }
        }
    }
    // A last run that doesn't end on a word boundary stays as it is, intended.
}

}   // namespace

CMetadataDetailSimple::CMetadataDetailSimple(const IMetadata & metadata)
    : mMetadata(&metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailSimple::CMetadataDetailSimple");
}

const CStructField * CMetadataDetailSimple::GetStructField(const std::string & /*name*/)
{
    return nullptr;
}

const std::vector<const CStructField *> * CMetadataDetailSimple::GetStructFields()
{
    return nullptr;
}

const std::map<std::string, int> * CMetadataDetailSimple::GetEnums()
{
    return nullptr;
}

std::string CMetadataDetailSimple::ToString(const std::string & /*separator*/)
{
    return std::string();
}

void CMetadataDetailSimple::Inspect(IMetadataInspectorObserver & observer)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailSimple::Inspect");

    const std::string type = mMetadata->InternalType();
    if (type == keywords::TYPE_STRING || type == keywords::TYPE_OCTET_STRING)
        observer.String(*mMetadata);
    else
        observer.Int(*mMetadata);
}

MetadataTypeEnum CMetadataDetailSimple::MetadataType()
{
    return METADATA_SIMPLE;
}

CMetadataDetailEnum::CMetadataDetailEnum(const IMetadata & metadata)
    : CMetadataDetailSimple(metadata)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailEnum::CMetadataDetailEnum");
}

CMetadataDetailEnum & CMetadataDetailEnum::operator=(const CMetadataDetailEnum & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailEnum::operator=");

    ++metadataChanges;
    CMetadataDetailSimple::operator=(other);
    mEnums = other.mEnums;
    return *this;
}

const std::map<std::string, int> * CMetadataDetailEnum::GetEnums()
{
    return &mEnums;
}

void CMetadataDetailEnum::Inspect(IMetadataInspectorObserver & observer)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailEnum::Inspect");

    observer.Enum(*mMetadata);
}

MetadataTypeEnum CMetadataDetailEnum::MetadataType()
{
    return METADATA_ENUM;
}

void CMetadataDetailEnum::AddEnum(const std::string & name, const std::string & value)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailEnum::AddEnum");

    ++metadataChanges;
    mEnums[name] = stringutil::DecimalToInt(value);
}

int CMetadataDetailEnum::EnumValue(const std::string & name)
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadataDetailEnum::EnumValue", result);

    const auto [found, isAdded] = mEnums.try_emplace(name, 0);   // adds an unknown name, intended
    if (isAdded)
        ++metadataChanges;
    return result = found->second;
}

std::string CMetadataDetailEnum::EnumName(std::int32_t value) const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadataDetailEnum::EnumName", result);

    // Of several names with one value the last answers, intended; a table index gives the first.
    const auto found = std::find_if(mEnums.rbegin(), mEnums.rend(),
        [value](const auto & enumerator) { return enumerator.second == value; });
    if (found != mEnums.rend())
        result = found->first;
    return result;
}

CMetadataDetailStruct::CMetadataDetailStruct(
    const IMetadata & metadata, bool isLittleEndian, bool isOctetsInBin)
    : CMetadataDetailSimple(metadata)
    , mIsLittleEndian(isLittleEndian)
    , mIsOctetsInBin(isOctetsInBin)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::CMetadataDetailStruct");
}

CMetadataDetailStruct::~CMetadataDetailStruct()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::~CMetadataDetailStruct");

    ++metadataChanges;
    for (const CStructField * const field : mFields)
        delete field;
}

const std::vector<const CStructField *> * CMetadataDetailStruct::GetStructFields()
{
    return &mFields;
}

std::string CMetadataDetailStruct::ToString(const std::string & separator)
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadataDetailStruct::ToString", result);

    const StructOnWalk walk(printWalk, zynFunction);
    if (walk.IsCutOff())
        return result;
    for (const CStructField * const field : mFields) {
        if (field->Metadata() != nullptr && !walk.IsCutOff())
            result += field->Metadata()->ToString(separator);
    }
    result += separator;
    return result;
}

void CMetadataDetailStruct::Inspect(IMetadataInspectorObserver & observer)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::Inspect");

    const StructOnWalk walk(inspectWalk, zynFunction);
    if (walk.IsCutOff())
        return;
    observer.StartStruct(*mMetadata);
    for (const CStructField * const field : mFields) {
        if (walk.IsCutOff())
            break;
        observer.SetContextInfo(keywords::TAG_ELEM_BIT_WIDTH, field->ElemBitWidth());
        field->Inspect(observer);
    }
    observer.SetContextInfo(keywords::TAG_ELEM_BIT_WIDTH, std::string());
    observer.EndStruct();
}

MetadataTypeEnum CMetadataDetailStruct::MetadataType()
{
    return METADATA_STRUCT;
}

void CMetadataDetailStruct::AddField(
    const std::string & /*name*/, const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth)
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::AddField");

    ++metadataChanges;
    auto field = std::make_unique<const CStructField>(metadata, elemLsbBitPosition, elemBitWidth);
    mFields.push_back(field.get());
    static_cast<void>(field.release());   // mFields owns it now
}

bool CMetadataDetailStruct::IsLittleEndian() const
{
    return mIsLittleEndian;
}

bool CMetadataDetailStruct::IsOctetsInBin() const
{
    return mIsOctetsInBin;
}

void CMetadataDetailStruct::OrderFieldsForTargetArchitecture()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::OrderFieldsForTargetArchitecture");

    const StructOnWalk walk(orderWalk, zynFunction);
    if (walk.IsCutOff())
        return;
    if (IsNested()) {
        OrderFieldsOfInnerStructs();   // and this level is left as it is, intended
        return;
    }
    SortByAscendingBitPosition();   // which makes known that the order changes
    if (!mIsLittleEndian)
        ReverseWithinWords(mFields);
}

void CMetadataDetailStruct::OrderFieldsOfInnerStructs()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::OrderFieldsOfInnerStructs");

    for (const CStructField * const field : mFields) {
        if (!IsStruct(*field))
            continue;
        if (auto * const inner = dynamic_cast<CMetadataDetailStruct *>(field->Metadata()->Details()))
            inner->OrderFieldsForTargetArchitecture();
    }
}

void CMetadataDetailStruct::SortByAscendingBitPosition()
{
    ZYN_SENTRY("VrexZynConfigTools::CMetadataDetailStruct::SortByAscendingBitPosition");

    ++metadataChanges;
    std::stable_sort(mFields.begin(), mFields.end(), [](const CStructField * left, const CStructField * right) {
        return left->ElemLsbBitPos() < right->ElemLsbBitPos();
    });
}

bool CMetadataDetailStruct::IsNested() const
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CMetadataDetailStruct::IsNested", result);

    return result = std::any_of(
               mFields.begin(), mFields.end(), [](const CStructField * field) { return IsStruct(*field); });
}

CStructField::CStructField(const IMetadata * metadata, int elemLsbBitPosition, int elemBitWidth)
    : mMetadata(metadata)
    , mElemLsbBitPos(elemLsbBitPosition)
    , mElemBitWidth(elemBitWidth)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructField::CStructField");
}

CStructField::~CStructField() = default;

void CStructField::Inspect(IMetadataInspectorObserver & observer) const
{
    ZYN_SENTRY("VrexZynConfigTools::CStructField::Inspect");

    if (mMetadata != nullptr)
        mMetadata->Inspect(observer);
    else
        ZYN_HANDLER(zynFunction).SetErrorMsg(0, "a struct field has no metadata");
}

const IMetadata * CStructField::Metadata() const
{
    return mMetadata;
}

int CStructField::ElemLsbBitPos() const
{
    return mElemLsbBitPos;
}

int CStructField::ElemBitWidth() const
{
    return mElemBitWidth;
}

CTableIndex::CTableIndex(const std::string & name, std::int64_t min, std::int64_t max, IndexTypeEnum type)
    : mName(name)
    , mMin(min)
    , mMax(max)
    , mType(type)
{
    ZYN_SENTRY("VrexZynConfigTools::CTableIndex::CTableIndex");
}

std::string CTableIndex::Name() const
{
    return mName;
}

std::int64_t CTableIndex::Min() const
{
    return mMin;
}

std::int64_t CTableIndex::Max() const
{
    return mMax;
}

CTableIndex::IndexTypeEnum CTableIndex::Type() const
{
    return mType;
}

std::map<std::string, std::int32_t> CTableIndex::Enums() const
{
    return mEnums;
}

std::size_t CTableIndex::EnumCount() const
{
    return mEnums.size();
}

void CTableIndex::AddEnum(const std::string & name, std::int32_t value)
{
    ZYN_SENTRY("VrexZynConfigTools::CTableIndex::AddEnum");

    mEnums[name] = value;
}

std::int32_t CTableIndex::EnumValue(const std::string & name) const
{
    std::int32_t result = -1;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CTableIndex::EnumValue", result);

    const auto found = mEnums.find(name);
    return result = found != mEnums.end() ? found->second : -1;
}

std::string CTableIndex::EnumLabel(std::int32_t value) const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CTableIndex::EnumLabel", result);

    // Of several names with one value the first answers, intended; an enumeration's detail gives the last.
    const auto found = std::find_if(
        mEnums.begin(), mEnums.end(), [value](const auto & enumerator) { return enumerator.second == value; });
    if (found != mEnums.end())
        result = found->first;
    return result;
}

}   // namespace VrexZynConfigTools
