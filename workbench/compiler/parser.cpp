#include "parser.h"

#include "itemparser.h"
#include "tablereader.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>
#include <kit/tomlsyntax/tomlsyntax.h>

namespace workbench::compiler {

using kit::text::Printable;

namespace {

constexpr std::int64_t MAX_UINT16 = 65535;   // of chips and fuses a reference code has four digits
constexpr char SEVERAL[] = "several";

class CFileParser
{
public:
    CFileParser(Source & source, std::size_t file, CSourceFindings & findings)
        : mSource(source)
        , mFile(file)
        , mFindings(findings)
    {}

    void Parse(const toml::table & root)
    {
        CTableReader reader(root, mFile, "a source", mFindings);
        if (const toml::node * system = reader.Find("system")) {
            if (const toml::table * table = system->as_table())
                ParseSystem(*table);
            else
                reader.Mismatch(*system, "system", "a table, [system]");
        }
        for (const toml::table * table : reader.Tables("chip", "[[chip]]"))
            ParseChip(*table);
        for (const toml::table * table : reader.Tables("enum", "[[enum]]"))
            ParseEnum(*table);
        for (const toml::table * table : reader.Tables("struct", "[[struct]]"))
            ParseStruct(*table);
        for (const toml::table * table : reader.Tables("subsystem", "[[subsystem]]"))
            ParseSubsystem(*table);
        reader.RefuseUnknown();
    }

private:
    void ParseSystem(const toml::table & table)
    {
        CTableReader reader(table, mFile, "the system", mFindings);
        System system;
        system.mPlace = reader.Begin();
        system.mName = reader.Text("name");
        system.mDescription = reader.PlainText("description");
        system.mVersion = reader.PlainText("version");
        system.mBuildDate = reader.PlainText("build_date");
        reader.RefuseUnknown();
        mSource.mSystems.push_back(std::move(system));
    }

    void ParseChip(const toml::table & table)
    {
        CTableReader reader(table, mFile, "a chip", mFindings);
        Chip chip;
        chip.mPlace = reader.Begin();
        chip.mName = reader.Text("name");
        chip.mLabel = reader.Text("label");
        chip.mId = reader.Integer("id", 0, MAX_UINT16);
        chip.mFuses = ParseFuses(reader);
        chip.mRomName = reader.PlainText("rom_name");
        chip.mRomVersion = reader.PlainText("rom_version");
        chip.mDescription = reader.Text("description");
        chip.mVersion = reader.Text("version");
        chip.mBuildDate = reader.Text("build_date");
        reader.RefuseUnknown();
        mSource.mChips.push_back(std::move(chip));
    }

    std::string ParseFuses(CTableReader & reader)
    {
        const toml::node * node = reader.Find("fuses");
        if (node == nullptr)
            return "";
        if (const auto * text = node->as_string(); text != nullptr && text->get() == SEVERAL)
            return VrexZynConfigTools::keywords::MULTIPLE_EFUSES;
        if (!node->is_integer()) {
            reader.Mismatch(*node, "fuses", "a whole number from 0 to 65535, or \"several\"");
            return "";
        }
        return std::to_string(reader.Integer("fuses", 0, MAX_UINT16).mValue);
    }

    void ParseEnum(const toml::table & table)
    {
        CTableReader reader(table, mFile, "a shared enumeration", mFindings);
        SharedEnum shared{ reader.Text("name"), reader.EnumeratorTable("values") };
        reader.RefuseUnknown();
        mSource.mEnums.push_back(std::move(shared));
    }

    void ParseStruct(const toml::table & table)
    {
        CTableReader reader(table, mFile, "a shared struct", mFindings);
        const Placed<std::string> name = reader.Text("name");
        auto layout = ParseLayout(reader, mFile, mFindings);
        layout->mName = name;
        reader.RefuseUnknown();
        mSource.mStructs.push_back(std::move(layout));
    }

    void ParseSubsystem(const toml::table & table)
    {
        CTableReader reader(table, mFile, "a subsystem", mFindings);
        Subsystem subsystem;
        subsystem.mPlace = reader.Begin();
        subsystem.mName = reader.Text("name");
        subsystem.mAlias = reader.Text("alias");
        subsystem.mVersion = reader.PlainText("version");
        subsystem.mLayer = reader.PlainText("layer");
        subsystem.mVariant = reader.PlainText("variant");
        subsystem.mDescription = reader.PlainText("description");
        subsystem.mBuildDate = reader.PlainText("build_date");
        for (const toml::table * key : reader.Tables("key", "[[subsystem.key]]"))
            subsystem.mKeys.push_back(ParseKey(*key, mFile, mFindings));
        reader.RefuseUnknown();
        mSource.mSubsystems.push_back(std::move(subsystem));
    }

    Source & mSource;
    std::size_t mFile;
    CSourceFindings & mFindings;
};

void ParseFile(const std::string & path, std::size_t file, Source & source, CSourceFindings & findings)
{
    std::string error;
    const auto text = kit::tomlsyntax::ReadFile(path, error);
    if (!text) {
        findings.Error({ file, 1, 1 }, error);
        source.mIsWhole = false;
        return;
    }
    kit::tomlsyntax::SyntaxError syntaxError;
    if (const auto root = kit::tomlsyntax::ParseText(*text, syntaxError))
        return CFileParser(source, file, findings).Parse(*root);
    source.mIsWhole = false;
    findings.Error({ file, std::max<std::uint32_t>(syntaxError.mPlace.line, 1),
                       std::max<std::uint32_t>(syntaxError.mPlace.column, 1) },
        Printable(syntaxError.mText));
}

}   // namespace

Source ParseSources(const std::vector<std::string> & paths, CSourceFindings & findings)
{
    Source source;
    for (std::size_t file = 0; file < paths.size(); ++file)
        ParseFile(paths[file], file, source, findings);
    return source;
}

}   // namespace workbench::compiler
