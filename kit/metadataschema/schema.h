/// The schema of a metadata repository, for those who write one and those who read one. schema.sql holds and explains it;
/// what stands here is taken from that file when the project is built.

#ifndef KIT_METADATASCHEMA_SCHEMA_H
#define KIT_METADATASCHEMA_SCHEMA_H

#include <cstdint>

namespace kit::metadataschema {

/// The statements that make an empty database a metadata repository, both numbers below included.
extern const char * const SCHEMA_SQL;

/// What tells a metadata repository from other databases: the pragma "application_id".
extern const std::int32_t APPLICATION_ID;

/// Which schema a repository has: the pragma "user_version".
extern const std::int32_t SCHEMA_VERSION;

}   // namespace kit::metadataschema

#endif
