#include "formats.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace zynconfig {

namespace {

constexpr std::array FORMATS = {
    Format{ ".toml", "tomlconfig" },
};

// Letters of other alphabets stay as they are: extensions have none.
char Lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}   // namespace

const Format * FindFormat(const std::string & path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), Lower);
    const auto * const format = std::find_if(
        FORMATS.begin(), FORMATS.end(), [&](const Format & each) { return each.mExtension == extension; });
    return format == FORMATS.end() ? nullptr : format;
}

std::string KnownExtensions()
{
    std::string list;
    for (const Format & format : FORMATS)
        list.append(list.empty() ? "" : ", ").append(format.mExtension);
    return list;
}

}   // namespace zynconfig
