// The samples are read without a complaint and hold what they promise.

#include "toml_support.h"

#include <configtools/stores.h>

#include <gmock/gmock.h>

#include <set>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

const std::vector<std::string> FILES{ "1-chip.toml", "2-module.toml", "3-start.toml", "4-product.toml" };

class StatusCatcher : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine &) override {}
    void OnStatus(GroupEnum, StatusLevels, const std::string & text) override { mTexts.push_back(text); }
    std::vector<std::string> mTexts;
};

class Samples : public TomlTest
{
protected:
    void SetUp() override
    {
        const CMessageSinkGuard guard(&mCatcher);
        for (const std::string & file : FILES)
            ASSERT_TRUE(mChip.Read(std::string(SAMPLES_DIR) + '/' + file, "insertmode=overwrite"))
                << mErrors.Text();
    }

    std::string ValueOf(SubSystemTypeEnum type, const std::string & key, int layer = 0)
    {
        CZynContext context;
        context.SetChip("trindle7");
        context.SetSubsystemType(type);
        if (layer != 0)
            context.SetLayerNumber(layer);
        else
            context.SetTag("layerfilter", 15);
        return mChip.Chip().Element(key, context).ToString();
    }

    StatusCatcher mCatcher;
    ReadChip mChip;
};

TEST_F(Samples, are_read_without_a_warning)
{
    EXPECT_TRUE(mCatcher.mTexts.empty());
    EXPECT_EQ(mErrors.Text(), "");
}

TEST_F(Samples, hold_four_stores_in_their_layers)
{
    std::vector<int> devices;
    for (const CStoreInfo * store : mChip.Chip().Stores())
        devices.push_back(store->DeviceId());
    EXPECT_THAT(devices, ::testing::ElementsAre(IStoreManager::DEVICE_OTP, IStoreManager::DEVICE_MTP,
                             IStoreManager::DEVICE_SMEM, IStoreManager::DEVICE_EEPROM));
}

TEST_F(Samples, hold_about_sixty_keys_of_every_shape)
{
    std::size_t count = 0;
    std::set<std::string> classes;
    for (const auto & [key, subsystem] : mChip.Chip().Subsystems())
        for (CElement * element : subsystem->Elements()) {
            const std::string description = DescribeClass(*element);
            classes.insert(description.substr(0, description.find('[')));
            ++count;
        }
    EXPECT_EQ(count, 63u);
    for (const char * shape : { "text", "octets", "enum", "struct", "row", "numbers0", "numbers7" })
        EXPECT_EQ(classes.count(shape), 1u) << shape;
}

TEST_F(Samples, override_lower_layers)
{
    EXPECT_EQ(ValueOf(SUBSYSTEM_BT, "CrystalTrim", 1), "-3");
    EXPECT_EQ(ValueOf(SUBSYSTEM_BT, "CrystalTrim", 2), "5");
    EXPECT_EQ(ValueOf(SUBSYSTEM_BT, "CrystalTrim"), "6");
    EXPECT_EQ(ValueOf(SUBSYSTEM_WLAN, "Country"), "XB");
    EXPECT_EQ(ValueOf(SUBSYSTEM_WLAN, "GainTrim.1.0"), "3");
    EXPECT_EQ(ValueOf(SUBSYSTEM_WLAN, "GainTrim.0.1"), "2");
    EXPECT_EQ(ValueOf(SUBSYSTEM_APP, "IdleMinutes"), "45");
}

TEST_F(Samples, survive_a_write_and_a_read)
{
    ASSERT_TRUE(mChip.Write(mFolder / "out.toml")) << mErrors.Text();
    ReadChip back;
    ASSERT_TRUE(back.Read(mFolder / "out.toml", "insertmode=overwrite")) << mErrors.Text();
    ExpectEqual(mChip.Chip(), back.Chip());
}

}   // namespace
