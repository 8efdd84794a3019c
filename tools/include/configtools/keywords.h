/// @file
/// Every keyword, tag name and shared error text: the vocabulary that tools, plug-ins and the library share.
///
/// A tool sets a tag and a plug-in reads it, and neither links the code of the other: so the texts are the contract.
/// All are constant-initialised and can be used before any other code of the process runs. Tag keys are compared
/// without regard to case, because a context lowers them on the way in ("fileLengths" is stored as "filelengths").
///
/// @code
/// #include <configtools/zyncontext.h>
///
/// void AskForWinners(VrexZynConfigTools::CZynContext & context)
/// {
///     using namespace VrexZynConfigTools;
///     context.SetTag(keywords::TAG_LAYER_FILTER, 15);
///     context.SetTag(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE);
/// }
/// @endcode

#ifndef CONFIGTOOLS_KEYWORDS_H
#define CONFIGTOOLS_KEYWORDS_H

/// The constants of this header.
namespace VrexZynConfigTools::keywords {

/// @name Storage types
/// The contents of `IMetadata::InternalType`. They are compared with regard to case.
///@{
/// An unsigned integer of 8 bits.
inline constexpr char TYPE_UINT8[] = "uint8";
/// An unsigned integer of 16 bits.
inline constexpr char TYPE_UINT16[] = "uint16";
/// An unsigned integer of 32 bits.
inline constexpr char TYPE_UINT32[] = "uint32";
/// An unsigned integer of 64 bits.
inline constexpr char TYPE_UINT64[] = "uint64";
/// A signed integer of 8 bits.
inline constexpr char TYPE_INT8[] = "int8";
/// A signed integer of 16 bits.
inline constexpr char TYPE_INT16[] = "int16";
/// A signed integer of 32 bits.
inline constexpr char TYPE_INT32[] = "int32";
/// A signed integer of 64 bits.
inline constexpr char TYPE_INT64[] = "int64";
/// Signed 64 bits in a numeric array; in a packed struct a type without a width, which the field gives.
inline constexpr char TYPE_INTEGER[] = "integer";
/// An unsigned integer; for tools and plug-ins only.
inline constexpr char TYPE_UINT[] = "uint";
/// A signed integer; for tools and plug-ins only.
inline constexpr char TYPE_INT[] = "int";
/// Text.
inline constexpr char TYPE_STRING[] = "string";
/// Bytes, in a string that may contain zero bytes.
inline constexpr char TYPE_OCTET_STRING[] = "octet_string";
/// Wide text; for tools and plug-ins only.
inline constexpr char TYPE_UNICODE_STRING[] = "unicode_string";
///@}

/// @name Presentation formats
/// The contents of `IMetadata::Format`.
///@{
/// The codec extends the sign of a struct field of this format.
inline constexpr char FORMAT_SIGNED_DECIMAL[] = "signed_decimal";
/// Asks for an unsigned type where the storage type leaves it open.
inline constexpr char FORMAT_UNSIGNED_DECIMAL[] = "unsigned_decimal";
/// Asks for an unsigned type where the storage type leaves it open.
inline constexpr char FORMAT_HEXADECIMAL[] = "hexadecimal";
/// A device address; for tools and plug-ins only.
inline constexpr char FORMAT_MAC_ADDR[] = "mac_addr";
///@}

/// @name Boolean values of tags
/// Any other text, and an absent tag, count as false.
///@{
/// The value that switches an option on.
inline constexpr char VALUE_TRUE[] = "true";
/// Written by the library where it switches an option off; the same as no tag.
inline constexpr char VALUE_FALSE[] = "false";
///@}

/// Access rights. What a tool may do with a key on the device: the contents of `IMetadata::AccessRights`. The library
/// passes them on and never reads them.
///@{
inline constexpr char ACCESS_NOT_ACCESSIBLE[] = "not_accessible";
inline constexpr char ACCESS_READ_ONLY[] = "read_only";
inline constexpr char ACCESS_READ_WRITE[] = "read_write";
inline constexpr char ACCESS_WRITE_ONLY[] = "write_only";
///@}

/// @name Context tags of the library
/// Tags that the library itself reads or writes. Numbers are decimal text.
///@{
/// A `SubSystemTypeEnum` value.
inline constexpr char TAG_SUBSYSTEM_TYPE[] = "subsystemtype";
/// An `IStoreManager::DEVICE` value.
inline constexpr char TAG_DEVICE[] = "device";
/// The number of a store on its device.
inline constexpr char TAG_STORE[] = "store";
/// An order number, 0 to 65535.
inline constexpr char TAG_ORDER[] = "order";
/// A layer, 1 to 15; set on each subsystem at the end of a read, and by the caller of a lookup.
inline constexpr char TAG_LAYER_NUMBER[] = "layernumber";
/// The number of a file type; its meaning is between tools and plug-ins.
inline constexpr char TAG_FILE_TYPE[] = "filetype";
/// The system version label of the selected chip, not its name.
inline constexpr char TAG_CHIP[] = "chip";
/// The text of a subsystem's firmware version.
inline constexpr char TAG_SUBSYS_FW_VERSION[] = "subsysfwversion";
/// "true" or "false".
inline constexpr char TAG_IGNORE_HEADER[] = "ignoreheader";
/// Computed by `CZynContext::GetTag` for exactly this spelling, and never stored.
inline constexpr char TAG_SUBSYSTEM_KEY_BY_STORE[] = "subsystemkeybystore";
/// As the one above.
inline constexpr char TAG_SUBSYSTEM_KEY_BY_LAYER[] = "subsystemkeybylayer";
/// One of the `INSERT_` values: what a subsystem does with an element that it has already.
inline constexpr char TAG_INSERT_MODE[] = "insertmode";
/// The width in bits of the struct field under inspection; see `SetContextInfo` of the observers.
inline constexpr char TAG_ELEM_BIT_WIDTH[] = "elembitwidth";
/// "true" switches the checks of `CElementFactory` off.
inline constexpr char TAG_NO_DATA_CHECK[] = "nodatacheck";
/// A signed layer number: asks for the winners of the layers up to it.
inline constexpr char TAG_LAYER_FILTER[] = "layerfilter";
/// The selected fuse value of a chip that exists with several: 1 to 4 hexadecimal digits.
inline constexpr char TAG_EFUSE_HASH[] = "efusehash";
/// "true" while a raw element, or a table row that doesn't fit its metadata, is being written.
inline constexpr char TAG_RAW_MODE[] = "rawmode";
/// The number of table indices of a key; also names the count that a writer gets for a row.
inline constexpr char TAG_NUM_INDICES[] = "num_indices";
/// The stem of the tags "index1", "index2" and so on, which contain the indices of a row; also names each index that
/// a writer gets.
inline constexpr char TAG_INDEX[] = "index";
///@}

/// @name Values of "insertmode"
/// Any other text, and an absent tag, add the element without a look at what is stored.
///@{
/// The stored element remains, and the new one is deleted.
inline constexpr char INSERT_NEW[] = "new";
/// The new element takes the place of the stored one.
inline constexpr char INSERT_OVERWRITE[] = "overwrite";
/// Part of the contract between tools and plug-ins; the library treats it as any other text.
inline constexpr char INSERT_APPEND[] = "append";
///@}

/// Context tags of tools and plug-ins. The library passes them along and never reads them; what they mean is between
/// a tool and its plug-ins.
///@{
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
///@}

/// Values of "chunkfileformat". Read by tools and plug-ins only.
///@{
inline constexpr char CHUNK_FORMAT_PSC[] = "psc";
inline constexpr char CHUNK_FORMAT_TXT[] = "txt";
///@}

/// Subsystems. The keyword of the enumerator with the same name, in the order of `SubSystemTypeEnum`, from 0;
/// `CSubsystemInfo::GetSubsystemType` maps them.
///@{
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
///@}

/// Store devices. The keywords of `IStoreManager::GetDeviceName`. "cram", "cache" and "dev_cfg" have no enumerator in
/// `IStoreManager::DEVICE`: tools and plug-ins use them.
///@{
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
///@}

/// @name Other texts
/// Constants of the interfaces.
///@{
/// No value, as an argument of `TagMatches`, where it asks for absence, and of `SetTag`, where it deletes the tag.
inline constexpr char EMPTY[] = "";
/// The fuse text of a chip that exists with several fuse values; see `IChipInfo::EfuseHash`.
inline constexpr char MULTIPLE_EFUSES[] = "multiple_efuses";
/// For tools and plug-ins only.
inline constexpr char NAME_EQUALS[] = "nameeq";
/// For tools and plug-ins only.
inline constexpr char PT_STREAM[] = "ptstream";
/// The pattern of the names of plug-in modules.
inline constexpr char PLUGIN_FILE_PATTERN[] = "*.zpm";
/// The name of `CNullContext`.
inline constexpr char NULL_CONTEXT_NAME[] = "null";
///@}

/// Error texts. Shared by the whole family of tools, so that one failure reads the same everywhere. Raise them with
/// `CMessageHandler::SetErrorMsg` and the code 0. The library itself raises only the two of which it is said here; the
/// others are for plug-ins and tools.
///@{
inline constexpr char ERROR_UNABLE_TO_WRITE_FILE[] = "unable to write to the file";
/// The same text under a second name, intended: plug-ins use both names.
inline constexpr char ERROR_FILE_WRITE_FAILED[] = "unable to write to the file";
inline constexpr char ERROR_UNABLE_TO_OPEN_FILE[] = "unable to open the file";
inline constexpr char ERROR_READING_FILE[] = "error reading the file";
inline constexpr char ERROR_KEY_TYPE_UNKNOWN[] = "key type unknown";
inline constexpr char ERROR_CUSTOM_TYPE_UNDEFINED[] = "custom type undefined";
inline constexpr char ERROR_NO_KEY_DETAILS[] = "no information details for the key";
/// The key numbers follow the text.
inline constexpr char ERROR_UNKNOWN_PSIDS[] = "unknown psid(s) [contents not validated]: ";
/// Raised by `CElementFactory` for a struct or a field where none can be.
inline constexpr char ERROR_UNEXPECTED[] = "an unexpected error occurred";
/// Raised by `CChipConfig` for a context that is no `CBaseContext`.
inline constexpr char ERROR_INVALID_CONTEXT[] = "the passed context is invalid";
inline constexpr char ERROR_GLOBAL_ERROR_EXPECTED[] = "a global error is expected to be set but it is not";
inline constexpr char ERROR_UNABLE_TO_CREATE_READER[] = "unable to create the reader";
inline constexpr char ERROR_UNABLE_TO_CREATE_WRITER[] = "unable to create the writer";
inline constexpr char ERROR_UNABLE_TO_CREATE_STORE_MANAGER[] = "unable to create the store manager";
inline constexpr char ERROR_INVALID_OPERATION[] = "invalid operation";
inline constexpr char ERROR_INVALID_SYSTEM_NAME[] =
    "invalid system name (it doesn't exist in the information repository)";
inline constexpr char ERROR_CORRUPT_BINARY[] =
    "error converting data from or to a binary [the input seems corrupt]";
/// The length follows the text.
inline constexpr char ERROR_ODD_BT_LENGTH[] = "error converting data from binary for bluetooth subsystem - "
                                              "invalid odd data length of ";
inline constexpr char ERROR_UNABLE_TO_READ_DIR[] = "unable to read dir content";
inline constexpr char ERROR_SYSTEM_LABEL_NOT_FOUND[] = "system label not found";
///@}

}   // namespace VrexZynConfigTools::keywords

#endif
