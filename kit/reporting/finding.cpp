#include <kit/reporting/finding.h>

namespace kit::reporting {

Finding MakeFinding(const std::string & code, const std::string & text)
{
    Finding finding;
    finding.mCode = code;
    finding.mText = text;
    return finding;
}

Finding WithPlace(Finding finding, const std::string & file, std::uint32_t line, std::uint32_t column)
{
    finding.mFile = file;
    finding.mLine = line;
    finding.mColumn = column;
    return finding;
}

Finding WithExpected(Finding finding, const std::string & expected)
{
    finding.mExpected = expected;
    finding.mText += "; expected " + expected;
    return finding;
}

std::string PlaceOf(const Finding & finding)
{
    if (finding.mFile.empty() || finding.mLine == 0)
        return finding.mFile;
    const std::string line = finding.mFile + ':' + std::to_string(finding.mLine);
    return finding.mColumn != 0 ? line + ':' + std::to_string(finding.mColumn) : line;
}

std::string LineOf(const Finding & finding)
{
    const std::string place = PlaceOf(finding);
    return place.empty() ? finding.mText : place + ": " + finding.mText;
}

}   // namespace kit::reporting
