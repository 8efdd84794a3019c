#include <configtools/stores.h>
#include <support/slots.h>

#include <gtest/gtest.h>

#include <limits>
#include <list>
#include <string>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

using support::SlotAfter;
using support::SlotOf;

std::string DeviceName(int device)
{
    return IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(device));
}

TEST(GetDeviceName, gives_the_keyword_of_each_device)
{
    EXPECT_EQ(DeviceName(-1), "none");
    EXPECT_EQ(DeviceName(0), "rom");
    EXPECT_EQ(DeviceName(1), "otp");
    EXPECT_EQ(DeviceName(2), "smem");
    EXPECT_EQ(DeviceName(4), "mtp");
    EXPECT_EQ(DeviceName(11), "user_ps_audio");
    EXPECT_EQ(DeviceName(12), "user_ps_apps");
    EXPECT_EQ(DeviceName(13), "cur_cfg");
    EXPECT_EQ(DeviceName(14), "fw_cfg");
    EXPECT_EQ(DeviceName(15), "eeprom");
}

TEST(GetDeviceName, knows_no_other_device)
{
    for (const int device :
        { -2, 3, 5, 6, 7, 8, 9, 10, 16, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() })
        EXPECT_EQ(DeviceName(device), "UNKNOWN") << device;
}

TEST(CStoreInfo, holds_what_it_was_made_of)
{
    const CStoreInfo store(IStoreManager::DEVICE_MTP, 65535, 4294967295U, -5, 3, 7, true);

    EXPECT_EQ(store.DeviceId(), IStoreManager::DEVICE_MTP);
    EXPECT_EQ(store.StoreId(), 65535);
    EXPECT_EQ(store.StoreSize(), 4294967295U);
    EXPECT_EQ(store.StoreSizeFree(), -5);
    EXPECT_EQ(store.LinkedStoreId(), 3);
    EXPECT_EQ(store.Order(), 7);
    EXPECT_TRUE(store.Paired());
}

TEST(CStoreInfo, each_field_can_be_set)
{
    CStoreInfo store;
    store.SetDeviceId(IStoreManager::DEVICE_EEPROM);
    store.SetStoreId(1);
    store.SetStoreSize(2);
    store.SetStoreSizeFree(CStoreInfo::INVALID_STORE_SIZE);
    store.SetLinkedStoreId(4);
    store.SetOrder(5);
    store.SetPaired(true);

    EXPECT_EQ(store.DeviceId(), IStoreManager::DEVICE_EEPROM);
    EXPECT_EQ(store.StoreId(), 1);
    EXPECT_EQ(store.StoreSize(), 2U);
    EXPECT_EQ(store.StoreSizeFree(), -1);
    EXPECT_EQ(store.LinkedStoreId(), 4);
    EXPECT_EQ(store.Order(), 5);
    EXPECT_TRUE(store.Paired());
}

TEST(CStoreInfo, is_a_plain_class_with_a_constant_of_32_bits)
{
    static_assert(!std::is_polymorphic_v<CStoreInfo>);
    static_assert(std::is_same_v<decltype(CStoreInfo::INVALID_STORE_SIZE), const std::int32_t>);
    static_assert(CStoreInfo::INVALID_STORE_SIZE == -1);
    const std::int32_t & reference = CStoreInfo::INVALID_STORE_SIZE;   // it has an address, too
    EXPECT_EQ(reference, -1);
}

TEST(ClearStoreList, frees_the_stores_and_passes_over_null)
{
    std::list<CStoreInfo *> stores{ new CStoreInfo, nullptr, new CStoreInfo };
    ClearStoreList(stores);
    EXPECT_TRUE(stores.empty());

    ClearStoreList(stores);
    EXPECT_TRUE(stores.empty());
}

TEST(Slots, a_store_manager_has_its_stores_third_and_its_destructor_last)
{
    EXPECT_EQ(SlotOf<bool(IConfigContext &)>(&IStoreManager::Open), 0);
    EXPECT_EQ((SlotOf<IChunkInOut *(IStoreManager::DEVICE, std::uint16_t, IConfigContext &)>(
                  &IStoreManager::ChunkAccess)),
        1);
    EXPECT_EQ(SlotOf<const std::list<CStoreInfo *> &(IConfigContext &)>(&IStoreManager::Stores), 2);
    EXPECT_EQ(SlotAfter<IStoreManager>(), 5);
    static_assert(std::is_abstract_v<IStoreManager> && std::has_virtual_destructor_v<IStoreManager>);
}

TEST(Slots, chunks_go_in_and_out_by_two_operations_ahead_of_the_destructor)
{
    EXPECT_EQ((SlotOf<bool(CChunkCollection &, IConfigContext &)>(&IChunkInOut::ReadChunks)), 0);
    EXPECT_EQ((SlotOf<bool(const CChunkCollection &, IConfigContext &)>(&IChunkInOut::WriteChunks)), 1);
    EXPECT_EQ(SlotAfter<IChunkInOut>(), 4);
    static_assert(std::is_abstract_v<IChunkInOut> && std::has_virtual_destructor_v<IChunkInOut>);
}

TEST(Slots, a_chunk_collection_has_nothing_virtual_but_its_destructor)
{
    EXPECT_EQ(SlotAfter<CChunkCollection>(), 2);
    static_assert(std::has_virtual_destructor_v<CChunkCollection>);
}

}   // namespace
}   // namespace VrexZynConfigTools
