/// Where a value stands: in which store, under which key.

#ifndef WORKBENCH_KEY_H
#define WORKBENCH_KEY_H

#include "finding.h"

#include <configtools/context.h>
#include <configtools/elements.h>

#include <compare>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace workbench {

inline constexpr std::uint32_t UNKNOWN_SIZE = 0xFFFFFFFF;   // of a store that no size is told of

/// Stands for a number that a context doesn't tell.
constexpr int NO_NUMBER = std::numeric_limits<int>::min();

struct Store
{
    int mDevice;
    int mNumber;
    auto operator<=>(const Store &) const = default;
};

/// A key of the chip: its subsystem's type, its number and, for a table row, the indices.
struct Key
{
    int mSubsystem;
    std::uint32_t mId;
    bool mIsRow;   // a row without indices is not the same place as a plain key
    std::vector<std::uint32_t> mIndices;
    auto operator<=>(const Key &) const = default;
};

struct StoredKey
{
    Store mStore;
    Key mKey;
    auto operator<=>(const StoredKey &) const = default;
};

/// The subsystem type and the store that a context names.
int SubsystemOf(VrexZynConfigTools::IConfigContext & context);
Store StoreOf(VrexZynConfigTools::IConfigContext & context);

/// The layer that a subsystem's context names; 0 for none.
int LayerOf(VrexZynConfigTools::IConfigContext & context);

/// The key of an element that stands in a subsystem of this type.
Key KeyOf(const VrexZynConfigTools::CElement & element, int subsystem);

/// The key that an element gets which a reader delivers with this context: its index tags make it a table row.
Key KeyOf(const VrexZynConfigTools::CElement & element, VrexZynConfigTools::IConfigContext & context);

/// "eeprom"; "device 7" for one without a name.
std::string DeviceName(int device);

/// "eeprom.1".
std::string NameOf(const Store & store);

/// "wlan"; "type 42" for one without a name.
std::string SubsystemName(int subsystem);

/// "120", and for a table row "120.3.7": a text by which the library finds the key.
std::string LookupText(const Key & key);

/// As above, but a row without indices reads "120.", which the library would take for the row 0.
std::string NumberText(const Key & key);

/// "key 120.3.7 (BAND_LIMIT) of wlan", for messages; with a store "key 120.3.7 (BAND_LIMIT) of wlan in otp.1".
std::string TitleOf(const Key & key, const std::string & name);
std::string TitleOf(const StoredKey & key, const std::string & name);

/// A finding with this code and text that names the key, its subsystem and store.
Finding FindingAbout(const StoredKey & key, const std::string & code, const std::string & text);

/// The same for a key that isn't looked at in one store only.
Finding FindingAbout(const Key & key, const std::string & code, const std::string & text);

}   // namespace workbench

#endif
