#include <configtools/context.h>
#include <configtools/keywords.h>

#include <gtest/gtest.h>

#include <string>

namespace VrexZynConfigTools::keywords {
namespace {

struct Row
{
    const char * mKeyword;
    const char * mText;
};

constexpr Row TYPES[] = { { TYPE_UINT8, "uint8" }, { TYPE_UINT16, "uint16" }, { TYPE_UINT32, "uint32" },
    { TYPE_UINT64, "uint64" }, { TYPE_INT8, "int8" }, { TYPE_INT16, "int16" }, { TYPE_INT32, "int32" },
    { TYPE_INT64, "int64" }, { TYPE_INTEGER, "integer" }, { TYPE_UINT, "uint" }, { TYPE_INT, "int" },
    { TYPE_STRING, "string" }, { TYPE_OCTET_STRING, "octet_string" },
    { TYPE_UNICODE_STRING, "unicode_string" } };

constexpr Row FORMATS[] = { { FORMAT_SIGNED_DECIMAL, "signed_decimal" },
    { FORMAT_UNSIGNED_DECIMAL, "unsigned_decimal" }, { FORMAT_HEXADECIMAL, "hexadecimal" },
    { FORMAT_MAC_ADDR, "mac_addr" } };

constexpr Row VALUES[] = { { VALUE_TRUE, "true" }, { VALUE_FALSE, "false" } };

constexpr Row ACCESS_RIGHTS[] = { { ACCESS_NOT_ACCESSIBLE, "not_accessible" },
    { ACCESS_READ_ONLY, "read_only" }, { ACCESS_READ_WRITE, "read_write" },
    { ACCESS_WRITE_ONLY, "write_only" } };

constexpr Row FRAMEWORK_TAGS[] = { { TAG_SUBSYSTEM_TYPE, "subsystemtype" }, { TAG_DEVICE, "device" },
    { TAG_STORE, "store" }, { TAG_ORDER, "order" }, { TAG_LAYER_NUMBER, "layernumber" },
    { TAG_FILE_TYPE, "filetype" }, { TAG_CHIP, "chip" }, { TAG_SUBSYS_FW_VERSION, "subsysfwversion" },
    { TAG_IGNORE_HEADER, "ignoreheader" }, { TAG_SUBSYSTEM_KEY_BY_STORE, "subsystemkeybystore" },
    { TAG_SUBSYSTEM_KEY_BY_LAYER, "subsystemkeybylayer" }, { TAG_INSERT_MODE, "insertmode" },
    { TAG_ELEM_BIT_WIDTH, "elembitwidth" }, { TAG_NO_DATA_CHECK, "nodatacheck" },
    { TAG_LAYER_FILTER, "layerfilter" }, { TAG_EFUSE_HASH, "efusehash" }, { TAG_RAW_MODE, "rawmode" },
    { TAG_NUM_INDICES, "num_indices" }, { TAG_INDEX, "index" } };

constexpr Row INSERT_MODES[] = { { INSERT_NEW, "new" }, { INSERT_OVERWRITE, "overwrite" },
    { INSERT_APPEND, "append" } };

constexpr Row TOOL_TAGS[] = { { TAG_MODE, "mode" }, { TAG_DIR, "dir" }, { TAG_UPDATE_EEPROM, "updateeprom" },
    { TAG_CHUNK_TO_FILE, "chunk2file" }, { TAG_FILE_TO_CHUNK, "file2chunk" },
    { TAG_IGNORE_EEPROM, "ignoreeprom" }, { TAG_CHUNK_FILE_FORMAT, "chunkfileformat" },
    { CHUNK_FORMAT_PSC, "psc" }, { CHUNK_FORMAT_TXT, "txt" }, { TAG_SPREAD_VLINT, "spreadvlint" },
    { TAG_STORE_SET_FILTER, "storesetfilter" }, { TAG_COEX_CONFIG, "coexconfig" },
    { TAG_FILE_LENGTHS, "fileLengths" }, { TAG_EEPROM_SIZE_EXP, "eepromsizeexp" },
    { TAG_EEPROM_I2C_MASK, "eepromi2cmask" }, { TAG_LIST_FILES, "listfiles" },
    { TAG_TXT_SIMPLE_MODE, "txtsimplemode" }, { TAG_INPUT_FILE, "inputfile" },
    { TAG_RESET_DEVICE_AFTER_USE, "resetdeviceafteruse" } };

constexpr Row SUBSYSTEMS[] = { { SUBSYSTEM_CURATOR, "curator" }, { SUBSYSTEM_BT, "bt" },
    { SUBSYSTEM_WLAN, "wlan" }, { SUBSYSTEM_AUDIO, "audio" }, { SUBSYSTEM_GNSS, "gnss" },
    { SUBSYSTEM_NFC, "nfc" }, { SUBSYSTEM_JANITOR, "janitor" }, { SUBSYSTEM_APP, "app" },
    { SUBSYSTEM_BLE, "ble" }, { SUBSYSTEM_PSAPPS, "psapps" }, { SUBSYSTEM_PSAUDIO, "psaudio" } };

constexpr Row DEVICES[] = { { DEVICE_NONE, "none" }, { DEVICE_ROM, "rom" }, { DEVICE_OTP, "otp" },
    { DEVICE_SMEM, "smem" }, { DEVICE_CRAM, "cram" }, { DEVICE_MTP, "mtp" }, { DEVICE_CACHE, "cache" },
    { DEVICE_EEPROM, "eeprom" }, { DEVICE_DEV_CFG, "dev_cfg" }, { DEVICE_FW_CFG, "fw_cfg" },
    { DEVICE_CUR_CFG, "cur_cfg" }, { DEVICE_USER_PS_APPS, "user_ps_apps" },
    { DEVICE_USER_PS_AUDIO, "user_ps_audio" } };

constexpr Row OTHERS[] = { { EMPTY, "" }, { MULTIPLE_EFUSES, "multiple_efuses" }, { NAME_EQUALS, "nameeq" },
    { PT_STREAM, "ptstream" }, { PLUGIN_FILE_PATTERN, "*.zpm" }, { NULL_CONTEXT_NAME, "null" } };

constexpr Row ERRORS[] = { { ERROR_UNABLE_TO_WRITE_FILE, "unable to write to the file" },
    { ERROR_FILE_WRITE_FAILED, "unable to write to the file" },
    { ERROR_UNABLE_TO_OPEN_FILE, "unable to open the file" }, { ERROR_READING_FILE, "error reading the file" },
    { ERROR_KEY_TYPE_UNKNOWN, "key type unknown" }, { ERROR_CUSTOM_TYPE_UNDEFINED, "custom type undefined" },
    { ERROR_NO_KEY_DETAILS, "no information details for the key" },
    { ERROR_UNKNOWN_PSIDS, "unknown psid(s) [contents not validated]: " },
    { ERROR_UNEXPECTED, "an unexpected error occurred" },
    { ERROR_INVALID_CONTEXT, "the passed context is invalid" },
    { ERROR_GLOBAL_ERROR_EXPECTED, "a global error is expected to be set but it is not" },
    { ERROR_UNABLE_TO_CREATE_READER, "unable to create the reader" },
    { ERROR_UNABLE_TO_CREATE_WRITER, "unable to create the writer" },
    { ERROR_UNABLE_TO_CREATE_STORE_MANAGER, "unable to create the store manager" },
    { ERROR_INVALID_OPERATION, "invalid operation" },
    { ERROR_INVALID_SYSTEM_NAME, "invalid system name (it doesn't exist in the information repository)" },
    { ERROR_CORRUPT_BINARY, "error converting data from or to a binary [the input seems corrupt]" },
    { ERROR_ODD_BT_LENGTH,
        "error converting data from binary for bluetooth subsystem - invalid odd data length of " },
    { ERROR_UNABLE_TO_READ_DIR, "unable to read dir content" },
    { ERROR_SYSTEM_LABEL_NOT_FOUND, "system label not found" } };

template <std::size_t size>
void ExpectTexts(const Row (&rows)[size], std::size_t number)
{
    EXPECT_EQ(size, number);
    for (const Row & row : rows)
        EXPECT_STREQ(row.mKeyword, row.mText);
}

TEST(Keywords, have_the_texts_of_the_contract)
{
    ExpectTexts(TYPES, 14);
    ExpectTexts(FORMATS, 4);
    ExpectTexts(VALUES, 2);
    ExpectTexts(ACCESS_RIGHTS, 4);
    ExpectTexts(FRAMEWORK_TAGS, 19);
    ExpectTexts(INSERT_MODES, 3);
    ExpectTexts(TOOL_TAGS, 19);
    ExpectTexts(SUBSYSTEMS, 11);
    ExpectTexts(DEVICES, 13);
    ExpectTexts(OTHERS, 6);
    ExpectTexts(ERRORS, 20);
}

// Taken before main begins, when nothing but constants is there.
const std::string nameTakenEarly = CNullContext::Ref().Name();

TEST(Keywords, are_there_before_anything_is_built)
{
    EXPECT_EQ(nameTakenEarly, "null");
}

TEST(Keywords, find_their_tags_in_either_spelling)
{
    CBaseContext context("test");
    context.SetTag(TAG_FILE_LENGTHS, "x");
    EXPECT_EQ(context.GetTag("filelengths"), "x");
    EXPECT_EQ(context.GetTag("fileLengths"), "x");
    EXPECT_EQ(context.Tags().count("filelengths"), 1U);
}

}   // namespace
}   // namespace VrexZynConfigTools::keywords
