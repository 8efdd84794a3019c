#include "carryback.h"

#include "records.h"

#include <kit/text/utf8.h>

#include <kit/layout/packing.h>

#include <algorithm>
#include <set>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr std::size_t LONGEST_QUOTE = 60;   // bytes of a value in a warning

std::string Shortened(const std::string & text)
{
    if (text.empty())
        return "nothing";
    return text.size() <= LONGEST_QUOTE ? text : text.substr(0, LONGEST_QUOTE) + "...";
}

std::string LossText(const kit::layout::Field & field, const std::vector<kit::layout::Change> & examples)
{
    const auto found = std::find_if(examples.begin(), examples.end(),
        [&](const kit::layout::Change & each) { return each.mPath == field.mPath; });
    if (found == examples.end())
        return WhyText(field.mLoss);
    const bool isBecauseOfOthers = field.mLoss == kit::layout::Loss::SHARED_BITS;
    return Shortened(found->mValue) + " comes back as " + Shortened(found->mBack) +
           (isBecauseOfOthers ? " because of the fields beside it" : "");
}

}   // namespace

void CheckCarriedBack(const Key & key, CSourceFindings & findings)
{
    const CStructRecords records(key);
    const kit::layout::CFields fields(records.Struct());
    const auto & list = fields.List();
    if (std::all_of(list.begin(), list.end(),
            [](const kit::layout::Field & field) { return field.mLoss == kit::layout::Loss::NONE; }))
        return;
    const auto examples = ExamplesOf(fields, records.Struct());
    std::set<const Field *> warned;   // a shared struct may be there several times
    for (const kit::layout::Field & field : list) {
        const Field & source = records.FieldOf(*field.mEntry->mRecord);
        if (field.mLoss != kit::layout::Loss::NONE && warned.insert(&source).second)
            findings.Warning(source.mPosition.mPlace, "the device format doesn't carry " +
                                                          Quoted(source.mName.mValue) +
                                                          " back unchanged: " + LossText(field, examples));
    }
}

}   // namespace workbench::compiler
