/// Numbers as bytes, the lowest first, whatever the host's own order is.

#ifndef IMAGECONFIG_BYTES_H
#define IMAGECONFIG_BYTES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace imageconfig {

/// Appends the lowest `count` bytes of `number`.
void AppendNumber(std::string & bytes, std::uint64_t number, std::size_t count);

/// The number that up to 8 bytes make.
std::uint64_t NumberIn(std::string_view bytes);

/// Takes numbers and runs of bytes off the front of a text. What isn't there isn't read, and from then on nothing is.
class CByteReader
{
public:
    explicit CByteReader(std::string_view bytes);

    std::uint32_t Number(std::size_t count);   // 0 if there are too few bytes; up to 4 bytes
    std::string_view Bytes(std::size_t count);

    /// The bytes left.
    std::string_view Rest() const;

    /// Whether something was asked for that wasn't there.
    bool IsCutOff() const;

private:
    std::string_view mRest;
    bool mIsCutOff = false;
};

}   // namespace imageconfig

#endif
