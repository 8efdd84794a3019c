/// What the tests of the plug-in "imageconfig" share: the real module, a folder of their own, chips that are made of
/// elements or read from images, and images made byte by byte.

#ifndef TESTS_IMAGE_IMAGE_SUPPORT_H
#define TESTS_IMAGE_IMAGE_SUPPORT_H

#include <support/framework_errors.h>
#include <support/memory_provider.h>
#include <support/scripted_reader.h>

#include <configtools/chipconfig.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>
#include <kit/layout/trees.h>

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

/// A new folder, removed with all that is in it at the end.
class ImageFolder
{
public:
    ImageFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "imageconfig.XXXXXX").string();
        mPath = mkdtemp(pattern.data()) != nullptr ? pattern : "";
    }
    ~ImageFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    ImageFolder(const ImageFolder &) = delete;
    ImageFolder & operator=(const ImageFolder &) = delete;

    std::string operator/(const std::string & name) const { return mPath + '/' + name; }

    /// The names of what is in the folder.
    std::size_t Count() const
    {
        const std::filesystem::directory_iterator files(mPath);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::string mPath;
};

inline std::string ContentOf(const std::string & path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline void PutContent(const std::string & path, const std::string & content)
{
    std::ofstream(path, std::ios::binary) << content;
}

inline CReaderWriterFactory & Plugins()
{
    CReaderWriterFactory::Ref().Load(IMAGE_PLUGIN_DIR);
    return CReaderWriterFactory::Ref();
}

inline std::unique_ptr<IConfigReader> MakeReader(const std::string & path)
{
    return std::unique_ptr<IConfigReader>(Plugins().CreateReader("imageconfig", path, nullptr));
}

inline std::unique_ptr<IConfigWriter> MakeWriter(const std::string & path)
{
    return std::unique_ptr<IConfigWriter>(Plugins().CreateWriter("imageconfig", path, nullptr));
}

inline std::unique_ptr<IStoreManager> MakeStoreManager(const std::string & path)
{
    return std::unique_ptr<IStoreManager>(Plugins().CreateStoreManager("imageconfig", path, nullptr));
}

inline std::string Hex(const std::string & bytes)
{
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        text += DIGITS[static_cast<unsigned char>(character) / 16];
        text += DIGITS[static_cast<unsigned char>(character) % 16];
    }
    return text;
}

/// Type code and value: "4:200", "8:octets:6162", "10:RED=1", "9:(4:1 5:2)".
inline std::string Describe(IPayload & payload)
{
    const std::string code = std::to_string(payload.Type()) + ':';
    if (auto * list = dynamic_cast<CComplexPayload *>(&payload)) {
        std::string text;
        for (IPayload * field : list->GetFields())
            text += (text.empty() ? "" : " ") + Describe(*field);
        return code + '(' + text + ')';
    }
    if (auto * text = dynamic_cast<CStringPayload *>(&payload))
        return code + (text->IsOctet() ? "octets:" : "text:") + Hex(text->GetValue());
    if (auto * enumerator = dynamic_cast<CEnumPayload *>(&payload))
        return code + enumerator->GetName() + '=' + std::to_string(enumerator->GetValue());
    return code + payload.ToString();
}

inline std::string DescribeClass(const CElement & element)
{
    if (dynamic_cast<const CElementString *>(&element) != nullptr)
        return "text";
    if (dynamic_cast<const CElementNumericArray *>(&element) != nullptr)
        return "numbers";
    if (dynamic_cast<const CIndexedElement *>(&element) != nullptr)
        return "row";
    if (dynamic_cast<const CElementEnum *>(&element) != nullptr)
        return "enum";
    if (dynamic_cast<const CElementStruct *>(&element) != nullptr)
        return "struct";
    return dynamic_cast<const CElementRaw *>(&element) != nullptr ? "raw" : "unknown class";
}

/// "numbers 16 Volume 4:20".
inline std::string Describe(CElement & element)
{
    std::string text =
        DescribeClass(element) + ' ' + std::to_string(element.PsId()) + ' ' + element.KeyString();
    for (IPayload * payload : element.GetPayloadCopy(false))
        text += ' ' + Describe(*payload);
    return text;
}

/// A line for each subsystem and each element, in order.
inline std::vector<std::string> Describe(const CChipConfig & chip)
{
    std::vector<std::string> lines;
    for (const auto & [key, subsystem] : chip.Subsystems()) {
        lines.push_back(key + " device " + subsystem->Context().GetTag("device") + " store " +
                        subsystem->Context().GetTag("store"));
        for (CElement * element : subsystem->Elements())
            lines.push_back(Describe(*element));
    }
    return lines;
}

using Lines = std::vector<std::string>;

/// Sees the status messages of its scope.
class StatusLog : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine &) override {}
    void OnStatus(GroupEnum, StatusLevels, const std::string & text) override { mTexts.push_back(text); }

    Lines mTexts;

private:
    CMessageSinkGuard mGuard{ this };
};

/// A number, the lowest byte first.
inline std::string Bytes(std::uint64_t number, std::size_t count)
{
    std::string bytes;
    for (; bytes.size() < count; number >>= 8)
        bytes += static_cast<char>(number & 0xFF);
    return bytes;
}

inline std::string WithChecksum(const std::string & bytes)
{
    const auto checksum =
        crc32(0, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<uInt>(bytes.size()));
    return bytes + Bytes(checksum, 4);
}

/// An image with this after the label of the chip, which is "abc".
inline std::string AnImage(std::uint64_t stores, const std::string & rest)
{
    return WithChecksum(
        "ZIMG" + Bytes(1, 2) + Bytes(stores, 2) + Bytes(21 + rest.size(), 4) + Bytes(3, 2) + "abc" + rest);
}

/// The head of a store, by default that of store 1 of eeprom, 4096 bytes of which 1000 are free.
inline std::string AStore(std::uint64_t chunks, std::uint64_t device = 15, std::uint64_t number = 1,
    std::uint64_t size = 4096, std::uint64_t free = 1000)
{
    return Bytes(device, 4) + Bytes(number, 4) + Bytes(size, 4) + Bytes(free, 4) + Bytes(chunks, 2);
}

inline std::string AChunk(std::uint64_t id, const std::string & content)
{
    return Bytes(id, 2) + Bytes(content.size(), 2) + content;
}

/// The content of a chunk: a key of the subsystem type 1 with a value of words (form 0) or octets (form 1).
inline std::string AKey(std::uint64_t id, const std::string & data, std::uint64_t form = 0,
    const std::vector<std::uint32_t> & indices = {})
{
    std::string bytes = Bytes(1, 4) + Bytes(id, 4) + Bytes(form, 1) + Bytes(indices.size(), 1);
    for (const std::uint32_t index : indices)
        bytes += Bytes(index, 4);
    return bytes + data;
}

/// Base of the tests: a chip system with a record of every shape, and no error at the beginning and at the end.
class ImageTest : public ::testing::Test
{
protected:
    /// Whether the chip was written without an error.
    bool Write(CChipConfig & chip, const std::string & path, const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        return chip.Write(*MakeWriter(path), context);
    }

    /// Whether the read left no error.
    bool Read(CChipConfig & chip, const std::string & path, IMetadataProvider * provider,
        const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        const auto reader = MakeReader(path);
        reader->SetObserver(chip);
        if (provider != nullptr)
            reader->SetMetadataProvider(*provider);
        reader->Read(context);
        return !mErrors.IsSet();
    }

    /// The error that reading these bytes leaves, without the file's path; empty for none.
    std::string ErrorOf(const std::string & bytes, const std::string & tags = "", bool isWithMetadata = true)
    {
        PutContent(mPath, bytes);
        CChipConfig chip;
        Read(chip, mPath, isWithMetadata ? &mProvider : nullptr, tags);
        EXPECT_TRUE(chip.Subsystems().empty() || !mErrors.IsSet());
        return TakeError();
    }

    std::string TakeError()
    {
        std::string error = mErrors.Text();
        mErrors.Clear();
        for (std::size_t place = error.find(mPath); place != std::string::npos; place = error.find(mPath))
            error.erase(place, mPath.size() + 2);
        return error;
    }

    FrameworkErrors mErrors;
    ImageFolder mFolder;
    const std::string mPath = mFolder / "it.zimg";
    MemoryProvider mProvider{ { "abc" } };
};

}   // namespace VrexZynConfigTools::support

#endif
