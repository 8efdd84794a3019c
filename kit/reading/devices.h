/// Devices, subsystems and stores in the words that files and messages use for them.
///
///     DeviceName(15);                            // eeprom
///     DeviceName(99);                            // device 99
///     StoreName({ 2, 15, 1 });                   // eeprom.1
///     MakesLayer({ 2, 15, 1 });                  // true: a store of a layered device, with a number

#ifndef KIT_READING_DEVICES_H
#define KIT_READING_DEVICES_H

#include <kit/reading/contexts.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kit::reading {

/// A keyword and the number that a context tag has for it.
struct TagWord
{
    std::string mWord;
    int mNumber;
};

/// All devices that have a keyword, by number; "none" is the first.
const std::vector<TagWord> & DeviceWords();

/// All subsystems that have a keyword, by number.
const std::vector<TagWord> & SubsystemWords();

/// The keyword of the number; null where it has none.
const std::string * WordOf(int number, const std::vector<TagWord> & words);

/// The keyword, or "device 99", or "no device".
std::string DeviceName(const std::optional<int> & device);

/// The keyword, or "type 99", or "no type".
std::string SubsystemName(const std::optional<int> & type);

/// "eeprom.1"; the device alone where the store has no number.
std::string StoreName(const SubsystemPlace & place);

/// Whether a chip configuration makes a layer of the store: its device is one of `LAYER_ORDER`, its number isn't 0.
bool MakesLayer(const SubsystemPlace & place);

/// ".1.2", to append to a key's name or number; empty without indices.
std::string IndicesText(const std::vector<std::uint32_t> & indices);

}   // namespace kit::reading

#endif
