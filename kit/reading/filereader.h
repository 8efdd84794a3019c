/// What all readers of files do alike: they read and check the whole file, and only then hand its subsystems and keys to
/// the observers, in the order that these expect. A format derives from `CFileReader` and implements `ReadContent`.
///
///     std::optional<FileContent> CMyReader::ReadContent(IConfigContext & context)
///     {
///         CFindings findings(Path());
///         FileContent content = Parse(findings);
///         if (findings.IsEmpty())
///             return content;
///         ReportErrors(findings);
///         return std::nullopt;
///     }

#ifndef KIT_READING_FILEREADER_H
#define KIT_READING_FILEREADER_H

#include <kit/reading/contexts.h>

#include <configtools/elements.h>
#include <configtools/metadataprovider.h>
#include <configtools/readerwriter.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kit::reading {

/// An element, built but not yet handed over.
struct Key
{
    std::unique_ptr<VrexZynConfigTools::CElement> mElement;
    std::vector<std::uint32_t> mIndices;   // of a table row; empty for a plain key
    std::uint32_t mLine = 0;               // where it is in a text file; 0 for nowhere
    std::uint32_t mColumn = 0;
};

/// The keys of one subsystem in one store, in the order of the file.
struct Subsystem
{
    SubsystemPlace mPlace;
    std::vector<Key> mKeys;
};

struct FileContent
{
    std::string mChip;   // the label; empty where the file has none
    std::vector<Subsystem> mSubsystems;
};

/// Calls the observers for all of `content`: the start, each subsystem with its keys, the end. The elements go over to
/// the element observer, which `elementObserver` refers to since the observer replaces it at each subsystem; where it is
/// null they stay. `base` is the context of the file (see `FileContext`).
void Deliver(FileContent & content, VrexZynConfigTools::IConfigContext & base,
    VrexZynConfigTools::IConfigReader & reader, VrexZynConfigTools::IConfigReaderObserver & observer,
    VrexZynConfigTools::IConfigReaderElementObserver * const & elementObserver);

/// A key that a subsystem has in one store more than once.
struct RepeatedKey
{
    const Subsystem * mSubsystem;
    const Key * mKey;
    const Key * mFirst;
};

/// All but the first of each such key, in order.
std::vector<RepeatedKey> RepeatedKeys(const std::vector<Subsystem> & subsystems);

/// Whether a chip configuration that reads with this context keeps one of several elements of a key ("insertmode").
/// Without an insert mode it has all of them.
bool OnlyOneOfTwoCounts(VrexZynConfigTools::IConfigContext & context);

/// What is wrong with reading a file for the chip `found` in a context that names a chip, as "the WHAT is for the chip
/// ..."; empty if nothing is.
std::string WhyNotForChip(
    const std::string & what, const std::string & found, VrexZynConfigTools::IConfigContext & context);

/// The common base of readers of one file. Observers and provider stay the caller's.
class CFileReader : public VrexZynConfigTools::IConfigReader
{
public:
    explicit CFileReader(const std::string & path);
    CFileReader(const CFileReader &) = delete;
    CFileReader & operator=(const CFileReader &) = delete;

    void SetObserver(VrexZynConfigTools::IConfigReaderObserver & observer) override;
    void SetElementObserver(VrexZynConfigTools::IConfigReaderElementObserver & observer) override;

    /// With a provider the elements may point at its records, so it must outlive them.
    void SetMetadataProvider(VrexZynConfigTools::IMetadataProvider & provider) override;

    /// If the file or the context is wrong, every finding is reported and no observer is called. No exception but
    /// `std::bad_alloc` is let out.
    void Read(VrexZynConfigTools::IConfigContext & context) override;

protected:
    /// The content of the file, read for `context`; nothing after an error, which it has reported.
    virtual std::optional<FileContent> ReadContent(VrexZynConfigTools::IConfigContext & context) = 0;

    const std::string & Path() const { return mPath; }
    VrexZynConfigTools::IMetadataProvider * Provider() const { return mProvider; }   // null for none

private:
    void ReadAndDeliver(VrexZynConfigTools::IConfigContext & context);

    std::string mPath;
    VrexZynConfigTools::IConfigReaderObserver * mObserver = nullptr;
    VrexZynConfigTools::IConfigReaderElementObserver * mElementObserver = nullptr;   // observers replace it
    VrexZynConfigTools::IMetadataProvider * mProvider = nullptr;
};

}   // namespace kit::reading

#endif
