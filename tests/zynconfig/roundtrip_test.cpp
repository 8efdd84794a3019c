/// Generated configurations of the samples' chip: text, image and text again, byte for byte.

#include <toolprocess.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace zynconfig::test {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr int WIDEST_NUMBER = 64;

/// A key as a text of TOML, with random values that its description allows.
class CKeyGenerator
{
public:
    explicit CKeyGenerator(unsigned seed)
        : mRandom(seed)
    {}

    /// The blocks of a key: one, or of a table one for each of a few rows.
    std::string Blocks(const Json & key)
    {
        if (key["indices"].empty())
            return Block(key, "");
        std::set<std::string> indices;
        for (std::int64_t rows = Number(1, 3); rows > 0; --rows)
            indices.insert(Indices(key));
        std::string blocks;
        for (const std::string & index : indices)
            blocks += Block(key, "index = " + index + '\n');
        return blocks;
    }

    std::int64_t Number(std::int64_t least, std::int64_t most)
    {
        return std::uniform_int_distribution<std::int64_t>(least, most)(mRandom);
    }

private:
    std::string Block(const Json & key, const std::string & index)
    {
        return "[[subsystem.key]]\nname = " + key["name"].dump() + '\n' + index + "value = " + Value(key) +
               '\n';
    }

    std::string Indices(const Json & key)
    {
        std::string list;
        for (const Json & index : key["indices"]) {
            const std::string value =
                index["range"].is_null() ? AnyOf(index["enumerators"])
                                         : std::to_string(Number(index["range"]["min"], index["range"]["max"]));
            list.append(list.empty() ? "[" : ", ").append(value);
        }
        return list + ']';
    }

    std::string AnyOf(const Json & enumerators)
    {
        const auto last = static_cast<std::int64_t>(enumerators.size()) - 1;
        return enumerators[static_cast<std::size_t>(Number(0, last))]["name"].dump();
    }

    std::string Value(const Json & key)
    {
        if (key["array"].is_null())
            return Item(key);
        const auto least = std::max<std::int64_t>(key["array"]["min"].get<std::int64_t>(), 1);
        const auto most = std::max(least, std::min<std::int64_t>(key["array"]["max"].get<std::int64_t>(), 6));
        std::string list;
        for (std::int64_t count = Number(least, most); count > 0; --count)
            list.append(list.empty() ? "[" : ", ").append(Item(key));
        return list + ']';
    }

    std::string Item(const Json & key)
    {
        return key["struct"].is_null() ? Scalar(key, WIDEST_NUMBER) : Struct(key["struct"]);
    }

    std::string Scalar(const Json & shape, int width)
    {
        if (!shape["enumerators"].is_null())
            return AnyOf(shape["enumerators"]);
        if (shape["type"] == "string" || shape["type"] == "octet_string")
            return Text(shape);
        const Json & range = shape["range"];
        return range["min"] >= 0 ? Unsigned(range["min"], range["max"], width)
                                 : Signed(range["min"], range["max"], width);
    }

    // Above what TOML can tell, a number is written as a text.
    std::string Unsigned(std::uint64_t least, std::uint64_t most, int width)
    {
        const std::uint64_t fits = width < WIDEST_NUMBER ? (std::uint64_t{ 1 } << width) - 1 : UINT64_MAX;
        std::uniform_int_distribution<std::uint64_t> numbers(least, std::min(most, fits));
        const std::uint64_t number = numbers(mRandom);
        const std::string text = std::to_string(number);
        return number > static_cast<std::uint64_t>(INT64_MAX) ? '"' + text + '"' : text;
    }

    std::string Signed(std::int64_t least, std::int64_t most, int width)
    {
        const std::int64_t fits = width < WIDEST_NUMBER ? (std::int64_t{ 1 } << (width - 1)) - 1 : INT64_MAX;
        return std::to_string(Number(std::max(least, -fits - 1), std::min(most, fits)));
    }

    // Without zero octets, which may be taken for padding.
    std::string Text(const Json & shape)
    {
        constexpr char HEX[] = "123456789abcdef";
        const auto least = shape["range"]["min"].get<std::int64_t>();
        const auto most = shape["range"]["max"].get<std::int64_t>();
        const std::int64_t length = Number(least, std::min(most, std::max<std::int64_t>(least, 20)));
        std::string text;
        for (std::int64_t i = 0; i < length; ++i) {
            if (shape["type"] == "string")
                text += static_cast<char>(Number(' ' + 3, 'Z'));
            else
                text.append(text.empty() ? "" : " ").append(2, HEX[Number(0, 14)]);
        }
        return '"' + text + '"';
    }

    // The labels of the bit map name each value once or more, such as "Curve[1].Input" and "Delays[3]".
    std::string Struct(const Json & layout)
    {
        std::map<std::string, const Json *> fields;
        for (const Json & field : layout["fields"])
            fields[field["name"]] = &field;
        Json value;
        for (const Json & piece : layout["map"]) {
            const std::string label = piece["field"];
            const Json & field = *fields.at(PathOf(label));
            const bool isItem = !field["array"].is_null();
            Json & place = value[PointerTo(label)];
            if (place.is_null())
                place = Scalar(field, isItem ? WIDEST_NUMBER : field["width"].get<int>());
        }
        return Toml(value);
    }

    // "Curve[].Input", and "Delays" for an item of it.
    static std::string PathOf(const std::string & label)
    {
        std::string path;
        for (std::size_t i = 0; i < label.size(); ++i) {
            path += label[i];
            if (label[i] == '[')
                i = label.find(']', i) - 1;
        }
        return path.ends_with("[]") ? path.substr(0, path.size() - 2) : path;
    }

    static Json::json_pointer PointerTo(std::string label)
    {
        label.erase(std::remove(label.begin(), label.end(), ']'), label.end());
        std::replace_if(
            label.begin(), label.end(), [](char each) { return each == '[' || each == '.'; }, '/');
        return Json::json_pointer('/' + label);
    }

    // Scalars are TOML already.
    static std::string Toml(const Json & value)
    {
        if (value.is_string())
            return value;
        std::string text;
        for (const auto & [name, part] : value.items())
            text.append(text.empty() ? "" : ", ")
                .append(value.is_array() ? "" : name + " = ")
                .append(Toml(part));
        return value.is_array() ? '[' + text + ']' : "{ " + text + " }";
    }

    std::mt19937_64 mRandom;
};

class RoundTrip : public testing::Test
{
protected:
    void SetUp() override
    {
        std::vector<std::string> compile = { "metadata", "compile" };
        for (const auto & entry : fs::directory_iterator(fs::path(SOURCE_DIR) / "samples/pottersong/metadata"))
            compile.push_back(entry.path().string());
        std::sort(compile.begin() + 2, compile.end());
        compile.insert(compile.end(), { "-o", mMetadata });
        ASSERT_EQ(Run(compile).mErr, "");
        const Json keys = Json::parse(Run({ "keys", "--json" }).mOut)["keys"];
        for (const Json & key : keys) {
            const std::string name = key["subsystem"].get<std::string>() + ':' + key["name"].get<std::string>();
            const Json description = Json::parse(Run({ "describe", name, "--json" }).mOut);
            if (!HasWideField(description))
                mKeys[key["subsystem"]].push_back(description);
        }
    }

    ToolResult Run(const std::vector<std::string> & arguments)
    {
        return RunTool({ .mArguments = arguments, .mEnvironment = { { "ZYNCONFIG_METADATA", mMetadata } } });
    }

    void Convert(const std::string & from, const std::string & to)
    {
        const ToolResult result = Run({ "convert", from, "-o", to });
        EXPECT_EQ(result.mExitCode, 0);
        EXPECT_EQ(result.mErr, "");
    }

    /// A configuration of two stores with about half of the keys in each.
    std::string Generate(unsigned seed)
    {
        CKeyGenerator generator(seed);
        std::string text = "chip = \"trindle7\"\n";
        for (const char * device : { "mtp", "eeprom" }) {
            for (const auto & [subsystem, keys] : mKeys) {
                text += "[[subsystem]]\ntype = \"" + subsystem + "\"\ndevice = \"" + device + "\"\nstore = 1\n";
                for (const Json & key : keys)
                    text += generator.Number(0, 1) == 0 ? "" : generator.Blocks(key);
            }
        }
        return text;
    }

    CTempFolder mFolder;
    const std::string mMetadata = mFolder.File("system.zmd");
    std::map<std::string, std::vector<Json>> mKeys;   // their descriptions, by subsystem

private:
    static bool HasWideField(const Json & key)
    {
        return !key["struct"].is_null() &&
               std::any_of(
                   key["struct"]["fields"].begin(), key["struct"]["fields"].end(), [](const Json & field) {
                       return field["array"].is_null() && field["width"] > WIDEST_NUMBER;
                   });
    }
};

}   // namespace

TEST_F(RoundTrip, of_generated_configurations_gives_the_same_text)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const std::string source = mFolder.File("source.toml", Generate(seed));
        Convert(source, mFolder.File("text.toml"));
        Convert(source, mFolder.File("image.zimg"));
        Convert(mFolder.File("image.zimg"), mFolder.File("back.toml"));
        ASSERT_GT(ContentOf(mFolder.File("text.toml")).size(), 2000U);
        ASSERT_EQ(ContentOf(mFolder.File("back.toml")), ContentOf(mFolder.File("text.toml"))) << seed;
        Convert(mFolder.File("text.toml"), mFolder.File("again.zimg"));
        ASSERT_EQ(ContentOf(mFolder.File("again.zimg")), ContentOf(mFolder.File("image.zimg"))) << seed;
    }
}

}   // namespace zynconfig::test
