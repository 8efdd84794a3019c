/// The writer of the plug-in.

#ifndef TOMLCONFIG_WRITER_H
#define TOMLCONFIG_WRITER_H

#include "describedtext.h"
#include "valuetext.h"
#include "vocabulary.h"

#include <configtools/readerwriter.h>
#include <configtools/types.h>
#include <kit/reading/devices.h>
#include <kit/targetfile/targetfile.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tomlconfig {

/// What the metadata of a key says that its payloads don't.
struct Record
{
    std::string mName;
    std::string mInternalType;
    bool mIsArray;
    MetadataTypeEnum mMetadataType;
};

/// What has arrived of one element.
struct Element
{
    std::uint32_t mId = 0;
    bool mIsRaw = false;
    bool mIsRow = false;
    std::vector<std::uint32_t> mIndices;
    std::optional<Record> mRecord;
    std::vector<ValueText> mValues;
    const IMetadata * mMetadata = nullptr;   // the record of a provider; null for none
    bool mIsDescribed = false;               // so far each value has been told in the words of that record
    std::vector<DescribedValue> mDescribedValues;
};

/// The text of one subsystem.
struct Block
{
    int mLayer;
    std::string mText;
};

/// Writes one file. Subsystems come by type from the library and go into the file by layer, bottom to top: a reader
/// stacks the stores of a device in the order in which it finds them, which would turn round otherwise.
///
/// The text grows in memory and becomes the file's content at the end of the write, if no error
/// stands in the framework's group and everything could be told; otherwise the file stays as it was.
class CTomlWriter : public IConfigWriter
{
public:
    explicit CTomlWriter(const std::string & path);

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
    template <typename ActionT>
    void Run(ActionT action);
    void Fail(const std::string & code, const std::string & text);
    void FailToWrite(const std::string & reason);
    bool CanWrite();
    void MakeHead(const std::string & chip);
    void AddSubsystem(IConfigContext & context);
    void AddTag(IConfigContext & context, const char * tag, const char * name,
        const std::vector<kit::reading::TagWord> & words);
    void AddPayload(IPayload & payload);
    void AddNamedData(const std::string & name, const void * data, std::uint32_t size);
    void AddElement(const Element & element);
    void AddTypedElement(const Element & element);
    void Finish();
    std::string WholeText();

    std::string mPath;
    kit::targetfile::CTargetFile mFile;
    std::string mHead;
    std::vector<Block> mBlocks;
    std::string mLayerFilter;          // empty for a full write
    std::string mChip;                 // of the whole file
    bool mHasFailed = false;           // some call of this write couldn't do its work
    bool mIsInBt = false;              // the subsystem is of this type
    bool mIsInSubsystem = false;       // between StartSubsystem and EndSubsystem
    std::optional<Element> mElement;   // between StartElement and EndElement
};

}   // namespace tomlconfig

#endif
