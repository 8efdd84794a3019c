// The words for devices, subsystems and stores.

#include <configtools/metadataprovider.h>
#include <configtools/stores.h>
#include <kit/reading/devices.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kit::reading {
namespace {

using namespace VrexZynConfigTools;

TEST(DeviceWords, are_those_of_the_library)
{
    for (const TagWord & word : DeviceWords())
        EXPECT_EQ(word.mWord, IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(word.mNumber)));
    ASSERT_EQ(DeviceWords().size(), 10U);
    EXPECT_EQ(DeviceWords().front().mNumber, IStoreManager::DEVICE_NONE);
    EXPECT_EQ(DeviceWords().back().mNumber, IStoreManager::DEVICE_EEPROM);
}

TEST(SubsystemWords, lead_back_to_their_numbers)
{
    ASSERT_EQ(SubsystemWords().size(), 11U);
    for (const TagWord & word : SubsystemWords())
        EXPECT_EQ(CSubsystemInfo::GetSubsystemType(word.mWord), word.mNumber) << word.mWord;
}

TEST(WordOf, is_null_for_a_number_without_a_word)
{
    EXPECT_EQ(*WordOf(IStoreManager::DEVICE_EEPROM, DeviceWords()), "eeprom");
    EXPECT_EQ(WordOf(3, DeviceWords()), nullptr);
    EXPECT_EQ(WordOf(-2, DeviceWords()), nullptr);
}

TEST(Names, fall_back_to_numbers)
{
    EXPECT_EQ(DeviceName(15), "eeprom");
    EXPECT_EQ(DeviceName(3), "device 3");
    EXPECT_EQ(DeviceName(std::nullopt), "no device");
    EXPECT_EQ(SubsystemName(SUBSYSTEM_WLAN), "wlan");
    EXPECT_EQ(SubsystemName(77), "type 77");
    EXPECT_EQ(SubsystemName(std::nullopt), "no type");
    EXPECT_EQ(StoreName({ 2, 15, 1 }), "eeprom.1");
    EXPECT_EQ(StoreName({ 2, 15, std::nullopt }), "eeprom");
    EXPECT_EQ(StoreName({ 2, std::nullopt, 4 }), "no device.4");
    EXPECT_EQ(IndicesText({ 1, 4294967295U }), ".1.4294967295");
    EXPECT_EQ(IndicesText({}), "");
}

TEST(MakesLayer, is_true_for_numbered_stores_of_six_devices)
{
    int count = 0;
    for (int device = -2; device <= 20; ++device)
        count += MakesLayer({ 2, device, 1 }) ? 1 : 0;
    EXPECT_EQ(count, 6);
    EXPECT_TRUE(MakesLayer({ std::nullopt, IStoreManager::DEVICE_ROM, 1 }));
    EXPECT_FALSE(MakesLayer({ 2, IStoreManager::DEVICE_ROM, 0 }));
    EXPECT_FALSE(MakesLayer({ 2, IStoreManager::DEVICE_ROM, std::nullopt }));
    EXPECT_FALSE(MakesLayer({ 2, std::nullopt, 1 }));
    EXPECT_FALSE(MakesLayer({ 2, IStoreManager::DEVICE_CUR_CFG, 1 }));
}

}   // namespace
}   // namespace kit::reading
