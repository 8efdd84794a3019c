#include "rawsource.h"

#include "bytes.h"
#include "words.h"

namespace imageconfig {

CRawSource::CRawSource(const RawKey & key, std::string_view part)
    : mKey(key)
    , mLeft(part)
{}

bool CRawSource::Fail(const std::string & text)
{
    if (mObjection.empty())
        mObjection = text;
    return false;
}

std::string_view CRawSource::Take(std::size_t words)
{
    const std::size_t count = words * BYTES_OF_WORD;
    if (mKey.mForm != Form::WORDS || mLeft.size() < count) {
        Fail(mKey.mForm != Form::WORDS ? "the value is a string of octets; the metadata describe words"
                                       : "the value is cut off");
        mLeft = {};
        return {};
    }
    const std::string_view taken = mLeft.substr(0, count);
    mLeft.remove_prefix(count);
    return taken;
}

bool CRawSource::NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber)
{
    value = 0;
    if (indexNumber != nullptr)
        return NextIndex(*indexNumber, value);
    const VrexZynConfigTools::NumberType * const type = TypeByKeyword(typeName);
    if (type == nullptr)
        return Fail("values of the type \"" + typeName + "\" have no raw form");
    const std::string_view words = Take(WordsOf(*type));
    if (words.empty())
        return false;
    const auto number = ValueIn(words, *type);
    if (!number)
        return Fail(
            "the word " + std::to_string(NumberIn(words)) + " is no value of the type \"" + typeName + '"');
    value = *number;
    return !mLeft.empty();
}

bool CRawSource::NextIndex(std::size_t position, std::uint64_t & value)
{
    ++mIndicesAsked;
    if (position < mKey.mIndices.size())
        value = mKey.mIndices[position];
    return true;   // the answer to the value that follows is the one that counts
}

bool CRawSource::NextString(std::string & value, std::uint16_t * /*indexNumber*/)
{
    value.clear();
    if (mKey.mForm != Form::OCTETS)
        return Fail("the value is made of words; the metadata describe a string of octets");
    value = mLeft;
    mLeft = {};
    return false;
}

bool CRawSource::NextEnum(std::uint64_t & value, std::uint16_t * /*indexNumber*/)
{
    value = NumberIn(Take(WORDS_OF_ENUM));
    return !mLeft.empty();
}

std::string CRawSource::Leftover() const
{
    const std::size_t count = mKey.mIndices.size();
    if (mIndicesAsked != count)
        return "the key has " + std::to_string(count) + (count == 1 ? " index" : " indices") +
               "; the metadata describe " + std::to_string(mIndicesAsked);
    return mLeft.empty()
               ? std::string()
               : std::to_string(mLeft.size()) + " bytes are left behind the value that the metadata describe";
}

}   // namespace imageconfig
