/// A global locale that groups digits ("1,234,567"), for the life of a scope.

#ifndef TESTS_SUPPORT_GROUPING_LOCALE_H
#define TESTS_SUPPORT_GROUPING_LOCALE_H

#include <locale>
#include <string>

namespace VrexZynConfigTools::support {

class GroupingLocale
{
public:
    GroupingLocale()
        : mFormer(std::locale::global(std::locale(std::locale::classic(), new Grouping)))
    {}
    ~GroupingLocale() { std::locale::global(mFormer); }
    GroupingLocale(const GroupingLocale &) = delete;
    GroupingLocale & operator=(const GroupingLocale &) = delete;

private:
    struct Grouping : std::numpunct<char>
    {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale mFormer;
};

}   // namespace VrexZynConfigTools::support

#endif
