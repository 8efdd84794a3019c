// Lookups with contexts of other classes, which answer in ways of their own.

#include "layered_chip_fixture.h"

#include <support/foreign_contexts.h>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

using CChipConfigForeignContext = LayeredChipTest;

TEST_F(CChipConfigForeignContext, may_compute_filter_and_key)
{
    ComputingContext<CZynContext> context;
    context.Parse("chip=c;subsystemtype=1;layernumber=1");
    context.Computes("layerfilter", "15");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);

    ComputingContext<CBaseContext> keyed("keyed");
    keyed.Computes("subsystemkeybylayer", "c| |2|2");
    EXPECT_EQ(UidOf(mChip.Element(100U, keyed)), 22);
    keyed.SetTag("layerfilter", 9);
    EXPECT_EQ(UidOf(mChip.Element(100U, keyed)), 22);   // the same key for every layer
    EXPECT_EQ(UidOf(mChip.Element(101U, keyed)), NULL_ELEMENT);
}

TEST_F(CChipConfigForeignContext, is_asked_anew_each_time)
{
    ComputingContext<CZynContext> context;
    context.Parse("chip=c;subsystemtype=1;layernumber=1");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);
    context.Computes("subsystemkeybylayer", "c| |1|3");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
    context.Computes("subsystemkeybylayer", "c| |2|2");
    EXPECT_EQ(UidOf(mChip.Element("both", context)), 22);
    context.Computes("layerfilter", "3").Computes("subsystemkeybylayer", "c| |1|1");
    EXPECT_EQ(UidOf(mChip.Element("both", context)), 1);
}

TEST_F(CChipConfigForeignContext, may_look_for_other_tags)
{
    PrefixedContext<CZynContext> context;
    context.Parse("chip=c;subsystemtype=1;my.layerfilter=15;my.subsystemkeybylayer=c| |1|3;layerfilter=1");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
}

TEST_F(CChipConfigForeignContext, need_not_be_a_base_context)
{
    MapContext context("chip=c;subsystemtype=1;layernumber=3");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);

    context.Parse("layerfilter=2;layernumber=7");
    const auto before = context.All();
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 1);
    EXPECT_EQ(UidOf(mChip.Element("mid", context)), 2);
    EXPECT_EQ(context.All(), before);
    EXPECT_EQ(MapContext::Live(), 1);   // the working copies are gone
}

TEST_F(CChipConfigForeignContext, of_the_base_class_finds_by_a_stored_key)
{
    CBaseContext context("base");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), NULL_ELEMENT);
    context.SetTag("subsystemkeybylayer", "c| |1|3");
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
    context.SetTag("layerfilter", 1);
    EXPECT_EQ(UidOf(mChip.Element(100U, context)), 3);
}

TEST_F(CChipConfigForeignContext, that_is_null_finds_by_the_empty_key)
{
    EXPECT_EQ(UidOf(mChip.Element(100U, CNullContext::Ref())), NULL_ELEMENT);

    ScriptedReader reader;
    CBaseContext context("base", 1);
    static_cast<IConfigReaderObserver &>(mChip).OnSubsystemFound(reader, context);
    CZynContext plain;
    reader.ElementObservers()[0]->OnElementFound(Traced(50, 100), plain);
    EXPECT_EQ(UidOf(mChip.Element(100U, CNullContext::Ref())), 50);
}

/// Notes the layers that are asked for, also those asked of its clones.
class LayerNotingContext : public MapContext
{
public:
    LayerNotingContext(const std::string & tags, Texts & layers)
        : MapContext(tags)
        , mLayers(layers)
    {}
    using MapContext::SetTag;
    void SetTag(const std::string & key, int value) override
    {
        LayerNotingContext::SetTag(key, std::to_string(value));
    }
    void SetTag(const std::string & key, const std::string & value) override
    {
        EXPECT_EQ(key, "layernumber");
        mLayers.push_back(value);
        MapContext::SetTag(key, value);
    }
    IConfigContext * Clone() override { return new LayerNotingContext(*this); }

private:
    Texts & mLayers;
};

TEST_F(CChipConfigForeignContext, is_asked_for_each_layer_down_to_the_answer)
{
    Texts layers;
    LayerNotingContext context("chip=c;subsystemtype=1;layerfilter=5", layers);
    EXPECT_EQ(UidOf(mChip.Element(101U, context)), 2);
    EXPECT_EQ(layers, (Texts{ "5", "4", "3", "2" }));

    layers.clear();
    EXPECT_EQ(UidOf(mChip.Element("none", context)), NULL_ELEMENT);
    EXPECT_EQ(layers, (Texts{ "5", "4", "3", "2", "1" }));
}

}   // namespace
