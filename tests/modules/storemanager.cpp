// A module with a store manager, and without a signature. The manager knows one store, whose number is the length of
// the creator's text.

#include <configtools/plugin.h>
#include <configtools/stores.h>

#include <list>

namespace {

using namespace VrexZynConfigTools;

class COneStore : public IStoreManager
{
public:
    explicit COneStore(std::uint16_t storeId)
        : mStore(DEVICE_OTP, storeId, 1024, 512, 0, 0, false)
        , mStores{ &mStore }
    {}
    bool Open(IConfigContext &) override { return true; }
    IChunkInOut * ChunkAccess(DEVICE, std::uint16_t, IConfigContext &) override { return nullptr; }
    const std::list<CStoreInfo *> & Stores(IConfigContext &) override { return mStores; }

private:
    CStoreInfo mStore;
    std::list<CStoreInfo *> mStores;
};

}   // namespace

const char * GetPlugInName()
{
    return "store manager";
}

IStoreManager * CreateStoreManager(const std::string & argument, void *)
{
    return new COneStore(static_cast<std::uint16_t>(argument.size()));
}
