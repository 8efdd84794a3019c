#include "defaults.h"

#include "elementbuilder.h"
#include "records.h"

#include <kit/reading/devices.h>
#include <kit/reporting/advice.h>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

std::string RowText(const IMetadata & key, const DefaultRow & row)
{
    return "the default value of key " + std::to_string(key.PsId()) + kit::reading::IndicesText(row.mIndices) +
           ' ' + kit::reporting::Quoted(key.Name());
}

DefaultItem ItemIn(const CQuery & query, int column)
{
    if (query.IsInteger(column))
        return { DefaultItem::Kind::NUMBER, query.Number(column), std::string() };
    const DefaultItem::Kind kind = query.IsBlob(column) ? DefaultItem::Kind::OCTETS : DefaultItem::Kind::TEXT;
    return { kind, 0, query.Text(column) };
}

}   // namespace

CDefaults::CDefaults(
    CDatabase & database, CRecords & records, CElementBuilder & builder, kit::reporting::CFindings & findings)
    : mDatabase(database)
    , mRecords(records)
    , mBuilder(builder)
    , mFindings(findings)
    , mPlaces(database, "SELECT d.id, r.id FROM records r JOIN default_rows d ON d.key_id = r.id"
                        " WHERE r.subsystem_id = ? ORDER BY r.psid, d.id")
    , mIndices(database, "SELECT position, value FROM default_indices WHERE row_id = ? ORDER BY position")
    , mItems(database, "SELECT position, value FROM default_items WHERE row_id = ? ORDER BY position")
{}

std::vector<kit::reading::Subsystem> CDefaults::Of(const System & system)
{
    std::vector<kit::reading::Subsystem> defaults;
    for (const Subsystem & subsystem : system.mSubsystems) {
        mFindings.Scope().mSubsystem = kit::reading::SubsystemName(subsystem.mType);
        std::vector<kit::reading::Key> keys = Of(subsystem);
        if (!keys.empty())
            defaults.push_back({ { subsystem.mType, std::nullopt, std::nullopt, 0 }, std::move(keys) });
    }
    return defaults;
}

std::vector<kit::reading::Key> CDefaults::Of(const Subsystem & subsystem)
{
    std::vector<kit::reading::Key> keys;
    for (const Place & place : PlacesIn(subsystem)) {
        Add(keys, place);
        AddFault();
    }
    return keys;
}

void CDefaults::AddFault()
{
    if (mDatabase.IsFaulty())
        mFindings.Add(kit::reporting::MakeFinding("bad-metadata", mDatabase.TakeFault()));
}

std::vector<CDefaults::Place> CDefaults::PlacesIn(const Subsystem & subsystem)
{
    std::vector<Place> places;
    for (mPlaces.Ask(subsystem.mId); mPlaces.Next();)
        places.push_back({ mPlaces.Number(0), mPlaces.Number(1) });
    AddFault();
    return places;
}

void CDefaults::Add(std::vector<kit::reading::Key> & keys, const Place & place)
{
    const IMetadata * const key = mRecords.Key(place.mKey);
    DefaultRow row = RowAt(place);
    if (key == nullptr || mDatabase.IsFaulty())
        return;
    std::string reason = "there is another one";
    std::unique_ptr<CElement> element;
    if (IsFirst(place, row))
        element = mBuilder.Build(*key, row, reason);
    if (!reason.empty()) {
        auto finding = kit::reporting::MakeFinding("bad-default", RowText(*key, row) + ": " + reason);
        finding.mKey = key->Name() + kit::reading::IndicesText(row.mIndices);
        mFindings.Add(std::move(finding));
    } else if (element != nullptr) {
        keys.push_back({ std::move(element), std::move(row.mIndices) });
    }
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
