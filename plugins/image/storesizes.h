/// The tag "storesizes" of a write's context, by which a tool tells the sizes of the stores:
/// "DEVICE.STORE:SIZE,DEVICE.STORE:SIZE,..." in decimal, such as "1.1:512,15.1:8192".

#ifndef IMAGECONFIG_STORESIZES_H
#define IMAGECONFIG_STORESIZES_H

#include "image.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace imageconfig {

inline constexpr char TAG_STORE_SIZES[] = "storesizes";

/// Device and store number, and the size in bytes.
using StoreSizes = std::map<std::pair<int, int>, std::uint32_t>;

/// Nothing for a text that isn't of the form above, or that names a store twice.
std::optional<StoreSizes> ParseStoreSizes(std::string_view text);

/// The size of a store that none is told for: the smallest of 4096, 8192, 16384 and so on that holds what it has to.
std::uint32_t DefaultSize(std::uint64_t used);

}   // namespace imageconfig

#endif
