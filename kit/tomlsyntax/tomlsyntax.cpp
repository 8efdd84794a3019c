#include "tomlsyntax.h"

#include <configtools/keywords.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <vector>

namespace kit::tomlsyntax {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t MAX_DOTS = 1000;   // on the way to one value; these formats need a few

constexpr std::size_t MAX_BYTES = std::size_t{ 64 } << 20;   // of a file; its tree takes several times as many

constexpr std::size_t MAX_OPEN = 1000;   // brackets in brackets; toml++ stops before these

// Follows the text so far as to tell keys from strings and comments.
class CStatementScan
{
public:
    explicit CStatementScan(std::string_view text)
        : mText(text)
    {}

    std::optional<toml::source_position> FirstOverlong()
    {
        while (mPosition < mText.size() && mOuterDots.size() < MAX_OPEN) {
            const char character = mText[mPosition];
            if (character == '"' || character == '\'')
                SkipString(character);
            else if (character == '#')
                SkipUntil('\n');
            else
                Plain(character);
            if (mDots > MAX_DOTS)
                return toml::source_position{ mLine, 1 };
        }
        return std::nullopt;
    }

private:
    void Plain(char character)
    {
        if (character == '[' || character == '{')
            mOuterDots.push_back(mDots);
        else if (character == ']' || character == '}')
            Close();
        else if (character == '.')
            ++mDots;
        else if (character == ',' || (character == '\n' && mOuterDots.empty()))
            mDots = mOuterDots.empty() ? 0 : mOuterDots.back();   // the next item or statement begins
        Advance();
    }

    void Close()
    {
        if (mOuterDots.empty())
            return;   // which the parser will tell
        mDots = mOuterDots.back();
        mOuterDots.pop_back();
    }

    void SkipString(char quote)
    {
        const std::string tripled(3, quote);
        const bool isMultiLine = mText.substr(mPosition, 3) == tripled;
        Advance(isMultiLine ? 3 : 1);
        while (mPosition < mText.size()) {
            const char character = mText[mPosition];
            if (isMultiLine ? mText.substr(mPosition, 3) == tripled : character == quote)
                break;
            if (!isMultiLine && character == '\n')
                return;   // not closed, which the parser will tell
            Advance(character == '\\' && quote == '"' ? 2 : 1);
        }
        Advance(isMultiLine ? 3 : 1);
        for (int extra = 0; isMultiLine && extra < 2 && mText.substr(mPosition, 1) == tripled.substr(0, 1);
             ++extra)
            Advance();   // up to two quotes stand directly before the closing three
    }

    void SkipUntil(char end)
    {
        while (mPosition < mText.size() && mText[mPosition] != end)
            Advance();
    }

    void Advance(std::size_t count = 1)
    {
        for (; count > 0 && mPosition < mText.size(); --count)
            mLine += mText[mPosition++] == '\n' ? 1u : 0u;
    }

    std::string_view mText;
    std::size_t mPosition = 0;
    std::vector<std::size_t> mOuterDots;   // of each bracket or brace that is open, those before it
    std::size_t mDots = 0;   // on the way to what stands here, since the tables of all of them nest
    toml::source_index mLine = 1;
};

std::string Explained(const toml::parse_error & error)
{
    std::string text(error.description());
    if (text.find("not representable") != std::string::npos)
        text +=
            "; write an unsigned 64-bit number above 9223372036854775807 as a text, \"18446744073709551615\"";
    return text;
}

}   // namespace

std::optional<std::string> ReadFile(const std::string & path, std::string & error)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        error = std::string(keywords::ERROR_UNABLE_TO_OPEN_FILE) + " (" + std::strerror(errno) + ')';
        return std::nullopt;
    }
    std::string content;
    char block[1 << 14];
    while (content.size() <= MAX_BYTES && (file.read(block, sizeof block), file.gcount() > 0))
        content.append(block, static_cast<std::size_t>(file.gcount()));
    if (file.bad()) {   // a directory, among others
        error = std::string(keywords::ERROR_READING_FILE) + " (" + std::strerror(errno) + ')';
        return std::nullopt;
    }
    if (content.size() > MAX_BYTES) {
        error = std::string(keywords::ERROR_READING_FILE) + " (it has more than " +
                std::to_string(MAX_BYTES >> 20) + " MiB)";
        return std::nullopt;
    }
    return content;
}

std::optional<toml::table> ParseText(std::string_view text, SyntaxError & error)
{
    if (const auto place = FindOverlongKey(text)) {
        error = { *place, "a key of more than " + std::to_string(MAX_DOTS) + " parts; expected two at most" };
        return std::nullopt;
    }
    try {
        return toml::table(toml::parse(text, std::string_view()));
    } catch (const toml::parse_error & exception) {
        error = { exception.source().begin, Explained(exception) };
        return std::nullopt;
    }
}

std::optional<toml::source_position> FindOverlongKey(std::string_view text)
{
    return CStatementScan(text).FirstOverlong();
}

const char * KindOf(const toml::node & node)
{
    switch (node.type()) {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::string:
        return "a text";
    case toml::node_type::integer:
        return "a whole number";
    case toml::node_type::floating_point:
        return "a number with a fraction";
    case toml::node_type::boolean:
        return "a boolean";
    default:
        return "a date or time";
    }
}

}   // namespace kit::tomlsyntax
