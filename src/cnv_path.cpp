// CNV_Utf8FromWide, CNV_ShortPathName: wide text for the 8-bit file calls.
// Neither has a frame: they do not enter, and nothing they give is latched.
#include <sys/stat.h>

#include <cerrno>
#include <climits>

#include "convert/utf8.h"
#include "frame/memory.h"
#include "verimond.h"

namespace {
// Paths have no short form here: the path itself, in UTF-8, serves, once
// the file is known to exist. The size counts the NUL, as a system that
// reports the room a name needs would.
int32_t PathNameSize(const uint16_t* widePath) {
    int64_t length = Utf8LengthOfWide(widePath);
    if (length < 0) return -ENCODING_ERROR;
    // The system refuses such a name anyway; refusing it first keeps a
    // hostile length from costing an allocation.
    if (length >= PATH_MAX) return -MISC_ERROR;
    char* path = static_cast<char*>(SafeAlloc(size_t(length) + 1));
    Utf8EncodeWide(path, widePath);
    struct stat status;
    int failed = stat(path, &status);
    int error = errno;
    SafeFree(path);
    if (failed != 0) return (error == ENOENT || error == ENOTDIR) ? -1 : -MISC_ERROR;
    return int32_t(length) + 1;
}
}  // namespace

extern "C" {

int32_t CNV_Utf8FromWide(char* output, int32_t outputLength, const uint16_t* wideText) {
    // The capacity is the length plus the NUL; a negative length is a query,
    // and with it nothing is written, not even the empty text.
    int64_t capacity = outputLength < 0 ? 0 : int64_t(outputLength) + 1;
    return Utf8FromWideBounded(output, capacity, wideText);
}

int32_t CNV_ShortPathName(char* output, int32_t outputLength, const uint16_t* widePath) {
    if (widePath == nullptr || widePath[0] == 0) {
        if (output != nullptr && outputLength >= 0) output[0] = '\0';
        return 0;
    }
    int32_t size = PathNameSize(widePath);
    if (size < 0) return size;
    // Kept: the query gives the size with its NUL and a length below that
    // size is short, while the real call gives the count without the NUL.
    if (output == nullptr || outputLength < 1) return size;
    if (outputLength < size) return -SHORT_BUF_ERROR;
    return Utf8FromWideBounded(output, int64_t(outputLength) + 1, widePath);
}

}  // extern "C"
