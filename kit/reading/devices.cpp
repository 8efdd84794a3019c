#include <kit/reading/devices.h>

#include <configtools/metadataprovider.h>
#include <configtools/stores.h>

#include <algorithm>
#include <iterator>

namespace kit::reading {

using namespace VrexZynConfigTools;

namespace {

std::vector<TagWord> MakeDeviceWords()
{
    std::vector<TagWord> words;
    const std::string unknown = IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(-2));
    for (int number = IStoreManager::DEVICE_NONE; number <= IStoreManager::DEVICE_EEPROM; ++number) {
        const char * const name = IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(number));
        if (name != unknown)
            words.push_back({ name, number });
    }
    return words;
}

std::vector<TagWord> MakeSubsystemWords()
{
    std::vector<TagWord> words;
    for (int number = SUBSYSTEM_CURATOR; number <= SUBSYSTEM_PSAUDIO; ++number)
        words.push_back({ CSubsystemInfo::GetSubsystemType(static_cast<SubSystemTypeEnum>(number)), number });
    return words;
}

std::string NameOf(const std::optional<int> & number, const std::vector<TagWord> & words, const char * what)
{
    if (!number)
        return std::string("no ") + what;
    const std::string * const word = WordOf(*number, words);
    return word != nullptr ? *word : std::string(what) + ' ' + std::to_string(*number);
}

}   // namespace

const std::vector<TagWord> & DeviceWords()
{
    static const std::vector<TagWord> words = MakeDeviceWords();
    return words;
}

const std::vector<TagWord> & SubsystemWords()
{
    static const std::vector<TagWord> words = MakeSubsystemWords();
    return words;
}

const std::string * WordOf(int number, const std::vector<TagWord> & words)
{
    const auto found = std::find_if(
        words.begin(), words.end(), [number](const TagWord & word) { return word.mNumber == number; });
    return found != words.end() ? &found->mWord : nullptr;
}

std::string DeviceName(const std::optional<int> & device)
{
    return NameOf(device, DeviceWords(), "device");
}

std::string SubsystemName(const std::optional<int> & type)
{
    return NameOf(type, SubsystemWords(), "type");
}

std::string StoreName(const SubsystemPlace & place)
{
    const std::string device = DeviceName(place.mDevice);
    return place.mStore ? device + '.' + std::to_string(*place.mStore) : device;
}

bool MakesLayer(const SubsystemPlace & place)
{
    return place.mStore.value_or(0) != 0 && std::find(std::begin(LAYER_ORDER), std::end(LAYER_ORDER),
                                                place.mDevice.value_or(-1)) != std::end(LAYER_ORDER);
}

std::string IndicesText(const std::vector<std::uint32_t> & indices)
{
    std::string text;
    for (const std::uint32_t index : indices)
        text += '.' + std::to_string(index);
    return text;
}

}   // namespace kit::reading
