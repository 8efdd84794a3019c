/// The reader of the plug-in.

#ifndef IMAGECONFIG_READER_H
#define IMAGECONFIG_READER_H

#include "content.h"
#include "storeaccess.h"

#include <configtools/readerwriter.h>

#include <string>

namespace imageconfig {

/// Reads one image. With a metadata provider the elements point at its records, so the provider must outlive them.
///
/// It reports the stores of the image, with their sizes, as a store manager does.
class CImageReader : public IConfigReader, public IStoreManager
{
public:
    explicit CImageReader(const std::string & path);

    void SetObserver(IConfigReaderObserver & observer) override;
    void SetElementObserver(IConfigReaderElementObserver & observer) override;
    void SetMetadataProvider(IMetadataProvider & provider) override;

    /// Builds everything before it delivers anything. If the image or the context is wrong, what is wrong is told in one
    /// error, a line for each finding, and no observer is called.
    void Read(IConfigContext & context) override;

    bool Open(IConfigContext & context) override;
    IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) override;

    /// Those of the last read.
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override;

private:
    void ReadAndDeliver(IConfigContext & context);
    bool CheckContext(IConfigContext & context) const;
    void CheckStores(const Image & image, CFindings & findings) const;
    void WarnOf(const Content & content, IConfigContext & context) const;
    void Deliver(Content & content, IConfigContext & context);
    void DeliverSubsystem(Subsystem & subsystem, IConfigContext & context);

    std::string mPath;
    IConfigReaderObserver * mObserver = nullptr;                 // the caller's
    IConfigReaderElementObserver * mElementObserver = nullptr;   // the caller's; replaced during a read
    IMetadataProvider * mProvider = nullptr;                     // the caller's
    CStoreShelf mShelf;
};

}   // namespace imageconfig

#endif
