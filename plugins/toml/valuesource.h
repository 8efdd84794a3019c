/// What the element factory is given: the values of one key after the other, in the order of its record.

#ifndef TOMLCONFIG_VALUESOURCE_H
#define TOMLCONFIG_VALUESOURCE_H

#include "values.h"
#include "vocabulary.h"

#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/readerwriter.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tomlconfig {

/// Values stay nodes of the file until the factory asks for them, since only it knows of what type a number is wanted.
/// What its type can't hold at all is refused here, with a finding: the factory would see nothing but the low bits.
///
/// Without checks the low bits are what counts, and an unknown enumerator has no number to give; of both a warning tells.
class CValueSource : public IElementFactorySource
{
public:
    /// The findings stay the caller's and must outlive this object.
    CValueSource(CFindings & findings, bool checks);

    /// The indices of a table row, and which of them is asked for next.
    void LoadIndices(const std::vector<const toml::node *> & nodes, const std::string & label);
    void UseIndex(const CTableIndex & index);

    /// The values that are asked for next. `label` is what findings call them.
    void Load(const IMetadata & record, const std::string & label, std::vector<const toml::node *> items);
    bool HasMore() const;

    /// About the value that was asked for last.
    bool IsRefused() const;
    const toml::node & Last() const;
    const std::string & LastText() const;    // a number as the file has it
    const std::string & LastType() const;    // the word that the factory asked for; empty unless for a number
    const std::string & LastBytes() const;   // of a text

    /// Whether an enumerator of this key was left out, which without checks is no mistake.
    bool HasLeftOut() const;

    bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) override;
    bool NextString(std::string & value, std::uint16_t * indexNumber) override;
    bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) override;

private:
    bool NextIndex(std::uint64_t & value);
    std::optional<std::int64_t> IndexOf(const toml::node & node);
    std::optional<std::int64_t> NamedIndex(const toml::node & node, const std::string & name);
    bool IsIndexAllowed(const toml::node & node, std::int64_t number);
    bool Take();
    std::optional<std::uint64_t> Bits(const NumberType & type);
    std::optional<std::uint64_t> BitsOfText(const std::string & text);
    std::optional<std::uint64_t> BitsOfInteger(std::int64_t number, const NumberType & type);
    std::optional<std::uint64_t> LowBits(const NumberType & type, std::uint64_t bits);
    std::optional<std::int64_t> EnumNumber();
    std::optional<std::int64_t> NamedEnumerator(const std::string & name);
    Finding About(const std::string & code, const std::string & text) const;
    Finding Unknown(const std::string & text) const;
    Finding WrongNumber(const std::string & found) const;
    Finding AboutIndex(const toml::node & node, const std::string & code, const std::string & text) const;
    std::nullopt_t Refuse(Finding finding);
    std::nullopt_t LeaveOut(Finding finding);

    CFindings & mFindings;
    CValueReader mValues;
    bool mChecks;

    std::vector<const toml::node *> mIndexNodes;
    std::string mIndexLabel;
    const CTableIndex * mIndex = nullptr;   // the provider's
    std::size_t mNextIndex = 0;

    const IMetadata * mRecord = nullptr;   // the provider's
    std::string mLabel;
    std::vector<const toml::node *> mItems;
    std::size_t mNext = 0;

    const toml::node * mLast = nullptr;
    std::string mLastText;
    std::string mLastType;
    std::string mLastBytes;
    bool mIsRefused = false;
    bool mHasLeftOut = false;
};

}   // namespace tomlconfig

#endif
