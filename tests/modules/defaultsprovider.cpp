// A metadata provider that delivers a default value, in an element of a class of its own or, for the argument "plain",
// of the library's. Module, provider and element tell of their lives.

#include "empty_provider.h"

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>

#include <memory>
#include <vector>

/// A test program may export this; it is told what comes ("+what") and goes ("-what").
extern "C" __attribute__((weak)) void OnModuleEvent(const char * event);

namespace {

using namespace VrexZynConfigTools;

void Tell(const char * event)
{
    if (OnModuleEvent != nullptr)
        OnModuleEvent(event);
}

class CLife
{
public:
    CLife() { Tell("+defaultsprovider"); }
    CLife(const CLife &) = delete;
    CLife & operator=(const CLife &) = delete;
    ~CLife() { Tell("-defaultsprovider"); }
};

const CLife life;

class CDefaultElement : public CElementNumericArray
{
public:
    CDefaultElement()
        : CElementNumericArray(NUMERIC_UINT32, 100, "volume", false)
    {
        SetValue(std::vector<std::uint32_t>{ 5 });
        Tell("+element");
    }
    CDefaultElement(const CDefaultElement &) = delete;
    CDefaultElement & operator=(const CDefaultElement &) = delete;
    ~CDefaultElement() override { Tell("-element"); }
};

class CDefaultsProvider : public CEmptyProvider
{
public:
    using CEmptyProvider::CEmptyProvider;
    CDefaultsProvider(const CDefaultsProvider &) = delete;
    CDefaultsProvider & operator=(const CDefaultsProvider &) = delete;
    ~CDefaultsProvider() override { Tell("-provider"); }

    void Read(IConfigContext & context) override
    {
        mObserver->OnReadStarted(*this, context);
        const std::unique_ptr<IConfigContext> subsystem(context.Clone());
        mObserver->OnSubsystemFound(*this, *subsystem);
        auto element = NewElement();
        mElementObserver->OnElementFound(element.release(), *subsystem);   // the observer owns it now
        mObserver->OnSubsystemCompleted(*this, *subsystem);
        mObserver->OnReadEnded(*this, context);
    }

private:
    std::unique_ptr<CElementNumericArray> NewElement() const
    {
        if (mSource != "plain")
            return std::make_unique<CDefaultElement>();
        auto element = std::make_unique<CElementNumericArray>(NUMERIC_UINT32, 100, "volume", false);
        element->SetValue(std::vector<std::uint32_t>{ 6 });
        return element;
    }
};

}   // namespace

const char * GetPlugInName()
{
    return "defaults provider";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IMetadataProvider * CreateMetadataProvider(const std::string & argument)
{
    return new CDefaultsProvider(argument);
}
