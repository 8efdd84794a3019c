/// From the payloads of an element to the raw value of a key.

#ifndef IMAGECONFIG_KEYPACKER_H
#define IMAGECONFIG_KEYPACKER_H

#include "chunk.h"

#include <configtools/payloads.h>

#include <optional>
#include <string>
#include <vector>

namespace VrexZynConfigTools {
class IMetadata;
}

namespace imageconfig {

/// Takes the payloads of one element one by one, each during the call that brings it, since they stay the element's.
///
/// What a provider's record describes is packed by that record. Other payloads are carried by their own types where these
/// are all the same: numbers, enumerators, one text.
class CKeyPacker
{
public:
    /// A raw element is carried by the types of its payloads whatever records they have.
    CKeyPacker(std::uint32_t id, bool isRaw);

    void Add(VrexZynConfigTools::IPayload & payload);
    void AddIndex(std::uint32_t index);

    /// The key, once all has been added; nothing if something can't be carried.
    std::optional<RawKey> Finish();

    /// Why not.
    const std::string & Error() const { return mError; }

    /// What wouldn't come back as it was added, a text for each value. The key is made all the same.
    const std::vector<std::string> & Changes() const { return mChanges; }

    /// As `KeyName`.
    std::string Name() const;

    /// Whether name or type of the element are known, but are not in the image, and no metadata tells them.
    bool LosesNameOrType() const;

private:
    void AddByRecord(VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::IMetadata & record);
    void AddStruct(VrexZynConfigTools::IPayload & payload, const VrexZynConfigTools::IMetadata & record);
    void AddNumber(VrexZynConfigTools::IPayload & payload, const std::string & type);
    void AddEnumerator(VrexZynConfigTools::IPayload & payload);
    void AddText(VrexZynConfigTools::IPayload & payload);
    void AddByType(VrexZynConfigTools::IPayload & payload);
    void AppendRaw(Form form, const std::string & data);
    void Fail(const std::string & text);

    RawKey mKey;
    bool mIsRaw;
    std::string mKeyName;
    std::optional<VrexZynConfigTools::PayloadTypeEnum> mType;   // of the payloads without a provider's record
    bool mIsPlain = true;                                       // words or octets, as a raw element has them
    bool mIsEmpty = true;                                       // nothing was added
    bool mHasText = false;                                      // a second one couldn't be told from the first
    std::vector<std::string> mChanges;
    std::string mError;
};

}   // namespace imageconfig

#endif
