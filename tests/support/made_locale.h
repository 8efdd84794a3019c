/// Locales that a test makes for itself, so that it doesn't depend on those that are installed.

#ifndef TESTS_SUPPORT_MADE_LOCALE_H
#define TESTS_SUPPORT_MADE_LOCALE_H

#include <support/single_byte_locales.h>

#include <stdlib.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace VrexZynConfigTools::support {

/// Makes locales by `localedef`, which belongs to the C library, and switches between them. "C" is in force at the end.
class MadeLocales
{
public:
    MadeLocales()
    {
        std::string name = (std::filesystem::temp_directory_path() / "locales_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::filesystem::filesystem_error("mkdtemp", std::error_code());
        mFolder = name;
        setenv("LOCPATH", name.c_str(), 1);
    }
    MadeLocales(const MadeLocales &) = delete;
    MadeLocales & operator=(const MadeLocales &) = delete;
    ~MadeLocales()
    {
        std::setlocale(LC_CTYPE, "C");
        unsetenv("LOCPATH");
        std::error_code ignored;
        std::filesystem::remove_all(mFolder, ignored);
    }

    /// Puts the locale of this name in force; it is one of SINGLE_BYTE_LOCALES or installed.
    void Switch(const std::string & name)
    {
        std::string file = name;
        for (const SingleByteLocale & locale : SINGLE_BYTE_LOCALES) {
            if (locale.mName == name)
                file = FileOf(locale);
        }
        if (std::setlocale(LC_CTYPE, file.c_str()) == nullptr)
            throw std::runtime_error("there is no locale " + name);
    }

private:
    static std::string Symbol(int byte)
    {
        char text[16];
        std::snprintf(text, sizeof(text), "<U%04X>", byte < 128 ? byte : 0x1000 + byte);
        return text;
    }

    std::string FileOf(const SingleByteLocale & locale)
    {
        const auto known = mFiles.find(locale.mName);
        if (known != mFiles.end())
            return known->second;
        const std::string file = "made" + std::to_string(mFiles.size());
        std::ofstream(mFolder / "charmap") << CharMap();
        std::ofstream(mFolder / "source") << Source(locale.mPairs);
        const std::string command = "cd '" + mFolder.string() +
                                    "' && localedef -c --no-archive -i ./source -f ./charmap ./" + file +
                                    " >/dev/null 2>&1";
        // What the other categories lack makes it a warning, and so an exit code other than 0.
        static_cast<void>(std::system(command.c_str()) == 0);
        return mFiles[locale.mName] = file;
    }

    static std::string CharMap()
    {
        std::string text = "<code_set_name> MADE\n<comment_char> %\n<escape_char> /\n<mb_cur_min> "
                           "1\n<mb_cur_max> 1\nCHARMAP\n";
        for (int byte = 0; byte < 256; ++byte) {
            char code[16];
            std::snprintf(code, sizeof(code), " /x%02x name\n", static_cast<unsigned>(byte));
            text += Symbol(byte) + code;
        }
        return text + "END CHARMAP\n";
    }

    static std::string Source(std::string_view digits)
    {
        std::map<int, int> lowers;
        for (int letter = 'A'; letter <= 'Z'; ++letter)
            lowers[letter] = letter + ('a' - 'A');
        for (; !digits.empty(); digits.remove_prefix(4))
            lowers[std::stoi(std::string(digits.substr(0, 2)), nullptr, 16)] =
                std::stoi(std::string(digits.substr(2, 2)), nullptr, 16);
        std::string upper;
        std::string lower;
        std::string toLower;
        std::set<int> targets;
        for (const auto & [from, to] : lowers) {
            upper += (upper.empty() ? "" : ";") + Symbol(from);
            if (targets.insert(to).second)
                lower += (lower.empty() ? "" : ";") + Symbol(to);
            toLower += (toLower.empty() ? "(" : ";(") + Symbol(from) + "," + Symbol(to) + ")";
        }
        return "comment_char %\nescape_char /\nLC_CTYPE\nupper " + upper + "\nlower " + lower + "\ntolower " +
               toLower + "\nEND LC_CTYPE\n";
    }

    std::filesystem::path mFolder;
    std::map<std::string, std::string> mFiles;
};

}   // namespace VrexZynConfigTools::support

#endif
