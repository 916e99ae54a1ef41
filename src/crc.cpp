// CRC_: CRC-32 of ISO 3309 / IEEE 802.3 through zlib's crc32.
//
// The result is the CRC itself, so there is no room for a status: a value of
// 0 is taken as a failure and its code goes to the latch, even when 0 is the
// true CRC (empty data). Callers that can meet such data read API_ErrorCode.
#include <zlib.h>

#include <cstdio>
#include <cstring>

#include "frame/frame.h"
#include "verimond.h"

namespace {
constexpr size_t kCrcFileBlock = 1024;

uint32_t CrcOfBytes(const uint8_t* data, size_t length) {
    return uint32_t(crc32_z(0, data, length));
}

// 0 when the file cannot be opened or a read fails part way: a CRC of part
// of a file would be a wrong answer that looks right.
uint32_t CrcOfFile(const char* fileName) {
    if (fileName == nullptr) return 0;
    std::FILE* f = std::fopen(fileName, "rb");
    if (f == nullptr) return 0;
    uint8_t block[kCrcFileBlock];
    uLong crc = crc32(0, nullptr, 0);
    size_t n;
    while ((n = std::fread(block, 1, sizeof block, f)) > 0) crc = crc32(crc, block, uInt(n));
    if (std::ferror(f)) crc = 0;
    std::fclose(f);
    return uint32_t(crc);
}

// No LeaveCall on the way out: the value is no status. A zero alone leaves
// its code in the latch.
int32_t CrcResult(uint32_t crc, int32_t codeIfZero) {
    if (crc == 0) LeaveCall(-codeIfZero);
    return int32_t(crc);
}
}  // namespace

extern "C" {

int32_t CRC_Bytes(const unsigned char* data, int32_t length, int32_t options) {
    EnterCall();
    uint32_t crc = (data == nullptr || length < 0) ? 0 : CrcOfBytes(data, size_t(length));
    return CrcResult(crc, BAD_PARAM_ERROR);
}

int32_t CRC_String(const char* text, int32_t options) {
    EnterCall();
    uint32_t crc = text == nullptr ? 0 : CrcOfBytes(reinterpret_cast<const uint8_t*>(text), std::strlen(text));
    return CrcResult(crc, BAD_PARAM_ERROR);
}

int32_t CRC_File(const char* fileName, int32_t options) {
    EnterCall();
    return CrcResult(CrcOfFile(fileName), OPEN_ERROR);
}

}  // extern "C"
