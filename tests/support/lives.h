/// Payloads whose life can be followed, and through them the life of the elements that own them.

#ifndef TESTS_SUPPORT_LIVES_H
#define TESTS_SUPPORT_LIVES_H

#include <configtools/elements.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

namespace VrexZynConfigTools::support {

/// Knows which of its payloads live. Outlives them, unless they are never freed.
class Lives
{
public:
    bool Has(int uid) const { return mAlive.count(uid) != 0; }
    std::size_t Count() const { return mAlive.size(); }

private:
    friend class TracedPayload;
    std::set<int> mAlive;
};

/// A payload with a number of its own, which stays the same whatever element holds it.
class TracedPayload : public CUint8Payload
{
public:
    TracedPayload(Lives & lives, int uid, std::uint64_t length = 1)
        : CUint8Payload(static_cast<std::uint8_t>(uid))
        , mLives(lives)
        , mUid(uid)
        , mLength(length)
    {
        mLives.mAlive.insert(uid);
    }
    TracedPayload(const TracedPayload &) = delete;
    TracedPayload & operator=(const TracedPayload &) = delete;
    ~TracedPayload() override { EXPECT_EQ(mLives.mAlive.erase(mUid), 1U); }

    std::uint64_t Length() override { return mLength; }
    int Uid() const { return mUid; }

private:
    Lives & mLives;
    const int mUid;
    const std::uint64_t mLength;
};

constexpr int NULL_ELEMENT = -1;   // UidOf the null element
constexpr int UNTRACED = -2;       // UidOf an element without a traced payload

/// The number of the element's first payload.
inline int UidOf(const CElement & element)
{
    if (&element == &CNullElement::Ref())
        return NULL_ELEMENT;
    // Asking for the payloads changes nothing; it only isn't const.
    const auto payloads = const_cast<CElement &>(element).GetPayloadCopy(false);
    const auto * traced = payloads.empty() ? nullptr : dynamic_cast<const TracedPayload *>(payloads.front());
    return traced != nullptr ? traced->Uid() : UNTRACED;
}

/// "n7" of "n" and 7.
template <typename NumberT>
std::string Numbered(std::string stem, NumberT number)
{
    stem += std::to_string(number);
    return stem;
}

}   // namespace VrexZynConfigTools::support

#endif
