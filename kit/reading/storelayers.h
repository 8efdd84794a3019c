/// The tag "storelayers" of a read context, by which a tool that knows the layers of the stores already tells them to
/// the reader: "DEVICE.STORE:LAYER,DEVICE.STORE:LAYER,..." in decimal, such as "1.1:1,4.1:2,15.1:3".

#ifndef KIT_READING_STORELAYERS_H
#define KIT_READING_STORELAYERS_H

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kit::reading {

inline constexpr char TAG_STORE_LAYERS[] = "storelayers";

/// Device and store number, and the layer.
using StoreLayers = std::map<std::pair<int, int>, int>;

/// Nothing for a text that isn't of the form above, or that names a store twice.
std::optional<StoreLayers> ParseStoreLayers(std::string_view text);

}   // namespace kit::reading

#endif
