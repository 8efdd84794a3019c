#include "formats.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace workbench {

namespace {

constexpr std::array FORMATS = {
    Format{ "toml", ".toml", "tomlconfig" },
    Format{ "image", ".zimg", "imageconfig" },
};

// Letters of other alphabets stay as they are: extensions have none.
char Lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string Join(const char * Format::*part)
{
    std::string list;
    for (const Format & format : FORMATS)
        list.append(list.empty() ? "" : ", ").append(format.*part);
    return list;
}

}   // namespace

const Format * FindFormat(const std::string & path, const std::string & name)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), Lower);
    const auto * const format = std::find_if(FORMATS.begin(), FORMATS.end(),
        [&](const Format & each) { return name.empty() ? each.mExtension == extension : each.mName == name; });
    return format == FORMATS.end() ? nullptr : format;
}

std::string KnownExtensions()
{
    return Join(&Format::mExtension);
}

std::string KnownFormats()
{
    return Join(&Format::mName);
}

}   // namespace workbench
