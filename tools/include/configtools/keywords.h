/// Every keyword, tag name and shared error text: the vocabulary that tools, plug-ins and the framework share.
/// A tool sets a tag and a plug-in reads it without either linking the other's code, so the texts are the contract.
///
/// All are constant-initialised and so available before any other code runs. Tag keys are compared without case,
/// because a context lowers them on the way in ("fileLengths" is stored as "filelengths").

#ifndef CONFIGTOOLS_KEYWORDS_H
#define CONFIGTOOLS_KEYWORDS_H

namespace VrexZynConfigTools::keywords {

// Storage types, the contents of IMetadata::InternalType.
inline constexpr char TYPE_UINT8[] = "uint8";
inline constexpr char TYPE_UINT16[] = "uint16";
inline constexpr char TYPE_UINT32[] = "uint32";
inline constexpr char TYPE_UINT64[] = "uint64";
inline constexpr char TYPE_INT8[] = "int8";
inline constexpr char TYPE_INT16[] = "int16";
inline constexpr char TYPE_INT32[] = "int32";
inline constexpr char TYPE_INT64[] = "int64";
inline constexpr char TYPE_INTEGER[] =
    "integer";   // signed 64 bits in a numeric array; in a struct the field gives the width
inline constexpr char TYPE_UINT[] = "uint";                       // tools and plug-ins only
inline constexpr char TYPE_INT[] = "int";                         // tools and plug-ins only
inline constexpr char TYPE_STRING[] = "string";                   // text
inline constexpr char TYPE_OCTET_STRING[] = "octet_string";       // bytes, held in a string
inline constexpr char TYPE_UNICODE_STRING[] = "unicode_string";   // wide text; tools and plug-ins only

// Presentation formats, the contents of IMetadata::Format.
inline constexpr char FORMAT_SIGNED_DECIMAL[] = "signed_decimal";       // a struct field is sign-extended
inline constexpr char FORMAT_UNSIGNED_DECIMAL[] = "unsigned_decimal";   // asks for an unsigned type
inline constexpr char FORMAT_HEXADECIMAL[] = "hexadecimal";             // asks for an unsigned type
inline constexpr char FORMAT_MAC_ADDR[] = "mac_addr";                   // tools and plug-ins only

// Boolean values of tags.
inline constexpr char VALUE_TRUE[] = "true";
inline constexpr char VALUE_FALSE[] = "false";

// Access rights, the contents of IMetadata::AccessRights; tools and plug-ins only.
inline constexpr char ACCESS_NOT_ACCESSIBLE[] = "not_accessible";
inline constexpr char ACCESS_READ_ONLY[] = "read_only";
inline constexpr char ACCESS_READ_WRITE[] = "read_write";
inline constexpr char ACCESS_WRITE_ONLY[] = "write_only";

// Context tags that the framework itself reads or writes. Numbers are decimal text.
inline constexpr char TAG_SUBSYSTEM_TYPE[] = "subsystemtype";   // a SubSystemTypeEnum value
inline constexpr char TAG_DEVICE[] = "device";                  // an IStoreManager::DEVICE value
inline constexpr char TAG_STORE[] = "store";                    // store number
inline constexpr char TAG_ORDER[] = "order";                    // order number
inline constexpr char TAG_LAYER_NUMBER[] = "layernumber";       // layer number
inline constexpr char TAG_FILE_TYPE[] = "filetype";             // file type number
inline constexpr char TAG_CHIP[] = "chip";                      // system version label of the selected chip
inline constexpr char TAG_SUBSYS_FW_VERSION[] = "subsysfwversion";   // firmware version text of a subsystem
inline constexpr char TAG_IGNORE_HEADER[] = "ignoreheader";          // "true" or "false"
inline constexpr char TAG_SUBSYSTEM_KEY_BY_STORE[] =
    "subsystemkeybystore";   // computed by CZynContext, never stored
inline constexpr char TAG_SUBSYSTEM_KEY_BY_LAYER[] =
    "subsystemkeybylayer";                                     // computed by CZynContext, never stored
inline constexpr char TAG_INSERT_MODE[] = "insertmode";        // one of the INSERT_ values below
inline constexpr char TAG_ELEM_BIT_WIDTH[] = "elembitwidth";   // bit width of the struct field under inspection
inline constexpr char TAG_NO_DATA_CHECK[] = "nodatacheck";   // "true" switches the element factory's checks off
inline constexpr char TAG_LAYER_FILTER[] = "layerfilter";    // signed layer number
inline constexpr char TAG_EFUSE_HASH[] = "efusehash";        // selected fuse value, 1 to 4 hexadecimal digits
inline constexpr char TAG_RAW_MODE[] = "rawmode";          // "true" while a row or raw element is being written
inline constexpr char TAG_NUM_INDICES[] = "num_indices";   // number of table indices of the key
inline constexpr char TAG_INDEX[] =
    "index";   // stem of "index1", "index2", ...; also names an index given to a writer

// Values of "insertmode".
inline constexpr char INSERT_NEW[] = "new";               // keep what is stored
inline constexpr char INSERT_OVERWRITE[] = "overwrite";   // replace what is stored
inline constexpr char INSERT_APPEND[] =
    "append";   // in the contract only; as any other text, no duplicate test is made

// Context tags consumed by tools and plug-ins only; the framework passes them along.
inline constexpr char TAG_MODE[] = "mode";
inline constexpr char TAG_DIR[] = "dir";
inline constexpr char TAG_UPDATE_EEPROM[] = "updateeprom";
inline constexpr char TAG_CHUNK_TO_FILE[] = "chunk2file";
inline constexpr char TAG_FILE_TO_CHUNK[] = "file2chunk";
inline constexpr char TAG_IGNORE_EEPROM[] = "ignoreeprom";
inline constexpr char TAG_CHUNK_FILE_FORMAT[] = "chunkfileformat";
inline constexpr char TAG_SPREAD_VLINT[] = "spreadvlint";
inline constexpr char TAG_STORE_SET_FILTER[] = "storesetfilter";
inline constexpr char TAG_COEX_CONFIG[] = "coexconfig";
inline constexpr char TAG_FILE_LENGTHS[] = "fileLengths";
inline constexpr char TAG_EEPROM_SIZE_EXP[] = "eepromsizeexp";
inline constexpr char TAG_EEPROM_I2C_MASK[] = "eepromi2cmask";
inline constexpr char TAG_LIST_FILES[] = "listfiles";
inline constexpr char TAG_TXT_SIMPLE_MODE[] = "txtsimplemode";
inline constexpr char TAG_INPUT_FILE[] = "inputfile";
inline constexpr char TAG_RESET_DEVICE_AFTER_USE[] = "resetdeviceafteruse";

// Values of "chunkfileformat"; tools and plug-ins only.
inline constexpr char CHUNK_FORMAT_PSC[] = "psc";
inline constexpr char CHUNK_FORMAT_TXT[] = "txt";

// Subsystems, in the order of SubSystemTypeEnum from 0.
inline constexpr char SUBSYSTEM_CURATOR[] = "curator";
inline constexpr char SUBSYSTEM_BT[] = "bt";
inline constexpr char SUBSYSTEM_WLAN[] = "wlan";
inline constexpr char SUBSYSTEM_AUDIO[] = "audio";
inline constexpr char SUBSYSTEM_GNSS[] = "gnss";
inline constexpr char SUBSYSTEM_NFC[] = "nfc";
inline constexpr char SUBSYSTEM_JANITOR[] = "janitor";
inline constexpr char SUBSYSTEM_APP[] = "app";
inline constexpr char SUBSYSTEM_BLE[] = "ble";
inline constexpr char SUBSYSTEM_PSAPPS[] = "psapps";
inline constexpr char SUBSYSTEM_PSAUDIO[] = "psaudio";

// Store devices; IStoreManager::DEVICE has no enumerator for "cram", "cache" and "dev_cfg", which tools and plug-ins use.
inline constexpr char DEVICE_NONE[] = "none";
inline constexpr char DEVICE_ROM[] = "rom";
inline constexpr char DEVICE_OTP[] = "otp";
inline constexpr char DEVICE_SMEM[] = "smem";
inline constexpr char DEVICE_CRAM[] = "cram";
inline constexpr char DEVICE_MTP[] = "mtp";
inline constexpr char DEVICE_CACHE[] = "cache";
inline constexpr char DEVICE_EEPROM[] = "eeprom";
inline constexpr char DEVICE_DEV_CFG[] = "dev_cfg";
inline constexpr char DEVICE_FW_CFG[] = "fw_cfg";
inline constexpr char DEVICE_CUR_CFG[] = "cur_cfg";
inline constexpr char DEVICE_USER_PS_APPS[] = "user_ps_apps";
inline constexpr char DEVICE_USER_PS_AUDIO[] = "user_ps_audio";

// Other texts.
inline constexpr char EMPTY[] = "";   // no value, as an argument of TagMatches and SetTag
inline constexpr char MULTIPLE_EFUSES[] =
    "multiple_efuses";   // the fuse text of a chip that exists with several fuse values
inline constexpr char NAME_EQUALS[] = "nameeq";          // tools and plug-ins only
inline constexpr char PT_STREAM[] = "ptstream";          // tools and plug-ins only
inline constexpr char PLUGIN_FILE_PATTERN[] = "*.zpm";   // plug-in module files
inline constexpr char NULL_CONTEXT_NAME[] = "null";      // the name of CNullContext

// Error texts of the whole family of tools, so that one failure reads the same everywhere. Raise them through
// CMessageHandler::SetErrorMsg with the code 0. The framework itself raises only the two marked.
inline constexpr char ERROR_UNABLE_TO_WRITE_FILE[] = "unable to write to the file";
inline constexpr char ERROR_FILE_WRITE_FAILED[] =
    "unable to write to the file";   // the same text, intended: both names are in use
inline constexpr char ERROR_UNABLE_TO_OPEN_FILE[] = "unable to open the file";
inline constexpr char ERROR_READING_FILE[] = "error reading the file";
inline constexpr char ERROR_KEY_TYPE_UNKNOWN[] = "key type unknown";
inline constexpr char ERROR_CUSTOM_TYPE_UNDEFINED[] = "custom type undefined";
inline constexpr char ERROR_NO_KEY_DETAILS[] = "no information details for the key";
inline constexpr char ERROR_UNKNOWN_PSIDS[] =
    "unknown psid(s) [contents not validated]: ";                            // the key numbers follow
inline constexpr char ERROR_UNEXPECTED[] = "an unexpected error occurred";   // raised by the element factory
inline constexpr char ERROR_INVALID_CONTEXT[] = "the passed context is invalid";   // raised by CChipConfig
inline constexpr char ERROR_GLOBAL_ERROR_EXPECTED[] = "a global error is expected to be set but it is not";
inline constexpr char ERROR_UNABLE_TO_CREATE_READER[] = "unable to create the reader";
inline constexpr char ERROR_UNABLE_TO_CREATE_WRITER[] = "unable to create the writer";
inline constexpr char ERROR_UNABLE_TO_CREATE_STORE_MANAGER[] = "unable to create the store manager";
inline constexpr char ERROR_INVALID_OPERATION[] = "invalid operation";
inline constexpr char ERROR_INVALID_SYSTEM_NAME[] =
    "invalid system name (it doesn't exist in the information repository)";
inline constexpr char ERROR_CORRUPT_BINARY[] =
    "error converting data from or to a binary [the input seems corrupt]";
inline constexpr char ERROR_ODD_BT_LENGTH[] = "error converting data from binary for bluetooth subsystem - "
                                              "invalid odd data length of ";   // the length follows
inline constexpr char ERROR_UNABLE_TO_READ_DIR[] = "unable to read dir content";
inline constexpr char ERROR_SYSTEM_LABEL_NOT_FOUND[] = "system label not found";

}   // namespace VrexZynConfigTools::keywords

#endif
