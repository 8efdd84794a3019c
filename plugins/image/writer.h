/// The writer of the plug-in.

#ifndef IMAGECONFIG_WRITER_H
#define IMAGECONFIG_WRITER_H

#include "image.h"
#include "keypacker.h"

#include <configtools/readerwriter.h>
#include <kit/reading/storetags.h>
#include <kit/reporting/findings.h>
#include <kit/targetfile/targetfile.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace imageconfig {

using namespace VrexZynConfigTools;

/// Writes one image. The stores go into it by layer, bottom to top, since a reader stacks the stores of a device in the
/// order in which it finds them.
///
/// What can't be carried is found key by key, and told at the end in one error; then the file stays as it was, as it does
/// if an error stands in the framework's group.
class CImageWriter : public IConfigWriter
{
public:
    explicit CImageWriter(const std::string & path);

    void PrepareWriter(IConfigContext & context) override;
    void StartWrite(IConfigContext & context) override;
    void EndWrite(IConfigContext & context) override;
    void StartSubsystem(IConfigContext & context) override;
    void EndSubsystem(IConfigContext & context) override;
    void StartElement(IConfigContext & context) override;
    void EndElement(IConfigContext & context) override;
    void WriteKeyId(std::uint32_t psId, IConfigContext & context) override;
    void WriteNamedData(
        const std::string & name, const void * data, std::uint32_t size, IConfigContext & context) override;
    void WritePayload(IPayload & payload, IConfigContext & context) override;

private:
    /// One store on its way into the image.
    struct OpenStore
    {
        int mLayer;
        Store mStore;
    };

    template <typename ActionT>
    void Run(ActionT action);
    void Refuse(const std::string & code, const std::string & text);
    void RefuseToWrite(const std::string & reason);
    void Begin(IConfigContext & context);
    void OpenSubsystem(IConfigContext & context);
    void TakeChip(IConfigContext & context);
    std::optional<int> NumberTag(IConfigContext & context, const char * tag, int min);
    void CloseSubsystem();
    void CloseElement();
    void AddFinding(kit::reporting::CFindings & findings, const std::string & code, const std::string & key,
        const std::string & text) const;
    void AddChunk(const Chunk & chunk, const std::string & what);
    void Finish();
    void SettleSizes();
    void WarnOfLosses() const;
    std::string StoreName() const;

    std::string mPath;
    kit::targetfile::CTargetFile mFile;
    kit::reading::StoreSizes mSizes;
    std::vector<OpenStore> mStores;
    std::map<std::pair<std::optional<int>, std::optional<int>>, std::size_t> mPlaces;   // in mStores
    std::optional<std::string> mChip;
    kit::reporting::CFindings mFindings;
    kit::reporting::CFindings mChanges;   // values that come back changed, without checks
    bool mChecks = true;
    bool mIsRunning = false;              // between StartWrite and EndWrite, and nothing has gone wrong
    std::optional<std::size_t> mStore;    // of the subsystem that is open
    std::optional<int> mSubsystemType;    // the same
    bool mHasKeys = false;                // the same
    bool mIsRaw = false;                  // the element that is open
    std::optional<CKeyPacker> mElement;   // from its number on
    std::vector<std::string> mLosses;     // keys whose name or type isn't in the image
};

}   // namespace imageconfig

#endif
