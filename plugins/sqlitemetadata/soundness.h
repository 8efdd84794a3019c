/// Whether a database is a metadata repository from end to end.

#ifndef SQLITEMETADATA_SOUNDNESS_H
#define SQLITEMETADATA_SOUNDNESS_H

namespace sqlitemetadata {

class CDatabase;

/// Looks through the whole database once: schema, pages, indices, constraints, references, and the rules that tables
/// have with one another. False with a fault. Whoever reads the tables afterwards may rely on what schema.sql says.
bool IsSound(CDatabase & database);

}   // namespace sqlitemetadata

#endif
