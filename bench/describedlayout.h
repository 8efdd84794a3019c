/// The metadata of a layout, as a provider would have it.

#ifndef BENCH_DESCRIBEDLAYOUT_H
#define BENCH_DESCRIBEDLAYOUT_H

#include "handwritten.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench {

using VrexZynConfigTools::CMetadata;
using VrexZynConfigTools::CMetadataDetailStruct;
using VrexZynConfigTools::MetadataTypeEnum;
namespace keywords = VrexZynConfigTools::keywords;

/// As a plug-in might derive it: the codec asks it field by field.
class ForeignDetail : public CMetadataDetailStruct
{
public:
    using CMetadataDetailStruct::CMetadataDetailStruct;
};

/// The smallest type that a field fits into.
inline const char * TypeOf(int width)
{
    if (width <= 8)
        return keywords::TYPE_UINT8;
    if (width <= 16)
        return keywords::TYPE_UINT16;
    return width <= 32 ? keywords::TYPE_UINT32 : keywords::TYPE_UINT64;
}

inline std::unique_ptr<CMetadata> MakeRecord(std::uint32_t psId, const std::string & type,
    const std::string & format, bool isArray, MetadataTypeEnum shape)
{
    return std::make_unique<CMetadata>(1, psId, "field", "", "", false, format, 0, 65535, "", type, "", isArray,
        0, 100, "", "", "", "", "", "", "", "", 0, shape);
}

/// The metadata of a layout. Every fourth field has a sign.
class Described
{
public:
    template <typename LayoutT>
    explicit Described(const LayoutT & layout, bool isForeign, std::uint32_t psId = 0)
        : mKey(MakeRecord(psId, "", "", false, VrexZynConfigTools::METADATA_STRUCT))
        , mDetail(
              isForeign ? new ForeignDetail(*mKey, true, false) : new CMetadataDetailStruct(*mKey, true, false))
    {
        mKey->SetDetails(*mDetail);
        if (layout.mIsArray)
            AddField(keywords::TYPE_UINT16, true, 0, static_cast<int>(layout.mFields.size()) * 16);
        else
            for (const FieldAt & field : layout.mFields)
                AddField(TypeOf(field.mWidth), false, field.mPosition, field.mWidth);
    }

    const CMetadata & Key() const { return *mKey; }
    CMetadataDetailStruct & Detail() { return *mDetail; }

private:
    void AddField(const std::string & type, bool isArray, int position, int width)
    {
        const bool isSigned = mFields.size() % 4 == 3;
        mFields.push_back(
            MakeRecord(0, type, isSigned ? keywords::FORMAT_SIGNED_DECIMAL : keywords::FORMAT_UNSIGNED_DECIMAL,
                isArray, VrexZynConfigTools::METADATA_SIMPLE));
        mDetail->AddField("", mFields.back().get(), position, width);
    }

    std::unique_ptr<CMetadata> mKey;
    CMetadataDetailStruct * mDetail;   // owned by the record
    std::vector<std::unique_ptr<CMetadata>> mFields;
};

}   // namespace bench

#endif
