/// The metadata of one chip system as its sources tell it, each part with its place. The parser fills it as it stands in
/// the files; `Settle` adds what follows from that.

#ifndef WORKBENCH_COMPILER_SOURCE_H
#define WORKBENCH_COMPILER_SOURCE_H

#include "findings.h"
#include "word.h"

#include <kit/numbertypes/number.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace workbench::compiler {

using kit::numbertypes::CNumber;
using kit::numbertypes::NumberRange;

/// What may be given, and where it is.
template <typename T>
struct Placed
{
    T mValue{};
    Place mPlace;   // of the value; where it isn't given, of what it is missing in
    bool mIsGiven = false;
    bool mIsRead = true;   // false: given, but no such value, which has been told
};

/// A value as it stands in a source; what it is to be depends on its key.
struct Value
{
    struct Other   // neither of those below
    {};
    using List = std::vector<Value>;
    struct Member;
    using Members = std::vector<Member>;   // in the order of their places

    Place mPlace;
    const char * mKindText = "";   // "a whole number"
    std::variant<Other, CNumber, std::string, List, Members> mContent;
};

struct Value::Member
{
    std::string mName;
    Place mNamePlace;
    Value mValue;
};

struct Enumerator
{
    std::string mName;
    Place mPlace;
    std::int32_t mNumber = 0;
    Place mNumberPlace;
    bool mIsNumberRead = false;   // false: given, but no such number, which has been told
};

using Enumerators = std::vector<Enumerator>;   // in the order of their places

struct Layout;

/// What keys and fields have in common.
struct Item
{
    Place mPlace;
    Placed<std::string> mName;
    Placed<std::string> mType;
    Placed<std::string> mFormat;
    Placed<std::string> mAccess;
    Placed<NumberRange> mRange;    // of a number
    Placed<NumberRange> mLength;   // of a text or octets, in bytes
    Placed<NumberRange> mArray;    // how many items
    Placed<std::string> mEnumName;
    Placed<Enumerators> mValues;   // in place of the name of a shared enumeration
    Placed<std::string> mStructName;
    std::shared_ptr<Layout> mLayout;   // as above
    std::optional<Value> mDefault;     // of a key
    std::string mLabel;
    std::string mCategory;
    std::string mUnits;
    std::string mOid;
    std::string mTable;
    std::string mDescription;
    std::string mInternalDescription;
    std::string mReference;
    std::string mTemporality;
    std::string mHash;
    bool mIsInternal = false;

    // Settled.
    const TypeWord * mTypeWord = nullptr;   // null: unknown
    bool mIsSound = false;                  // nothing is wrong with it, nor with what it holds

    Kind KindOf() const { return mTypeWord != nullptr ? mTypeWord->mKind : Kind::Unknown; }
    bool IsArray() const { return mArray.mIsGiven; }

    /// Whether all that it refers to is there and sound.
    bool IsComplete() const;
};

struct Field : Item
{
    Placed<std::int64_t> mPosition;
    Placed<std::int64_t> mWidth;   // of an array: of all its items

    /// An array's items; otherwise 1.
    std::uint64_t Count() const { return IsArray() ? mArray.mValue.mMax.Bits() : 1; }

    /// More than 64 bits that aren't an array: a row of words.
    bool IsWide() const { return !IsArray() && mWidth.mValue > 64; }
};

/// The fields of a struct.
struct Layout
{
    Place mPlace;
    Placed<std::string> mName;   // of a shared one
    Placed<bool> mLittleEndian = { true, {}, false };
    Placed<std::int64_t> mBits;   // the size that the source says
    std::vector<Field> mFields;

    // Settled.
    enum class State
    {
        New,
        InWork,
        Done
    } mState = State::New;
    std::int64_t mSize = 0;          // in bits, as the device format counts it
    std::uint64_t mFieldCount = 0;   // with those of all structs within
    int mDepth = 1;                  // structs within one another
    bool mIsSound = false;
};

inline bool Item::IsComplete() const
{
    if (KindOf() == Kind::Structure)
        return mLayout != nullptr && mLayout->mIsSound;
    return KindOf() != Kind::Enumeration || !mValues.mValue.empty();
}

struct Index
{
    Place mPlace;
    Placed<std::string> mName;
    Placed<NumberRange> mRange;
    Placed<Enumerators> mValues;   // in place of a range
};

struct Key : Item
{
    Placed<std::int64_t> mId;
    std::vector<Index> mIndices;
    Placed<bool> mOctets;   // a struct that is packed as octets
};

struct Subsystem
{
    Place mPlace;
    Placed<std::string> mName;
    Placed<std::string> mAlias;
    std::string mVersion;
    std::string mLayer;
    std::string mVariant;
    std::string mDescription;
    std::string mBuildDate;
    std::vector<Key> mKeys;
};

struct Chip
{
    Place mPlace;
    Placed<std::string> mName;
    Placed<std::string> mLabel;
    Placed<std::int64_t> mId;
    std::string mFuses;   // as the library takes it: in decimal, or the word for several
    std::string mRomName;
    std::string mRomVersion;
    Placed<std::string> mDescription;   // these three of the system where the chip doesn't say
    Placed<std::string> mVersion;
    Placed<std::string> mBuildDate;
};

struct SharedEnum
{
    Placed<std::string> mName;
    Placed<Enumerators> mValues;
};

struct System
{
    Place mPlace;
    Placed<std::string> mName;
    std::string mDescription;
    std::string mVersion;
    std::string mBuildDate;
};

struct Source
{
    std::vector<System> mSystems;   // all that are found; there is to be one
    std::vector<Chip> mChips;
    std::vector<SharedEnum> mEnums;
    std::vector<std::shared_ptr<Layout>> mStructs;
    std::vector<Subsystem> mSubsystems;
    bool mIsWhole = true;   // every file could be read; what isn't there is missing then
};

}   // namespace workbench::compiler

#endif
