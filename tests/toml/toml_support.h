/// What the tests of the plug-in "tomlconfig" share: the real module, a folder of their own, chips read from files,
/// and a description of a chip that two equal configurations have in common.

#ifndef TESTS_TOML_TOML_SUPPORT_H
#define TESTS_TOML_TOML_SUPPORT_H

#include <support/framework_errors.h>

#include <configtools/chipconfig.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/subsystemconfig.h>
#include <configtools/zyncontext.h>

#include <gtest/gtest.h>

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
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "tomlconfig.XXXXXX").string();
        mPath = mkdtemp(pattern.data()) != nullptr ? pattern : "";
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder & operator=(const TemporaryFolder &) = delete;

    std::string operator/(const std::string & name) const { return mPath + '/' + name; }
    const std::string & Path() const { return mPath; }

    /// The names of what is in the folder, in order.
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto & entry : std::filesystem::directory_iterator(mPath))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
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
    CReaderWriterFactory::Ref().Load(TOML_PLUGIN_DIR);
    return CReaderWriterFactory::Ref();
}

inline std::unique_ptr<IConfigReader> MakeReader(const std::string & path)
{
    return std::unique_ptr<IConfigReader>(Plugins().CreateReader("tomlconfig", path, nullptr));
}

inline std::unique_ptr<IConfigWriter> MakeWriter(const std::string & path)
{
    return std::unique_ptr<IConfigWriter>(Plugins().CreateWriter("tomlconfig", path, nullptr));
}

/// A chip configuration with the readers that made it, which outlive it.
class ReadChip
{
public:
    /// From now on the readers get this provider, which outlives the elements; null for none.
    void Use(IMetadataProvider * provider) { mProvider = provider; }

    /// Whether the read left no error.
    bool Read(const std::string & path, const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        mReaders.push_back(MakeReader(path));
        mReaders.back()->SetObserver(mChip);
        if (mProvider != nullptr)
            mReaders.back()->SetMetadataProvider(*mProvider);
        mReaders.back()->Read(context);
        return !FrameworkErrorStands();
    }

    bool Write(const std::string & path, const std::string & tags = "")
    {
        CZynContext context;
        context.Parse(tags);
        return mChip.Write(*MakeWriter(path), context);
    }

    CChipConfig & Chip() { return mChip; }

    /// The elements of the first subsystem, in order.
    std::vector<CElement *> Elements() const
    {
        const auto & subsystems = mChip.Subsystems();
        if (subsystems.empty())
            return {};
        const auto & elements = subsystems.begin()->second->Elements();
        return { elements.begin(), elements.end() };
    }

private:
    static bool FrameworkErrorStands()
    {
        return CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "ReadChip", false)
            .IsErrorSet(GROUP_FRAMEWORK, true);
    }

    IMetadataProvider * mProvider = nullptr;
    std::vector<std::unique_ptr<IConfigReader>> mReaders;
    CChipConfig mChip;
};

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

/// Type code and value, exactly: "4:200", "8:octets:6162", "10:6162=1", "9:(4:1 5:2)".
inline std::string Describe(IPayload & payload)
{
    const std::string code = std::to_string(payload.Type()) + ':';
    if (auto * complex = dynamic_cast<CComplexPayload *>(&payload)) {
        std::string text = code + '(';
        for (IPayload * field : complex->GetFields())
            text += Describe(*field) + ' ';
        return text + ')';
    }
    if (auto * text = dynamic_cast<CStringPayload *>(&payload))
        return code + (text->IsOctet() ? "octets:" : "text:") + Hex(text->GetValue());
    if (auto * enumerator = dynamic_cast<CEnumPayload *>(&payload))
        return code + Hex(enumerator->GetName()) + '=' + std::to_string(enumerator->GetValue());
    return code + payload.ToString();
}

/// The class, with what belongs to that class alone.
inline std::string DescribeClass(CElement & element)
{
    if (auto * text = dynamic_cast<CElementString *>(&element))
        return text->IsOctet() ? "octets" : "text";
    if (auto * numbers = dynamic_cast<CElementNumericArray *>(&element))
        return "numbers" + std::to_string(numbers->Type());
    if (auto * row = dynamic_cast<CIndexedElement *>(&element))
        return "row[" + row->Indices() + ']';
    if (dynamic_cast<CElementEnum *>(&element) != nullptr)
        return "enum";
    if (dynamic_cast<CElementStruct *>(&element) != nullptr)
        return "struct";
    return dynamic_cast<CElementRaw *>(&element) != nullptr ? "raw" : "unknown class";
}

inline std::string Describe(CElement & element)
{
    std::string text =
        DescribeClass(element) + ' ' + std::to_string(element.PsId()) + ' ' + Hex(element.Name());
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

/// Equal by every look at it, `operator==` both ways among them.
inline void ExpectEqual(const CChipConfig & left, const CChipConfig & right)
{
    ASSERT_EQ(Describe(left), Describe(right));
    for (const auto & [key, subsystem] : left.Subsystems()) {
        auto other = right.Subsystems().at(key)->Elements().begin();
        for (const CElement * element : subsystem->Elements()) {
            EXPECT_TRUE(*element == **other) << element->KeyString();
            EXPECT_TRUE(**other == *element) << element->KeyString();
            ++other;
        }
    }
}

/// Base of the tests: no error stands at the beginning and at the end.
class TomlTest : public ::testing::Test
{
protected:
    /// What readers get; null for none.
    virtual IMetadataProvider * Provider() { return nullptr; }

    std::string Put(const std::string & text)
    {
        const std::string path = mFolder / "in.toml";
        PutContent(path, text);
        return path;
    }

    /// The error that reading this text leaves, without the file's path; empty for none.
    std::string ErrorOf(const std::string & text, const std::string & tags = "")
    {
        const std::string path = Put(text);
        ReadChip chip;
        chip.Use(Provider());
        chip.Read(path, tags);
        std::string error = mErrors.Text();
        mErrors.Clear();
        for (std::size_t place = error.find(path); place != std::string::npos; place = error.find(path))
            error.erase(place, path.size() + 1);
        return error;
    }

    FrameworkErrors mErrors;
    TemporaryFolder mFolder;
};

/// The head of a file with one subsystem; the keys follow. It has six lines.
inline const std::string HEAD =
    "chip = \"abc\"\n\n[[subsystem]]\ntype = \"bt\"\ndevice = \"eeprom\"\nstore = 1\n";

/// A file with one key of this type and value. The value stands in line 12, column 9.
inline std::string AFile(const std::string & typeWord, const std::string & value)
{
    return HEAD + "\n[[subsystem.key]]\nid = 100\nname = \"Key\"\ntype = \"" + typeWord +
           "\"\nvalue = " + value + '\n';
}

}   // namespace VrexZynConfigTools::support

#endif
