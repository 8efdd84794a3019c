#include "vocabulary.h"

#include <configtools/keywords.h>
#include <configtools/metadataprovider.h>
#include <configtools/stores.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

namespace tomlconfig {

namespace {

template <typename T, T NumericVariable::*Member>
NumericVariable VariableOf(std::uint64_t bits)
{
    NumericVariable variable;
    variable.*Member = static_cast<T>(bits);
    return variable;
}

template <typename T>
std::string TextOf(const void * value)
{
    T number{};
    std::memcpy(&number, value, sizeof number);
    std::string text = std::to_string(number);
    if constexpr (std::is_same_v<T, std::uint64_t>)
        if (number > std::uint64_t{ std::numeric_limits<std::int64_t>::max() })
            return '"' + text + '"';   // a file's own integers are signed
    return text;
}

template <typename T, T NumericVariable::*Member>
constexpr NumberType RowOf(const char * typeWord, NumericTypeEnum type)
{
    return { typeWord, type, std::int64_t{ std::numeric_limits<T>::min() },
        static_cast<std::uint64_t>(std::numeric_limits<T>::max()), &VariableOf<T, Member>, &TextOf<T> };
}

// In the order of NumericTypeEnum; "integer", which is a second word for one of them, is last.
constexpr std::array NUMBER_TYPES = {
    RowOf<std::int8_t, &NumericVariable::mInt8>(keywords::TYPE_INT8, NUMERIC_INT8),
    RowOf<std::int16_t, &NumericVariable::mInt16>(keywords::TYPE_INT16, NUMERIC_INT16),
    RowOf<std::int32_t, &NumericVariable::mInt32>(keywords::TYPE_INT32, NUMERIC_INT32),
    RowOf<std::int64_t, &NumericVariable::mInt64>(keywords::TYPE_INT64, NUMERIC_INT64),
    RowOf<std::uint8_t, &NumericVariable::mUint8>(keywords::TYPE_UINT8, NUMERIC_UINT8),
    RowOf<std::uint16_t, &NumericVariable::mUint16>(keywords::TYPE_UINT16, NUMERIC_UINT16),
    RowOf<std::uint32_t, &NumericVariable::mUint32>(keywords::TYPE_UINT32, NUMERIC_UINT32),
    RowOf<std::uint64_t, &NumericVariable::mUint64>(keywords::TYPE_UINT64, NUMERIC_UINT64),
    RowOf<std::int64_t, &NumericVariable::mInt64>(keywords::TYPE_INTEGER, NUMERIC_INT64),
};
static_assert(NUMBER_TYPES.size() == NUMERIC_NONE + 1);

std::vector<std::string> MakeTypeWords()
{
    constexpr std::array<const char *, 5> OTHERS = { keywords::TYPE_STRING, keywords::TYPE_OCTET_STRING,
        word::ENUM, word::STRUCT, word::RAW };
    std::vector<std::string> words;
    words.reserve(NUMBER_TYPES.size() + OTHERS.size());
    for (const NumberType & type : NUMBER_TYPES)
        words.emplace_back(type.mWord);
    words.insert(words.end(), OTHERS.begin(), OTHERS.end());
    return words;
}

std::vector<TagWord> MakeSubsystemWords()
{
    std::vector<TagWord> words;
    for (int number = SUBSYSTEM_CURATOR; number <= SUBSYSTEM_PSAUDIO; ++number)
        words.push_back({ CSubsystemInfo::GetSubsystemType(static_cast<SubSystemTypeEnum>(number)), number });
    return words;
}

std::vector<TagWord> MakeDeviceWords()
{
    std::vector<TagWord> words;
    const std::string unknown = IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(3));
    for (int number = IStoreManager::DEVICE_NONE; number <= IStoreManager::DEVICE_EEPROM; ++number) {
        const char * name = IStoreManager::GetDeviceName(static_cast<IStoreManager::DEVICE>(number));
        if (name != unknown)
            words.push_back({ name, number });
    }
    return words;
}

int DigitOf(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    return -1;
}

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// What the first byte of a character in UTF-8 says: how long it is and which code points are that long.
struct Utf8Lead
{
    std::size_t mLength;   // 0 for a byte that begins no character
    std::uint32_t mBits;
    std::uint32_t mLowest;
};

Utf8Lead LeadOf(unsigned char byte)
{
    if (byte < 0x80)
        return { 1, byte, 0 };
    if (byte >= 0xC0 && byte < 0xE0)
        return { 2, byte & 0x1Fu, 0x80 };
    if (byte >= 0xE0 && byte < 0xF0)
        return { 3, byte & 0x0Fu, 0x800 };
    if (byte >= 0xF0 && byte < 0xF8)
        return { 4, byte & 0x07u, 0x10000 };
    return { 0, 0, 0 };
}

// Takes one character off the front of `text`; nothing if it isn't UTF-8.
std::optional<std::uint32_t> TakeCharacter(std::string_view & text)
{
    const Utf8Lead lead = LeadOf(static_cast<unsigned char>(text.front()));
    if (lead.mLength == 0 || lead.mLength > text.size())
        return std::nullopt;
    std::uint32_t character = lead.mBits;
    for (std::size_t position = 1; position < lead.mLength; ++position) {
        const auto byte = static_cast<unsigned char>(text[position]);
        if ((byte & 0xC0u) != 0x80)
            return std::nullopt;
        character = (character << 6) | (byte & 0x3Fu);
    }
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < lead.mLowest || character > 0x10FFFF || isSurrogate)
        return std::nullopt;
    text.remove_prefix(lead.mLength);
    return character;
}

}   // namespace

const NumberType * FindNumberType(std::string_view typeWord)
{
    const auto found = std::find_if(NUMBER_TYPES.begin(), NUMBER_TYPES.end(),
        [typeWord](const NumberType & type) { return typeWord == type.mWord; });
    return found != NUMBER_TYPES.end() ? &*found : nullptr;
}

const NumberType * NumberTypeOf(PayloadTypeEnum type)
{
    return type >= PAYLOAD_INT8 && type <= PAYLOAD_UINT64 ? &NUMBER_TYPES[static_cast<std::size_t>(type)]
                                                          : nullptr;
}

const std::vector<std::string> & TypeWords()
{
    static const std::vector<std::string> words = MakeTypeWords();
    return words;
}

const std::vector<TagWord> & SubsystemWords()
{
    static const std::vector<TagWord> words = MakeSubsystemWords();
    return words;
}

const std::vector<TagWord> & DeviceWords()
{
    static const std::vector<TagWord> words = MakeDeviceWords();
    return words;
}

std::optional<std::int64_t> ParseDecimal(std::string_view text, std::int64_t min, std::int64_t max)
{
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < min || number > max)
        return std::nullopt;
    return number;
}

std::optional<std::uint64_t> ParseUnsigned(std::string_view text)
{
    const bool isHex = text.substr(0, 2) == "0x";
    if (isHex)
        text.remove_prefix(2);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, isHex ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string HexText(std::string_view bytes, std::string_view separator)
{
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (!text.empty())
            text += separator;
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 0x0Fu];
    }
    return text;
}

std::optional<std::string> BytesOfHex(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        if (IsBlank(text.front())) {
            text.remove_prefix(1);
            continue;
        }
        const int high = DigitOf(text[0]);
        const int low = text.size() > 1 ? DigitOf(text[1]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        text.remove_prefix(2);
    }
    return bytes;
}

bool IsPlainText(std::string_view text)
{
    while (!text.empty()) {
        const auto character = TakeCharacter(text);
        if (!character || *character < 0x20 || (*character >= 0x7F && *character < 0xA0))
            return false;
    }
    return true;
}

}   // namespace tomlconfig
