/// Keys, and where their values are: the subsystem, the number and the indices of a key, and the store that has it.
///
///     const workbench::Key trim = { VrexZynConfigTools::SUBSYSTEM_BT, 258, false, {} };
///     const workbench::Store eeprom = { 15, 1 };
///     TitleOf(trim, "CrystalTrim");   // key 258 (CrystalTrim) of bt
///     NameOf(eeprom);                 // eeprom.1
///
/// All types here are plain values that can be compared, sorted and used as keys of a map.

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

/// The size in bytes of a store for which no size is reported.
inline constexpr std::uint32_t UNKNOWN_SIZE = 0xFFFFFFFF;

/// A number that a context doesn't have.
constexpr int NO_NUMBER = std::numeric_limits<int>::min();

/// A store of the chip. In a file that names none, either number is NO_NUMBER.
struct Store
{
    /// One of `IStoreManager::DEVICE`; a device with a higher number lies above one with a lower.
    int mDevice;

    /// Which store of the device, from 1.
    int mNumber;

    auto operator<=>(const Store &) const = default;
};

/// A key of the chip. Sorted by subsystem, number and indices.
struct Key
{
    /// One of `SubSystemTypeEnum`.
    int mSubsystem;

    /// The key's number; 0 for a key without one, which no plug-in can write.
    std::uint32_t mId;

    /// Whether this is a row of a table. A row without indices isn't the plain key of the same number.
    bool mIsRow;

    /// The indices of a row, in the order of the metadata; empty for a plain key.
    std::vector<std::uint32_t> mIndices;

    auto operator<=>(const Key &) const = default;
};

/// A key in one store.
struct StoredKey
{
    Store mStore;
    Key mKey;
    auto operator<=>(const StoredKey &) const = default;
};

/// The type of the subsystem that a context names; NO_NUMBER without one.
int SubsystemOf(VrexZynConfigTools::IConfigContext & context);

/// The store that a context names.
Store StoreOf(VrexZynConfigTools::IConfigContext & context);

/// The layer that a subsystem's context names, from 1 for the bottom to 15; 0 for none.
int LayerOf(VrexZynConfigTools::IConfigContext & context);

/// The key of an element in a subsystem of this type.
Key KeyOf(const VrexZynConfigTools::CElement & element, int subsystem);

/// The key that an element gets which a reader delivers with this context: index tags make it a table row.
Key KeyOf(const VrexZynConfigTools::CElement & element, VrexZynConfigTools::IConfigContext & context);

/// "eeprom"; "device 7" for one without a name, "no device" for NO_NUMBER.
std::string DeviceName(int device);

/// "eeprom.1"; the device alone for a store without a number.
std::string NameOf(const Store & store);

/// "wlan"; "type 42" for one without a name, "no type" for NO_NUMBER.
std::string SubsystemName(int subsystem);

/// "120", and for a table row "120.3.7": a text by which the library finds the key. It finds none for a number above
/// 2147483647, for which one has to ask by name.
std::string LookupText(const Key & key);

/// As above, but a row without indices reads "120.", which the library would take for the row 0.
std::string NumberText(const Key & key);

/// What messages call a key with this name: "key 120.3.7 (BAND_LIMIT) of wlan". Nothing stands in parentheses for a key
/// without a name.
std::string TitleOf(const Key & key, const std::string & name);

/// The same with the store: "key 120.3.7 (BAND_LIMIT) of wlan in otp.1".
std::string TitleOf(const StoredKey & key, const std::string & name);

/// A finding with this code and text that names the key, its subsystem and its store.
Finding FindingAbout(const StoredKey & key, const std::string & code, const std::string & text);

/// The same for a key that isn't looked at in one store only.
Finding FindingAbout(const Key & key, const std::string & code, const std::string & text);

}   // namespace workbench

#endif
