// A reader that reports its stores too, as a reader of a real device does, and delivers elements of library classes
// and of one of its own.

#include <configtools/elements.h>
#include <configtools/payloads.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>
#include <configtools/types.h>
#include <configtools/zyncontext.h>

#include <list>
#include <memory>
#include <vector>

namespace {

using namespace VrexZynConfigTools;

/// An element class that the library has never seen.
class CDeviceElement : public CElementNumericArray
{
public:
    explicit CDeviceElement(std::uint32_t psId)
        : CElementNumericArray(NUMERIC_UINT32, psId, "device element", false)
    {}
};

class CStoreReader : public IConfigReader, public IStoreManager
{
public:
    CStoreReader()
        : mOtp(DEVICE_OTP, 1, 1024, 512, 0, 0, false)
        , mEeprom(DEVICE_EEPROM, 1, 4096, 4000, 0, 1, false)
        , mStores{ &mOtp, &mEeprom }
    {}

    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider &) override {}
    void Read(IConfigContext & context) override
    {
        mObserver->OnReadStarted(*this, context);
        ReadSubsystem(DEVICE_OTP, 7);
        ReadSubsystem(DEVICE_EEPROM, 8);
        mObserver->OnReadEnded(*this, context);
    }

    bool Open(IConfigContext &) override { return true; }
    IChunkInOut * ChunkAccess(DEVICE, std::uint16_t, IConfigContext &) override { return nullptr; }
    const std::list<CStoreInfo *> & Stores(IConfigContext &) override { return mStores; }

private:
    void ReadSubsystem(DEVICE device, std::uint32_t value)
    {
        CZynContext context;
        context.SetSubsystemType(SUBSYSTEM_BT);
        context.SetDevice(device);
        context.SetStore(1);
        mObserver->OnSubsystemFound(*this, context);

        auto plain = std::make_unique<CElementNumericArray>(NUMERIC_UINT32, 100, "plain", false);
        plain->SetValue(std::vector<std::uint32_t>{ value });
        mElementObserver->OnElementFound(plain.release(), context);   // the observer owns it now
        auto own = std::make_unique<CDeviceElement>(101);
        own->SetValue(std::vector<std::uint32_t>{ value });
        mElementObserver->OnElementFound(own.release(), context);   // and this

        mObserver->OnSubsystemCompleted(*this, context);
    }

    CStoreInfo mOtp;
    CStoreInfo mEeprom;
    std::list<CStoreInfo *> mStores;
    IConfigReaderObserver * mObserver = nullptr;                 // the caller's
    IConfigReaderElementObserver * mElementObserver = nullptr;   // the caller's
};

}   // namespace

const char * GetPlugInName()
{
    return "store reader";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IConfigReader * CreateConfigReader(const std::string &, void *)
{
    return new CStoreReader;
}

IStoreManager * CreateStoreManager(const std::string &, void *)
{
    return new CStoreReader;
}
