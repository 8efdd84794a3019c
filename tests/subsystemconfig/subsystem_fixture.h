/// A subsystem, as a reader and a caller see it.

#ifndef TESTS_SUBSYSTEMCONFIG_SUBSYSTEM_FIXTURE_H
#define TESTS_SUBSYSTEMCONFIG_SUBSYSTEM_FIXTURE_H

#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <support/element_builder.h>
#include <support/element_observers.h>
#include <support/lives.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

class SubsystemTest : public testing::Test
{
protected:
    /// Hands `element` over as a reader does, and gives it back: it may be dead by then.
    CElement * Add(CElement * element, IConfigContext & context)
    {
        EXPECT_TRUE(static_cast<IConfigReaderElementObserver &>(mSubsystem).OnElementFound(element, context));
        return element;
    }
    CElement * Add(CElement * element, const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        return Add(element, context);
    }

    CElement * AddPlain(std::uint32_t id, const std::string & name = "", const std::string & tags = "")
    {
        return Add(AnElement(id).Named(name).Number(id).Release(), tags);
    }
    CElement * AddRow(std::uint32_t id, const std::string & name, const std::vector<std::uint32_t> & indices,
        const std::string & tags = "")
    {
        return Add(new CIndexedElement(id, name, indices, AListOf(new CUint32Payload(id)), true), tags);
    }

    /// An element that lives as long as its number is in `mLives`.
    CElement * Traced(int uid, std::uint32_t id, const std::string & name = "", std::uint64_t length = 1)
    {
        return new CElementNumericArray(id, name, AListOf(new TracedPayload(mLives, uid, length)), true);
    }
    CElement * TracedRow(int uid, std::uint32_t id, const std::vector<std::uint32_t> & indices,
        const std::string & name = "")
    {
        return new CIndexedElement(id, name, indices, AListOf(new TracedPayload(mLives, uid)), true);
    }

    /// The whole list as the elements' own numbers.
    std::vector<int> Uids()
    {
        std::vector<int> uids;
        for (const CElement * element : mSubsystem.Elements())
            uids.push_back(UidOf(*element));
        return uids;
    }

    static bool IsNull(const CElement & element) { return &element == &CNullElement::Ref(); }

    Lives mLives;
    RecordingElementObserver mObserver;
    CZynContext mOwnContext;
    CSubsystemConfig mSubsystem{ mOwnContext, &mObserver };
};

}   // namespace VrexZynConfigTools::support

#endif
