#include "defaults.h"

#include "elementbuilder.h"
#include "records.h"
#include "report.h"

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

std::string RowText(const IMetadata & key, const DefaultRow & row)
{
    std::string text = "the default value of key " + std::to_string(key.PsId());
    for (const std::uint32_t index : row.mIndices)
        text += '.' + std::to_string(index);
    return text + ' ' + Quoted(key.Name());
}

DefaultItem ItemIn(const CQuery & query, int column)
{
    if (query.IsInteger(column))
        return { DefaultItem::Kind::NUMBER, query.Number(column), std::string() };
    const DefaultItem::Kind kind = query.IsBlob(column) ? DefaultItem::Kind::OCTETS : DefaultItem::Kind::TEXT;
    return { kind, 0, query.Text(column) };
}

}   // namespace

CDefaults::CDefaults(CDatabase & database, CRecords & records, CElementBuilder & builder, CFindings & findings)
    : mDatabase(database)
    , mRecords(records)
    , mBuilder(builder)
    , mFindings(findings)
    , mPlaces(database, "SELECT d.id, r.id FROM records r JOIN default_rows d ON d.key_id = r.id"
                        " WHERE r.subsystem_id = ? ORDER BY r.psid, d.id")
    , mIndices(database, "SELECT position, value FROM default_indices WHERE row_id = ? ORDER BY position")
    , mItems(database, "SELECT position, value FROM default_items WHERE row_id = ? ORDER BY position")
{}

std::vector<SubsystemDefaults> CDefaults::Of(const System & system)
{
    std::vector<SubsystemDefaults> defaults;
    for (const Subsystem & subsystem : system.mSubsystems) {
        std::vector<DefaultElement> elements = Of(subsystem);
        if (!elements.empty())
            defaults.push_back({ subsystem.mType, std::move(elements) });
    }
    return defaults;
}

std::vector<DefaultElement> CDefaults::Of(const Subsystem & subsystem)
{
    std::vector<DefaultElement> elements;
    for (const Place & place : PlacesIn(subsystem)) {
        Add(elements, place);
        if (mDatabase.IsFaulty())
            mFindings.Add(mDatabase.TakeFault());
    }
    return elements;
}

std::vector<CDefaults::Place> CDefaults::PlacesIn(const Subsystem & subsystem)
{
    std::vector<Place> places;
    for (mPlaces.Ask(subsystem.mId); mPlaces.Next();)
        places.push_back({ mPlaces.Number(0), mPlaces.Number(1) });
    if (mDatabase.IsFaulty())
        mFindings.Add(mDatabase.TakeFault());
    return places;
}

void CDefaults::Add(std::vector<DefaultElement> & elements, const Place & place)
{
    const IMetadata * const key = mRecords.Key(place.mKey);
    DefaultRow row = RowAt(place);
    if (key == nullptr || mDatabase.IsFaulty())
        return;
    std::string reason = "there is another one";
    std::unique_ptr<CElement> element;
    if (IsFirst(place, row))
        element = mBuilder.Build(*key, row, reason);
    if (!reason.empty())
        mFindings.Add(RowText(*key, row) + ": " + reason);
    else if (element != nullptr)
        elements.push_back({ std::move(row.mIndices), std::move(element) });
}

DefaultRow CDefaults::RowAt(const Place & place)
{
    DefaultRow row;
    std::int64_t position = 0;
    for (mIndices.Ask(place.mRow); mIndices.Next();) {
        CheckPosition(place, mIndices.Number(0), ++position, "indices");
        row.mIndices.push_back(static_cast<std::uint32_t>(mIndices.Number(1)));
    }
    position = 0;
    for (mItems.Ask(place.mRow); mItems.Next();) {
        CheckPosition(place, mItems.Number(0), position++, "items");
        row.mItems.push_back(ItemIn(mItems, 1));
    }
    return row;
}

void CDefaults::CheckPosition(
    const Place & place, std::int64_t position, std::int64_t expected, const char * whose)
{
    if (position != expected)
        mDatabase.SetFault(
            "the row " + std::to_string(place.mRow) + " of default_rows has a gap among its " + whose);
}

bool CDefaults::IsFirst(const Place & place, const DefaultRow & row)
{
    return mSeen.emplace(place.mKey, row.mIndices).second;
}

}   // namespace sqlitemetadata
