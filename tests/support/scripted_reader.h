/// Readers that deliver what a test tells them to, in the order of a real read.

#ifndef TESTS_SUPPORT_SCRIPTED_READER_H
#define TESTS_SUPPORT_SCRIPTED_READER_H

#include <configtools/elements.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// One subsystem of a source. Tags are in the text form of a context, "key=value;key=value".
class ASubsystem
{
public:
    explicit ASubsystem(int type)
        : mTags("subsystemtype=")
    {
        mTags += std::to_string(type);
    }
    ASubsystem() = default;   // no type

    ASubsystem && In(int device, int store) &&
    {
        std::string tags = "device=";
        tags += std::to_string(device) + ";store=" + std::to_string(store);
        return std::move(*this).Tagged(tags);
    }

    ASubsystem && Tagged(const std::string & tags) &&
    {
        if (!mTags.empty())
            mTags += ';';
        mTags += tags;
        return std::move(*this);
    }

    /// The element's own tags hold for it alone.
    ASubsystem && Holding(CElement * element, const std::string & tags = "") &&
    {
        mElements.push_back({ std::unique_ptr<CElement>(element), tags });
        return std::move(*this);
    }

private:
    friend class ScriptedReader;
    struct Delivery
    {
        std::unique_ptr<CElement> mElement;
        std::string mTags;
    };

    std::string mTags;
    std::vector<Delivery> mElements;
};

/// Delivers its subsystems at `Read`, once. Implements no store manager.
class ScriptedReader : public IConfigReader
{
public:
    ScriptedReader & Delivers(ASubsystem && subsystem)
    {
        mSubsystems.push_back(std::move(subsystem));
        return *this;
    }

    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override
    {
        mElementObservers.push_back(&observer);
    }
    void SetMetadataProvider(IMetadataProvider & /*provider*/) override {}

    void Read(IConfigContext & context) override
    {
        mObserver->OnReadStarted(*this, context);
        for (auto & subsystem : std::exchange(mSubsystems, {}))
            Deliver(subsystem, context);
        mObserver->OnReadEnded(*this, context);
    }

    /// Reads into `observer` with a context of its own, which has these tags.
    void ReadInto(IConfigReaderObserver & observer, const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        SetObserver(observer);
        Read(context);
    }

    /// Every element observer that the reader was given, in order.
    const std::vector<IConfigReaderElementObserver *> & ElementObservers() const { return mElementObservers; }

private:
    void Deliver(ASubsystem & subsystem, IConfigContext & context)
    {
        const std::unique_ptr<IConfigContext> ofSubsystem(context.Clone());
        ofSubsystem->Parse(subsystem.mTags);
        mObserver->OnSubsystemFound(*this, *ofSubsystem);
        for (auto & delivery : subsystem.mElements) {
            const std::unique_ptr<IConfigContext> ofElement(ofSubsystem->Clone());
            ofElement->Parse(delivery.mTags);
            mElementObservers.back()->OnElementFound(delivery.mElement.release(), *ofElement);
        }
        mObserver->OnSubsystemCompleted(*this, *ofSubsystem);
    }

    IConfigReaderObserver * mObserver = nullptr;
    std::vector<IConfigReaderElementObserver *> mElementObservers;
    std::vector<ASubsystem> mSubsystems;
};

/// A scripted reader that reports stores, too.
class StoreReportingReader : public ScriptedReader, public IStoreManager
{
public:
    ~StoreReportingReader() override { ClearStoreList(mStores); }
    StoreReportingReader() = default;
    StoreReportingReader(const StoreReportingReader &) = delete;
    StoreReportingReader & operator=(const StoreReportingReader &) = delete;

    StoreReportingReader & Reports(const CStoreInfo & store)
    {
        mStores.push_back(new CStoreInfo(store));
        return *this;
    }
    StoreReportingReader & Reports(IStoreManager::DEVICE device, std::uint16_t storeId)
    {
        return Reports(CStoreInfo(device, storeId, 0xFFFFFFFF, CStoreInfo::INVALID_STORE_SIZE, 0, 0, false));
    }
    StoreReportingReader & ReportsNull()
    {
        mStores.push_back(nullptr);
        return *this;
    }

    bool Open(IConfigContext & /*context*/) override { return true; }
    IChunkInOut * ChunkAccess(
        DEVICE /*device*/, std::uint16_t /*storeId*/, IConfigContext & /*context*/) override
    {
        return nullptr;
    }
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override
    {
        mAskedWith.push_back(&context);
        return mStores;
    }

    /// The context of each call of `Stores`.
    const std::vector<IConfigContext *> & AskedWith() const { return mAskedWith; }

private:
    std::list<CStoreInfo *> mStores;   // owned
    std::vector<IConfigContext *> mAskedWith;
};

}   // namespace VrexZynConfigTools::support

#endif
