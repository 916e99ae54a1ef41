#include "frame/errors.h"

#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "verimond.h"

const ErrorRow kErrorTable[45] = {
    {SUCCESS_NO_ERROR, "SUCCESS_NO_ERROR", "OK, success, no error"},
    {OPEN_ERROR, "OPEN_ERROR", "Cannot open input file"},
    {CREATE_ERROR, "CREATE_ERROR", "Cannot create output file"},
    {READ_ERROR, "READ_ERROR", "File read error"},
    {WRITE_ERROR, "WRITE_ERROR", "File write error"},
    {BAD_LENGTH_ERROR, "BAD_LENGTH_ERROR", "Data not a valid length"},
    {SHORT_BUF_ERROR, "SHORT_BUF_ERROR", "Not enough room in output buffer"},
    {DECRYPT_ERROR, "DECRYPT_ERROR", "Decryption error"},
    {OUT_OF_RANGE_ERROR, "OUT_OF_RANGE_ERROR", "Value out of range"},
    {DUP_ERROR, "DUP_ERROR", "Duplicate data or filename"},
    {BAD_KEY_LEN_ERROR, "BAD_KEY_LEN_ERROR", "Invalid key length"},
    {BAD_BLK_LEN_ERROR, "BAD_BLK_LEN_ERROR", "Invalid block length"},
    {BAD_IV_LEN_ERROR, "BAD_IV_LEN_ERROR", "Invalid IV length"},
    {BAD_MODE_ERROR, "BAD_MODE_ERROR", "Invalid mode"},
    {NULL_ERROR, "NULL_ERROR", "Unexpected NULL value"},
    {BAD_KEY_ERROR, "BAD_KEY_ERROR", "Invalid key"},
    {BAD_IV_ERROR, "BAD_IV_ERROR", "Invalid initialization vector"},
    {WEAK_KEY_ERROR, "WEAK_KEY_ERROR", "Weak key"},
    {INVALID_HANDLE_ERROR, "INVALID_HANDLE_ERROR", "Invalid context handle"},
    {MEMORY_ERROR, "MEMORY_ERROR", "Not enough memory"},
    {BAD_PARAM_ERROR, "BAD_PARAM_ERROR", "Parameter is wrong or missing"},
    {BAD_FORMAT_ERROR, "BAD_FORMAT_ERROR", "Data is in wrong format"},
    {EOF_ERROR, "EOF_ERROR", "Unexpected end of file found"},
    {INVALID_DATA_ERROR, "INVALID_DATA_ERROR", "Invalid data"},
    {TEST_FAILED_ERROR, "TEST_FAILED_ERROR", "Failed a test e.g. known answer test"},
    {BAD_FLAG_ERROR, "BAD_FLAG_ERROR", "Invalid option"},
    {WIPE_ERROR, "WIPE_ERROR", "Failed to wipe data"},
    {AUTH_FAIL_ERROR, "AUTH_FAIL_ERROR", "Authentication failed"},
    {MISUSE_ERROR, "MISUSE_ERROR", "Function called out of sequence"},
    {ZLIB_COMPR_ERROR, "ZLIB_COMPR_ERROR", "Zlib compression error"},
    {NOT_SUPPORTED_ERROR, "NOT_SUPPORTED_ERROR", "Item is not supported"},
    {ENCODING_ERROR, "ENCODING_ERROR", "Unable to encode"},
    {MISC_ERROR, "MISC_ERROR", "Miscellaneous error"},
    {INTERNAL_ERROR, "INTERNAL_ERROR", "Something not expected to happen has happened"},
    {PRNG_ERR_FILE_OPEN, "PRNG_ERR_FILE_OPEN", "PRNG: Cannot open input file"},
    {PRNG_ERR_FILE_CREATE, "PRNG_ERR_FILE_CREATE", "PRNG: Cannot create output file"},
    {PRNG_ERR_FILE_READ, "PRNG_ERR_FILE_READ", "PRNG: File read error"},
    {PRNG_ERR_FILE_WRITE, "PRNG_ERR_FILE_WRITE", "PRNG: File write error"},
    {PRNG_ERR_FILE_LOCK, "PRNG_ERR_FILE_LOCK", "PRNG: File locking error"},
    {PRNG_ERR_UNINST, "PRNG_ERR_UNINST", "PRNG: Uninstantiation failed"},
    {PRNG_ERR_TOOBIG, "PRNG_ERR_TOOBIG", "PRNG: Requested length is too large"},
    {PRNG_ERR_FAILURE, "PRNG_ERR_FAILURE", "PRNG: Function failed"},
    {PRNG_ERR_BADPARAM, "PRNG_ERR_BADPARAM", "PRNG: Invalid input parameter"},
    {PRNG_ERR_NOTAVAIL, "PRNG_ERR_NOTAVAIL", "PRNG: Function is not available"},
    {PRNG_ERR_CATASTROPHIC, "PRNG_ERR_CATASTROPHIC", "PRNG: Catastrophic failure"},
};

namespace {
constexpr size_t kPathMax = 260;

// The options file: VERIMOND_OPTIONS names it, else /etc/verimond/options.
// Lines "Name=value"; a missing file or line leaves the defaults.
FILE* OpenOptionsFile() {
    const char* path = std::getenv("VERIMOND_OPTIONS");
    if (path == nullptr || *path == '\0') path = "/etc/verimond/options";
    return std::fopen(path, "r");
}

void ReadOption(const char* name, int32_t* number, char* text) {
    FILE* f = OpenOptionsFile();
    if (f == nullptr) return;
    char line[1024];
    size_t nameLength = std::strlen(name);
    while (std::fgets(line, sizeof line, f) != nullptr) {
        if (std::strncmp(line, name, nameLength) != 0 || line[nameLength] != '=') continue;
        char* value = line + nameLength + 1;
        value[std::strcspn(value, "\r\n")] = '\0';
        if (number != nullptr) *number = int32_t(std::strtol(value, nullptr, 0));
        if (text != nullptr) {
            std::strncpy(text, value, kPathMax - 1);
            text[kPathMax - 1] = '\0';
        }
        break;
    }
    std::fclose(f);
}

void AppendErrorLog(const char* message, uint32_t eventId) {
    char path[kPathMax];
    ReadReportOptions(nullptr, nullptr, path);
    if (path[0] != '\0') {
        size_t n = std::strlen(path);
        if (path[n - 1] != '/' && n + 1 < kPathMax) {
            path[n] = '/';
            path[n + 1] = '\0';
        }
    } else {
        ssize_t n = readlink("/proc/self/exe", path, kPathMax - 1);
        if (n < 0) n = 0;
        path[n] = '\0';
        char* slash = std::strrchr(path, '/');
        if (slash != nullptr) slash[1] = '\0';
    }
    size_t used = std::strlen(path);
    std::strncat(path, "apierr.log", kPathMax - 1 - used);

    FILE* f = std::fopen(path, "a");
    if (f == nullptr) return;
    time_t now = std::time(nullptr);
    char timeText[64];
    if (ctime_r(&now, timeText) == nullptr) std::strcpy(timeText, "\n");
    std::fprintf(f, "%s%s (%x) %s\n", timeText, "Verimond", eventId, message);
    std::fclose(f);
}
}  // namespace

void ReadReportOptions(int32_t* noMessageBox, int32_t* noErrorLog, char* logDir) {
    if (noMessageBox != nullptr) {
        *noMessageBox = 0;
        ReadOption("NoMessageBox", noMessageBox, nullptr);
    }
    if (noErrorLog != nullptr) {
        *noErrorLog = 0;
        ReadOption("NoErrorLog", noErrorLog, nullptr);
    }
    if (logDir != nullptr) {
        logDir[0] = '\0';
        ReadOption("ErrorLogDir", nullptr, logDir);
    }
}

void ReportFatal(const char* message, uint32_t eventId) {
    // The system log entry cannot be switched off.
    openlog("Verimond", LOG_PID, LOG_USER);
    syslog(LOG_ERR, "%s", message);
    closelog();

    int32_t noMessageBox = 0;
    int32_t noErrorLog = 0;
    ReadReportOptions(&noMessageBox, &noErrorLog, nullptr);
    if (noErrorLog == 0) AppendErrorLog(message, eventId);
    if (noMessageBox == 0) std::fprintf(stderr, "Verimond: %s\n", message);
}

void FatalExit(const char* message) {
    ReportFatal(message, kEventAllocFailed);
    std::_Exit(1);
}
