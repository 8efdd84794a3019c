/// The stores of an image file as a store manager gives access to them.

#ifndef IMAGECONFIG_STOREACCESS_H
#define IMAGECONFIG_STOREACCESS_H

#include "image.h"

#include <configtools/stores.h>

#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace imageconfig {

using namespace VrexZynConfigTools;

/// Moves the chunks of one store between an image file and a collection. The file is read anew for each call.
class CStoreAccess : public IChunkInOut
{
public:
    CStoreAccess(const std::string & path, int device, int number);

    bool ReadChunks(CChunkCollection & chunks, IConfigContext & context) override;

    /// The size of the store stays, and its free size follows. The chunks have to be those of an image: keys, numbered
    /// from 1 on.
    bool WriteChunks(const CChunkCollection & chunks, IConfigContext & context) override;

private:
    void Report(const std::string & text) const;
    Store * Find(Image & image, IConfigContext & context, std::string & error) const;
    bool Replace(Store & store, const CChunkCollection & chunks, std::string & error) const;

    std::string mPath;
    int mDevice;
    int mNumber;
};

/// What the store manager and the reader have in common: the stores of an image that has been read.
class CStoreShelf
{
public:
    explicit CStoreShelf(const std::string & path);
    CStoreShelf(const CStoreShelf &) = delete;
    CStoreShelf & operator=(const CStoreShelf &) = delete;
    ~CStoreShelf();

    void Keep(const Image & image);
    IChunkInOut * Access(int device, int number);   // stays the shelf's; null for a store that isn't there
    const std::list<CStoreInfo *> & Stores() const { return mStores; }

private:
    std::string mPath;
    std::list<CStoreInfo *> mStores;   // owned
    std::map<std::pair<int, int>, std::unique_ptr<CStoreAccess>> mAccess;
};

/// The store manager of the plug-in.
class CImageStoreManager : public IStoreManager
{
public:
    explicit CImageStoreManager(const std::string & path);

    /// Reads the stores of the file. False, with an error, if it is no image, or one for another chip.
    bool Open(IConfigContext & context) override;
    IChunkInOut * ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext & context) override;

    /// None before the file has been opened.
    const std::list<CStoreInfo *> & Stores(IConfigContext & context) override;

private:
    std::string mPath;
    CStoreShelf mShelf;
};

}   // namespace imageconfig

#endif
