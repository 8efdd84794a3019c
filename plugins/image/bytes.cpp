#include "bytes.h"

namespace imageconfig {

void AppendNumber(std::string & bytes, std::uint64_t number, std::size_t count)
{
    for (std::size_t place = 0; place < count; ++place)
        bytes += static_cast<char>(number >> (8 * place) & 0xFF);
}

std::uint64_t NumberIn(std::string_view bytes)
{
    std::uint64_t number = 0;
    for (std::size_t place = bytes.size(); place > 0; --place)
        number = number << 8 | static_cast<unsigned char>(bytes[place - 1]);
    return number;
}

CByteReader::CByteReader(std::string_view bytes)
    : mRest(bytes)
{}

std::uint32_t CByteReader::Number(std::size_t count)
{
    return static_cast<std::uint32_t>(NumberIn(Bytes(count)));
}

std::string_view CByteReader::Bytes(std::size_t count)
{
    if (mIsCutOff || count > mRest.size()) {
        mIsCutOff = true;
        return {};
    }
    const std::string_view bytes = mRest.substr(0, count);
    mRest.remove_prefix(count);
    return bytes;
}

std::string_view CByteReader::Rest() const
{
    return mRest;
}

bool CByteReader::IsCutOff() const
{
    return mIsCutOff;
}

}   // namespace imageconfig
