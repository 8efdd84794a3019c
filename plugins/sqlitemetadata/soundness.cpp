#include "soundness.h"

#include "database.h"
#include <kit/metadataschema/schema.h>
#include <kit/reporting/advice.h>
#include <kit/reporting/findings.h>

#include <string>
#include <vector>

namespace sqlitemetadata {

namespace {

constexpr std::size_t FAULTS_TOLD = 5;
constexpr std::size_t MAX_FINDINGS = 50;

using Lines = std::vector<std::string>;

Lines SchemaOf(CDatabase & database)
{
    // What SQLite made by itself has no text.
    CQuery query(
        database, "SELECT type, name, tbl_name, ifnull(sql, '') FROM sqlite_schema ORDER BY type, name");
    Lines lines;
    for (query.Ask(); query.Next();)
        lines.push_back(query.Text(0) + '\n' + query.Text(1) + '\n' + query.Text(2) + '\n' + query.Text(3));
    return lines;
}

// With the schema to the letter, SQLite's own check of the constraints is the check that schema.sql asks for.
bool HasOurSchema(CDatabase & database)
{
    static const Lines expected = [] {
        CDatabase model;
        return model.OpenInMemory(kit::metadataschema::SCHEMA_SQL) ? SchemaOf(model) : Lines();
    }();
    if (!expected.empty() && SchemaOf(database) == expected)
        return true;
    database.SetFault("no metadata repository, or a damaged one (its tables are not those of version " +
                      std::to_string(kit::metadataschema::SCHEMA_VERSION) + " of the schema)");
    return false;
}

bool IsIntact(CDatabase & database)
{
    CQuery query(database, "PRAGMA integrity_check(5)");
    std::string faults;
    for (query.Ask(); query.Next();)
        if (query.Text(0) != "ok")
            faults += (faults.empty() ? "" : "; ") + query.Text(0);
    if (!faults.empty())
        database.SetFault("the repository is damaged (" + faults + ')');
    return !database.IsFaulty();
}

bool HasNoDanglingReference(CDatabase & database)
{
    CQuery query(database, "SELECT \"table\", parent, count(*) FROM pragma_foreign_key_check GROUP BY 1, 2");
    std::string faults;
    for (query.Ask(); query.Next();)
        faults += (faults.empty() ? "" : "; ") + query.Text(0) + " refers to " + query.Text(2) +
                  " row(s) that " + query.Text(1) + " doesn't have";
    if (!faults.empty())
        database.SetFault("the repository contradicts itself (" + faults + ')');
    return !database.IsFaulty();
}

/// A rule between tables: the records that break it, and what is to be said of them.
struct Rule
{
    const char * mBreaches;   // the columns are the number and the name of a record
    const char * mText;
};

constexpr Rule RULES[] = {
    { "SELECT psid, name FROM records r WHERE metadata_type = 2"
      " AND (NOT EXISTS (SELECT 1 FROM structs WHERE record_id = r.id)"
      " OR NOT EXISTS (SELECT 1 FROM struct_fields WHERE struct_id = r.id))",
        "is a struct without fields" },
    { "SELECT psid, name FROM structs s JOIN records r ON r.id = s.record_id WHERE metadata_type <> 2",
        "has the layout of a struct, but is none" },
    { "SELECT psid, name FROM struct_fields f JOIN records r ON r.id = f.record_id"
      " WHERE subsystem_id IS NOT NULL",
        "is a key and a field of a struct" },
    { "SELECT psid, name FROM records WHERE subsystem_id IS NULL AND id NOT IN (SELECT record_id FROM "
      "struct_fields)",
        "is a field of no struct" },
    { "SELECT psid, name FROM records r WHERE metadata_type = 1"
      " AND NOT EXISTS (SELECT 1 FROM enumerators WHERE record_id = r.id)",
        "is an enumeration without enumerators" },
    { "SELECT DISTINCT psid, r.name FROM enumerators e JOIN records r ON r.id = e.record_id"
      " WHERE metadata_type <> 1",
        "has enumerators, but is no enumeration" },
    { "SELECT psid, name FROM records r LEFT JOIN"
      " (SELECT key_id, count(*) AS number, max(position) AS last FROM table_indices GROUP BY key_id) t"
      " ON t.key_id = r.id WHERE num_indices <> ifnull(number, 0) OR num_indices <> ifnull(last, 0)",
        "has another number of table indices than it says" },
    { "SELECT psid, r.name FROM table_indices t JOIN records r ON r.id = t.key_id"
      " WHERE (index_type = 1) <> EXISTS (SELECT 1 FROM index_enumerators e"
      " WHERE e.key_id = t.key_id AND e.position = t.position)",
        "has an enumerated index without enumerators, or an integer index with them" },
    { "SELECT DISTINCT psid, name FROM default_rows d JOIN records r ON r.id = d.key_id"
      " WHERE subsystem_id IS NULL",
        "is a field of a struct, but has a default value of its own" },
};

std::string RecordText(CQuery & query)
{
    const std::int64_t psId = query.Number(0);
    return (psId != 0 ? "key " + std::to_string(psId) + ' ' : "field ") + kit::reporting::Quoted(query.Text(1));
}

// Each on a line of its own, which begins with a line end and two blanks.
std::string Indented(const std::vector<kit::reporting::Finding> & findings)
{
    std::string text;
    for (const kit::reporting::Finding & finding : findings)
        text += "\n  " + finding.mText;
    return text;
}

bool KeepsRules(CDatabase & database)
{
    kit::reporting::CFindings findings({}, MAX_FINDINGS);
    for (const Rule & rule : RULES) {
        CQuery query(database, rule.mBreaches);
        std::size_t count = 0;
        for (query.Ask(); query.Next() && count < FAULTS_TOLD; ++count)
            findings.Add(kit::reporting::MakeFinding("bad-metadata", RecordText(query) + ' ' + rule.mText));
    }
    if (!findings.IsEmpty())
        database.SetFault("the repository contradicts itself:" + Indented(findings.InOrder()));
    return !database.IsFaulty();
}

}   // namespace

bool IsSound(CDatabase & database)
{
    return HasOurSchema(database) && IsIntact(database) && HasNoDanglingReference(database) &&
           KeepsRules(database);
}

}   // namespace sqlitemetadata
