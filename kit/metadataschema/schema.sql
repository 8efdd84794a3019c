-- The schema of a metadata repository: one SQLite file (".zmd") that describes chip systems. Who fills one finds here
-- what each column means, and who reads one what may be relied on; docs/metadata-repository.md tells more.
--
-- A writer runs this file on an empty database, fills the tables within one transaction with "PRAGMA foreign_keys = ON",
-- and has a repository. The first number says what kind of file it is ("ZMD1"), the second which schema it has. A reader
-- refuses any other, and any schema that isn't this one to the letter; comments are left out of the repository and don't
-- count. A change of the schema raises the second number.
PRAGMA application_id = 1515013169;
PRAGMA user_version = 1;

-- Conventions. Texts are UTF-8 and never null; what is unknown is the empty text. Booleans are 0 and 1. Unsigned 64-bit
-- numbers stand as the signed number with the same bits. Systems, chips and subsystems come in ascending order of id.

-- One chip system: chips that share their subsystems, keys and default values.
CREATE TABLE systems (
    id          INTEGER PRIMARY KEY,
    name        TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (name <> ''),
    description TEXT NOT NULL DEFAULT ''
) STRICT;

-- One chip of a system: the nine texts that the library asks of a chip.
CREATE TABLE chips (
    id                   INTEGER PRIMARY KEY,
    system_id            INTEGER NOT NULL REFERENCES systems (id),
    chip_name            TEXT NOT NULL DEFAULT '',
    chip_id              TEXT NOT NULL DEFAULT '',   -- the chip's number in decimal
    rom_name             TEXT NOT NULL DEFAULT '',
    rom_version          TEXT NOT NULL DEFAULT '',
    efuse_hash           TEXT NOT NULL DEFAULT '',   -- in decimal, or 'multiple_efuses'; any other text: not known
    -- What selects the chip and so its system: the contents of a context's tag "chip".
    system_version_label TEXT NOT NULL COLLATE NOCASE UNIQUE CHECK (system_version_label <> ''),
    system_description   TEXT NOT NULL DEFAULT '',
    system_version       TEXT NOT NULL DEFAULT '',
    build_date           TEXT NOT NULL DEFAULT ''
) STRICT;
CREATE INDEX chips_of_system ON chips (system_id);

-- One subsystem of a system: the seven texts that the library asks of a subsystem. The name is the keyword of its type.
CREATE TABLE subsystems (
    id          INTEGER PRIMARY KEY,
    system_id   INTEGER NOT NULL REFERENCES systems (id),
    name        TEXT NOT NULL CHECK (name IN ('curator', 'bt', 'wlan', 'audio', 'gnss', 'nfc', 'janitor', 'app', 'ble',
                                              'psapps', 'psaudio')),
    version     TEXT NOT NULL DEFAULT '',
    alias       TEXT NOT NULL DEFAULT '',            -- another name under which people know it
    layer       TEXT NOT NULL DEFAULT '',
    description TEXT NOT NULL DEFAULT '',
    build_date  TEXT NOT NULL DEFAULT '',
    variant     TEXT NOT NULL DEFAULT '',
    UNIQUE (system_id, name)
) STRICT;

-- A record: a key of a subsystem, or a field of a struct. A key has its subsystem and a number other than 0; a field has
-- neither, and stands in struct_fields exactly once. A field may itself be a struct, and so have a row in structs.
CREATE TABLE records (
    id                   INTEGER PRIMARY KEY,
    subsystem_id         INTEGER REFERENCES subsystems (id),                           -- null for a field
    uid                  INTEGER NOT NULL CHECK (uid BETWEEN -2147483648 AND 2147483647),
    psid                 INTEGER NOT NULL CHECK (psid BETWEEN 0 AND 4294967295),       -- the key's number; 0 for a field
    name                 TEXT NOT NULL COLLATE NOCASE CHECK (name <> ''),
    label                TEXT NOT NULL DEFAULT '',
    category             TEXT NOT NULL DEFAULT '',
    is_internal          INTEGER NOT NULL DEFAULT 0 CHECK (is_internal IN (0, 1)),
    -- 'signed_decimal' (a field is sign-extended), 'unsigned_decimal' and 'hexadecimal' (of an unsigned type where the
    -- width alone gives the type), or any other text, which only tools look at.
    format               TEXT NOT NULL DEFAULT '',
    -- The range of a number; the length of a text or octet string in bytes; 0 and 0 for an enumeration or a struct. For
    -- 'uint64' both are unsigned numbers.
    min                  INTEGER NOT NULL DEFAULT 0,
    max                  INTEGER NOT NULL DEFAULT 0,
    oid                  TEXT NOT NULL DEFAULT '',
    -- Of a simple record: how the value is stored ('integer' in a struct: the width gives the type). Free otherwise.
    internal_type        TEXT NOT NULL DEFAULT '',
    units                TEXT NOT NULL DEFAULT '',
    is_array             INTEGER NOT NULL DEFAULT 0 CHECK (is_array IN (0, 1)),
    array_min_length     INTEGER NOT NULL DEFAULT 0 CHECK (array_min_length >= 0),
    array_max_length     INTEGER NOT NULL DEFAULT 0,    -- 0 with is_array: not stated
    table_name           TEXT NOT NULL DEFAULT '',
    description          TEXT NOT NULL DEFAULT '',
    description_internal TEXT NOT NULL DEFAULT '',
    source_reference     TEXT NOT NULL DEFAULT '',
    source_default       TEXT NOT NULL DEFAULT '',   -- the default as people write it; default_rows has its value
    access_rights        TEXT NOT NULL DEFAULT '',
    temporality          TEXT NOT NULL DEFAULT '',
    hash                 TEXT NOT NULL DEFAULT '',
    num_indices          INTEGER NOT NULL DEFAULT 0 CHECK (num_indices BETWEEN 0 AND 9),   -- rows in table_indices
    metadata_type        INTEGER NOT NULL CHECK (metadata_type IN (0, 1, 2)),   -- 0 simple, 1 enumeration, 2 struct
    CHECK ((subsystem_id IS NULL) = (psid = 0)),
    CHECK (psid <> 0 OR num_indices = 0),
    CHECK (array_min_length <= array_max_length),
    CHECK (CASE WHEN internal_type = 'uint64' AND (min < 0) <> (max < 0) THEN max < 0 ELSE min <= max END),
    CHECK (metadata_type <> 0 OR internal_type IN ('uint8', 'uint16', 'uint32', 'uint64', 'int8', 'int16', 'int32',
                                                   'int64', 'integer', 'string', 'octet_string'))
) STRICT;
CREATE UNIQUE INDEX key_by_number ON records (subsystem_id, psid) WHERE subsystem_id IS NOT NULL;
CREATE UNIQUE INDEX key_by_name ON records (subsystem_id, name) WHERE subsystem_id IS NOT NULL;

-- The enumerators of a record with the metadata_type 1.
CREATE TABLE enumerators (
    record_id INTEGER NOT NULL REFERENCES records (id),
    name      TEXT NOT NULL CHECK (name <> ''),
    value     INTEGER NOT NULL CHECK (value BETWEEN -2147483648 AND 2147483647),
    PRIMARY KEY (record_id, name)
) STRICT, WITHOUT ROWID;

-- One row for each record with the metadata_type 2.
CREATE TABLE structs (
    record_id         INTEGER PRIMARY KEY REFERENCES records (id),
    is_little_endian  INTEGER NOT NULL CHECK (is_little_endian IN (0, 1)),
    is_octets_in_bin  INTEGER NOT NULL CHECK (is_octets_in_bin IN (0, 1))   -- packed as octets rather than as words
) STRICT;

-- The fields of a struct, at least one, in the order in which they were written down. That is not the order in which
-- they are packed: a reader sorts them, once a key's struct is complete with all that it holds, by one
-- CMetadataDetailStruct::OrderFieldsForTargetArchitecture on the key's own struct. At most 64 structs lie within one
-- another, the key's own included.
CREATE TABLE struct_fields (
    struct_id    INTEGER NOT NULL REFERENCES structs (record_id),
    position     INTEGER NOT NULL CHECK (position >= 0),                  -- its place in the list; gaps are allowed
    record_id    INTEGER NOT NULL UNIQUE REFERENCES records (id),         -- what the field means; its name is there
    lsb_position INTEGER NOT NULL CHECK (lsb_position BETWEEN 0 AND 1048575),   -- of the lowest bit, within the struct
    bit_width    INTEGER NOT NULL CHECK (bit_width BETWEEN 1 AND 1048576),      -- of an array: of all its items
    PRIMARY KEY (struct_id, position)
) STRICT, WITHOUT ROWID;

-- The indices of a table key: records.num_indices of them, with the positions 1, 2, 3 and so on. Index values are 0 to
-- 99999999, for longer ones get lost on their way through a context.
CREATE TABLE table_indices (
    key_id     INTEGER NOT NULL REFERENCES records (id),
    position   INTEGER NOT NULL CHECK (position BETWEEN 1 AND 9),
    name       TEXT NOT NULL CHECK (name <> ''),
    min        INTEGER NOT NULL DEFAULT 0 CHECK (min >= 0),
    max        INTEGER NOT NULL DEFAULT 0 CHECK (max <= 99999999),
    index_type INTEGER NOT NULL CHECK (index_type IN (0, 1)),   -- 0 an integer from min to max, 1 an enumerator
    CHECK (min <= max),
    PRIMARY KEY (key_id, position)
) STRICT, WITHOUT ROWID;

-- The enumerators of an index with the index_type 1.
CREATE TABLE index_enumerators (
    key_id   INTEGER NOT NULL,
    position INTEGER NOT NULL,
    name     TEXT NOT NULL CHECK (name <> ''),
    value    INTEGER NOT NULL CHECK (value BETWEEN 0 AND 99999999),
    PRIMARY KEY (key_id, position, name),
    FOREIGN KEY (key_id, position) REFERENCES table_indices (key_id, position)
) STRICT, WITHOUT ROWID;

-- The default values. A key without indices has one row here, or none if it has no default; a table key has a row for
-- each of its rows that has one. No two of them may have the same indices.
CREATE TABLE default_rows (
    id     INTEGER PRIMARY KEY,
    key_id INTEGER NOT NULL REFERENCES records (id)
) STRICT;
CREATE INDEX default_rows_of_key ON default_rows (key_id);

-- The indices of a row of a table key: records.num_indices of them. An enumerated index stands as its number.
CREATE TABLE default_indices (
    row_id   INTEGER NOT NULL REFERENCES default_rows (id),
    position INTEGER NOT NULL CHECK (position BETWEEN 1 AND 9),
    value    INTEGER NOT NULL CHECK (value BETWEEN 0 AND 99999999),
    PRIMARY KEY (row_id, position)
) STRICT, WITHOUT ROWID;

-- The value of a row: one item, or for an array of numbers or structs as many as it has, with the positions 0, 1, 2 and
-- so on. (An element of the library holds one text and one enumerator, so an array of those has one item at most.)
--   number        INTEGER; of 'uint64' the signed number with the same bits
--   enumeration   INTEGER, the number of an enumerator
--   text          TEXT for 'string', BLOB for 'octet_string'
--   struct        BLOB, the packed struct: what CStructCodec::Write hands on after an Encode. Of a struct in words each
--                 word with its low byte first, so two bytes a word, and all words; of a struct in octets its octets.
--                 An array of structs has an item for each struct, packed by itself.
CREATE TABLE default_items (
    row_id   INTEGER NOT NULL REFERENCES default_rows (id),
    position INTEGER NOT NULL CHECK (position BETWEEN 0 AND 65535),
    value    ANY NOT NULL CHECK (typeof(value) IN ('integer', 'text', 'blob')),
    PRIMARY KEY (row_id, position)
) STRICT, WITHOUT ROWID;
