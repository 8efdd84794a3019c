/// The reader of the plug-in.

#ifndef TOMLCONFIG_READER_H
#define TOMLCONFIG_READER_H

#include "document.h"

#include <configtools/readerwriter.h>
#include <configtools/stores.h>

#include <list>
#include <memory>
#include <string>

namespace tomlconfig {

/// Reads one file. Elements point at records that this object or the metadata provider owns, so both must outlive them.
///
/// It reports the stores of "rom" as a store manager does: a chip configuration records no others of this device.
class CTomlReader : public IConfigReader, public IStoreManager
{
public:
    explicit CTomlReader(const std::string & path);
    CTomlReader(const CTomlReader &) = delete;
    CTomlReader & operator=(const CTomlReader &) = delete;
    ~CTomlReader() override;

    void SetObserver(IConfigReaderObserver & observer) override;
    void SetElementObserver(IConfigReaderElementObserver & observer) override;

    /// With a provider, keys without a type are built by its records. Elements then point at these, so the provider must
    /// outlive the elements.
    void SetMetadataProvider(IMetadataProvider & provider) override;

    /// Builds everything before it delivers anything. If the file or the context is wrong, what is wrong is told in
    /// one error, a line for each finding, and no observer is called.
    void Read(IConfigContext & context) override;

    bool Open(IConfigContext & context) override;
    IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) override;
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override;

private:
    void ReadFileAndDeliver(IConfigContext & context);
    Document ReadQuietly(const std::string & text, CFindings & findings, IConfigContext & context) const;
    void WarnOfDuplicates(const Document & document, IConfigContext & context) const;
    void KeepRecords(Document & document);
    void KeepRomStores(const Document & document);
    void Deliver(Document & document, IConfigContext & context);
    void DeliverSubsystem(Subsystem & subsystem, IConfigContext & context);

    std::string mPath;
    IConfigReaderObserver * mObserver = nullptr;   // the caller's
    IMetadataProvider * mProvider = nullptr;       // the caller's; null for none
    IConfigReaderElementObserver * mElementObserver =
        nullptr;                          // the caller's; observers replace it during a read
    RecordList mRecords;                  // of all reads so far
    std::list<CStoreInfo *> mRomStores;   // owned
};

}   // namespace tomlconfig

#endif
