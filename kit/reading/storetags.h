/// Two tags that travel between a tool and the plug-ins that it calls, both of the form "DEVICE.STORE:NUMBER,..." in
/// decimal. Either end composes and parses them here.
///
/// "storelayers" of a read's context, such as "1.1:1,4.1:2,15.1:3": a tool that knows the layers of the stores already
/// passes them to the reader. "storesizes" of a write's context, such as "1.1:512,15.1:8192": the sizes of the stores in
/// bytes.
///
///     context.SetTag(TAG_STORE_LAYERS, ComposeStoreLayers({ { { 1, 1 }, 1 }, { { 15, 1 }, 2 } }));   // 1.1:1,15.1:2

#ifndef KIT_READING_STORETAGS_H
#define KIT_READING_STORETAGS_H

#include <configtools/context.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kit::reading {

inline constexpr char TAG_STORE_LAYERS[] = "storelayers";
inline constexpr char TAG_STORE_SIZES[] = "storesizes";

/// The greatest value of the tags "device" and "store".
inline constexpr int MAX_TAG_NUMBER = 65535;

/// Device and store number, and the layer from 1 to 15.
using StoreLayers = std::map<std::pair<int, int>, int>;

/// Device and store number, and the size in bytes; 0xFFFFFFFF for a size that isn't known.
using StoreSizes = std::map<std::pair<int, int>, std::uint32_t>;

std::string ComposeStoreLayers(const StoreLayers & layers);
std::string ComposeStoreSizes(const StoreSizes & sizes);

/// Nothing for a text that isn't of the form above, or that names a store twice. An empty text names no store.
std::optional<StoreLayers> ParseStoreLayers(std::string_view text);
std::optional<StoreSizes> ParseStoreSizes(std::string_view text);

/// What is wrong with the tag "storelayers" or "storesizes" of `context`, for people; empty if nothing is.
std::string WhyNoStoreLayers(VrexZynConfigTools::IConfigContext & context);
std::string WhyNoStoreSizes(VrexZynConfigTools::IConfigContext & context);

}   // namespace kit::reading

#endif
