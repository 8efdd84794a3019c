#include "valuetext.h"

#include <kit/text/utf8.h>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

struct ValueTexts
{
    std::string operator()(const Value::Other &) const { return ""; }
    std::string operator()(const CNumber & number) const { return number.Text(); }
    std::string operator()(const std::string & text) const { return Quoted(text); }

    std::string operator()(const Value::List & list) const
    {
        std::string text;
        for (const Value & value : list)
            text += (text.empty() ? "" : ", ") + TextOf(value);
        return '[' + text + ']';
    }

    std::string operator()(const Value::Members & members) const
    {
        std::string text;
        for (const Value::Member & member : members)
            text += (text.empty() ? "" : ", ") + member.mName + " = " + TextOf(member.mValue);
        return "{ " + text + " }";
    }
};

}   // namespace

std::string TextOf(const Value & value)
{
    return std::visit(ValueTexts{}, value.mContent);
}

}   // namespace workbench::compiler
