// The provider as a reader: who is called, with what contexts, and what the chip helper finds.

#include "sqlitemetadata_support.h"

#include <configtools/chipconfig.h>
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/helper.h>
#include <configtools/readerwriter.h>

#include <gmock/gmock.h>

#include <map>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// Notes a read, with the tags of each context.
class ReadWatch : public IConfigReaderObserver, public IConfigReaderElementObserver
{
public:
    void OnReadStarted(IConfigReader &, IConfigContext & context) override { Note("start", context); }
    void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) override
    {
        Note("subsystem", context);
        reader.SetElementObserver(*this);
    }
    void OnSubsystemCompleted(IConfigReader &, IConfigContext & context) override
    {
        Note("completed", context);
    }
    void OnReadEnded(IConfigReader &, IConfigContext & context) override { Note("end", context); }
    bool OnElementFound(CElement * element, IConfigContext & context) override
    {
        Note(element->Name(), context);
        delete element;
        return true;
    }

    std::vector<std::string> mCalls;

private:
    void Note(const std::string & what, IConfigContext & context)
    {
        std::string call = what;
        for (const auto & [tag, value] : dynamic_cast<CBaseContext &>(context).Tags())
            call += ' ' + tag + '=' + value;
        mCalls.push_back(call);
    }
};

class DefaultsRead : public RepositoryTest
{
protected:
    DefaultsRead()
    {
        mSystem = mRepository.AddSystem("pottersong", "trindle7");
        const auto bt = mRepository.AddSubsystem(mSystem, "bt");
        mRepository.AddSubsystem(mSystem, "audio");
        const auto wlan = mRepository.AddSubsystem(mSystem, "wlan");
        const auto gain = mRepository.AddKey(bt, { .psid = 2, .name = "gain", .numIndices = 1 });
        mRepository.AddIntIndex(gain, 1, "antenna", 0, 9);
        mRepository.AddDefault(gain, { "1" }, { 5 });
        mRepository.AddDefault(mRepository.AddKey(bt, { .psid = 1, .name = "volume" }), { "2" });
        mRepository.AddDefault(mRepository.AddKey(bt, { .psid = 3, .name = "tone" }), { "3" });
        mRepository.AddDefault(mRepository.AddKey(wlan, { .psid = 1, .name = "channel" }), { "11" });
    }

    void Read(IConfigContext & context)
    {
        mProvider = Provider();
        auto & reader = dynamic_cast<IConfigReader &>(*mProvider);
        reader.SetObserver(mWatch);
        reader.Read(context);
    }

    RepositoryBuilder::Id mSystem = 0;
    std::unique_ptr<IMetadataProvider> mProvider;
    ReadWatch mWatch;
};

TEST_F(DefaultsRead, goes_through_the_subsystems_with_defaults_in_layer_0_of_the_selected_chip)
{
    CZynContext context;
    context.Parse("chip=trindle7;device=15;store=2;layernumber=7;subsystemtype=2;index1=4;num_indices=1;own=x");
    const auto tagsBefore = context.Tags();
    Read(context);
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    const std::string bt = "chip=trindle7 layernumber=0 own=x subsystemtype=1";
    const std::string wlan = "chip=trindle7 layernumber=0 own=x subsystemtype=2";
    EXPECT_THAT(mWatch.mCalls,
        ElementsAre("start " + wlan, "subsystem " + bt, "volume " + bt,
            "gain chip=trindle7 index1=5 layernumber=0 num_indices=1 own=x subsystemtype=1", "tone " + bt,
            "completed " + bt, "subsystem " + wlan, "channel " + wlan, "completed " + wlan, "end " + wlan));
    EXPECT_EQ(tagsBefore, context.Tags());
}

TEST_F(DefaultsRead, without_a_chip_means_the_only_system_and_names_no_chip)
{
    CZynContext context;
    Read(context);
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    ASSERT_EQ(10U, mWatch.mCalls.size());
    EXPECT_EQ("channel layernumber=0 subsystemtype=2", mWatch.mCalls[7]);
}

TEST_F(DefaultsRead, without_a_chip_is_refused_where_there_are_several_systems)
{
    mRepository.AddSystem("dunlin", "dunlin2");
    CZynContext context;
    Read(context);
    EXPECT_EQ("system label not found (no chip is selected; there is \"trindle7\", \"dunlin2\")", Fault());
    EXPECT_THAT(mWatch.mCalls, IsEmpty());
}

TEST_F(DefaultsRead, of_an_unknown_chip_is_refused)
{
    CZynContext context = ContextOf("trindle");
    Read(context);
    EXPECT_EQ("system label not found (the chip \"trindle\" is unknown; there is \"trindle7\")", Fault());
    EXPECT_THAT(mWatch.mCalls, IsEmpty());
}

TEST_F(DefaultsRead, tells_everything_that_is_wrong_and_delivers_nothing)
{
    mRepository.Run("UPDATE records SET max = 2");
    CZynContext context = ContextOf("trindle7");
    Read(context);
    EXPECT_EQ(Path() + ": the default value of key 3 \"tone\": Read value 3 is out of range [0,2]\n" + Path() +
                  ": the default value of key 1 \"channel\": Read value 11 is out of range [0,2]",
        mErrors.Text());
    EXPECT_THAT(mWatch.mCalls, IsEmpty());
}

TEST_F(DefaultsRead, leaves_errors_that_stand_as_they_are)
{
    CMessageHandler & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_OUTER_READER, "test", false);
    handler.SetErrorMsg(7, "of the outer reader");
    mErrors.Set("of the framework");
    CZynContext context = ContextOf("trindle7");
    Read(context);
    EXPECT_EQ(10U, mWatch.mCalls.size());
    EXPECT_EQ("of the framework", mErrors.Text());
    short code = 0;
    std::string text;
    EXPECT_TRUE(handler.GetErrorMsg(GROUP_OUTER_READER, code, text));
    EXPECT_EQ("of the outer reader", text);
    EXPECT_EQ(7, code);
    handler.ClearError(GROUP_OUTER_READER);
}

TEST_F(DefaultsRead, takes_an_empty_context_in_place_of_the_null_one)
{
    Read(CNullContext::Ref());
    ASSERT_EQ(10U, mWatch.mCalls.size());
    EXPECT_EQ("start layernumber=0", mWatch.mCalls.front());
}

TEST_F(DefaultsRead, without_an_observer_is_an_error)
{
    mProvider = Provider();
    CZynContext context;
    dynamic_cast<IConfigReader &>(*mProvider).Read(context);
    EXPECT_EQ("invalid operation (a read without an observer)", Fault());
}

TEST_F(DefaultsRead, of_an_unusable_repository_calls_nobody)
{
    mRepository.Close();
    std::filesystem::remove(Path());
    CZynContext context;
    Read(context);
    EXPECT_THAT(Fault(), HasSubstr("there is no such file"));
    EXPECT_THAT(mWatch.mCalls, IsEmpty());
}

// In one test, since the helper reads defaults once in the life of a process. The provider has to outlive them, and is
// left to the process for that reason.
TEST_F(DefaultsRead, serves_the_chip_helper)
{
    static IMetadataProvider & provider = *Provider().release();
    const auto value = [](const CChipConfig & elements, CZynContext context, const std::string & key) {
        const auto payloads = CHelper::Ref().RetrieveApplicablePayload(provider, elements, context, key);
        return payloads.empty() ? std::string("none") : payloads.front()->ToString();
    };
    CChipConfig elements;
    EXPECT_EQ("2", value(elements, ContextOf("trindle7", 1), "VOLUME"));
    EXPECT_EQ("1", value(elements, ContextOf("trindle7", 1), "gain.5"));
    EXPECT_EQ("11", value(elements, ContextOf("trindle7", 2), "channel"));
    EXPECT_EQ("none", value(elements, ContextOf("trindle7", 2), "volume"));
    EXPECT_EQ("none", value(elements, ContextOf("", 1), "volume"));
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();

    CZynContext context = ContextOf("trindle7");
    EXPECT_EQ(0x34, CHelper::Ref().GetAssociatedChipId(&provider, context));
    std::string label = "TRINDLE7";
    EXPECT_TRUE(CHelper::Ref().IsSystemLabelVersionValid(provider, label));
    EXPECT_EQ("trindle7", label);
}

}   // namespace
