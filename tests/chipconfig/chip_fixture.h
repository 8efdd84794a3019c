/// A chip's configuration, as readers, writers and callers see it.

#ifndef TESTS_CHIPCONFIG_CHIP_FIXTURE_H
#define TESTS_CHIPCONFIG_CHIP_FIXTURE_H

#include <configtools/chipconfig.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <messages/messages.h>
#include <support/element_builder.h>
#include <support/framework_errors.h>
#include <support/lives.h>
#include <support/recording_writer.h>
#include <support/scripted_reader.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

using Texts = std::vector<std::string>;

// Devices by their layer, from bottom to top, and some that have none.
constexpr auto ROM = IStoreManager::DEVICE_ROM;
constexpr auto OTP = IStoreManager::DEVICE_OTP;
constexpr auto MTP = IStoreManager::DEVICE_MTP;
constexpr auto SMEM = IStoreManager::DEVICE_SMEM;
constexpr auto FW_CFG = IStoreManager::DEVICE_FW_CFG;
constexpr auto EEPROM = IStoreManager::DEVICE_EEPROM;
constexpr auto CUR_CFG = IStoreManager::DEVICE_CUR_CFG;
constexpr auto USER_PS_APPS = IStoreManager::DEVICE_USER_PS_APPS;
constexpr auto USER_PS_AUDIO = IStoreManager::DEVICE_USER_PS_AUDIO;

/// What stands in a message group; empty for nothing.
inline std::string ErrorOf(GroupEnum group)
{
    short code = -1;
    std::string text;
    CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(group, "ErrorOf", false);
    handler.GetErrorMsg(group, code, text);
    EXPECT_EQ(code, text.empty() ? -1 : 0);
    return text;
}
inline void ClearErrorOf(GroupEnum group)
{
    CTheMsgHnd::GetAppropriateHandler(group, "ClearErrorOf", false).ClearError(group);
}

class ChipTest : public testing::Test
{
protected:
    ChipTest() { ClearErrorOf(GROUP_CORE_CLASSES); }
    ~ChipTest() override { ClearErrorOf(GROUP_CORE_CLASSES); }

    /// Reads these subsystems in one read with these tags.
    template <typename... SubsystemT>
    void Read(const std::string & tags, SubsystemT &&... subsystem)
    {
        ScriptedReader reader;
        (reader.Delivers(std::forward<SubsystemT>(subsystem)), ...);
        reader.ReadInto(mChip, tags);
    }

    /// Creates a subsystem as at the start of one in a read, without ending the read.
    CSubsystemConfig & Create(const std::string & tags)
    {
        CZynContext context;
        context.Parse(tags);
        return mChip.CreateAndAddSubsystem(context);
    }

    Texts Keys() const { return KeysOf(mChip); }
    static Texts KeysOf(const CChipConfig & chip)
    {
        Texts keys;
        for (const auto & [key, subsystem] : chip.Subsystems())
            keys.push_back(key);
        return keys;
    }

    /// "eeprom/3" for each store, in order.
    Texts Stores() const
    {
        Texts stores;
        for (const CStoreInfo * store : mChip.Stores())
            stores.push_back(std::string(IStoreManager::GetDeviceName(store->DeviceId()))
                                 .append("/")
                                 .append(std::to_string(store->StoreId())));
        return stores;
    }

    CSubsystemConfig & At(const std::string & key) const { return *mChip.Subsystems().at(key); }

    /// The element's number that a lookup with these tags finds.
    int Find(std::uint32_t id, const std::string & tags) const
    {
        CZynContext context;
        context.Parse(tags);
        return UidOf(mChip.Element(id, context));
    }
    int Find(const std::string & name, const std::string & tags) const
    {
        CZynContext context;
        context.Parse(tags);
        return UidOf(mChip.Element(name, context));
    }

    /// An element that lives as long as its number is in `mLives`, and shows it to a writer.
    CElement * Traced(int uid, std::uint32_t id, const std::string & name = "", std::uint64_t length = 1)
    {
        return new CElementNumericArray(id, name, AListOf(new TracedPayload(mLives, uid, length)), true);
    }
    CElement * TracedRow(
        int uid, std::uint32_t id, const std::string & name, std::vector<std::uint32_t> indices)
    {
        return new CIndexedElement(id, name, indices, AListOf(new TracedPayload(mLives, uid)), true);
    }

    /// The calls of a write with these tags; `mWritten` is its result.
    Texts Write(const std::string & tags = "", std::vector<std::string> watched = {})
    {
        RecordingWriter writer(std::move(watched));
        CZynContext context;
        context.Parse(tags);
        mWritten = mChip.Write(writer, context);
        return writer.Calls();
    }

    /// What a write gives, in short: "1/3:" for a subsystem of type 1 in layer 3, then the numbers of its elements.
    std::string Written(const std::string & tags = "")
    {
        std::string text;
        for (const std::string & call : Write(tags, { "subsystemtype", "layernumber" })) {
            const auto start = call.find(" subsystemtype=");
            const auto middle = call.find(" layernumber=", start);
            const auto word = [&text](const std::string & added) {
                text.append(text.empty() ? 0 : 1, ' ').append(added);
            };
            if (call.rfind("StartSubsystem", 0) == 0)
                word(call.substr(start + 15, middle - start - 15) + "/" + call.substr(middle + 13) + ":");
            if (call.rfind("WritePayload", 0) == 0)
                word(call.substr(call.find(':') + 1, start - call.find(':') - 1));
        }
        return text;
    }

    FrameworkErrors mErrors;
    Lives mLives;
    CChipConfig mChip;
    bool mWritten = false;
};

}   // namespace VrexZynConfigTools::support

#endif
