/// What the element factory asks for the raw values of a key.

#ifndef IMAGECONFIG_RAWSOURCE_H
#define IMAGECONFIG_RAWSOURCE_H

#include "chunk.h"

#include <configtools/readerwriter.h>

#include <string>
#include <string_view>

namespace imageconfig {

/// Delivers one part of a key's value: all of it, or one struct or enumerator of several. It answers false with the last
/// word, since the walk over a struct with array fields doesn't end otherwise.
class CRawSource : public VrexZynConfigTools::IElementFactorySource
{
public:
    /// The key and the part outlive the source.
    CRawSource(const RawKey & key, std::string_view part);

    bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) override;
    bool NextString(std::string & value, std::uint16_t * indexNumber) override;
    bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) override;

    /// Why something that was asked for couldn't be delivered; empty if nothing was wrong.
    const std::string & Objection() const { return mObjection; }

    /// What nobody asked for, though it is there, or the other way round; empty if all was used.
    std::string Leftover() const;

private:
    bool NextIndex(std::size_t position, std::uint64_t & value);
    std::string_view Take(std::size_t words);
    bool Fail(const std::string & text);

    const RawKey & mKey;
    std::string_view mLeft;
    std::size_t mIndicesAsked = 0;
    std::string mObjection;
};

}   // namespace imageconfig

#endif
