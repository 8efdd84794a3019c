/// The reader of the plug-in.

#ifndef IMAGECONFIG_READER_H
#define IMAGECONFIG_READER_H

#include "content.h"
#include "storeaccess.h"

#include <kit/reading/filereader.h>

#include <optional>
#include <string>

namespace imageconfig {

/// Reads one image. With a metadata provider the elements point at its records, so the provider must outlive them.
///
/// It reports the stores of the image, with their sizes, as a store manager does.
class CImageReader : public kit::reading::CFileReader, public IStoreManager
{
public:
    explicit CImageReader(const std::string & path);

    bool Open(IConfigContext & context) override;
    IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) override;

    /// Those of the last read.
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override;

protected:
    std::optional<kit::reading::FileContent> ReadContent(IConfigContext & context) override;

private:
    void Warn(const std::string & code, const std::string & text) const;
    void WarnOf(const Content & content, IConfigContext & context) const;

    CStoreShelf mShelf;
};

}   // namespace imageconfig

#endif
