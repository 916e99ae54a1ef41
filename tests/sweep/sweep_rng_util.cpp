// Sweep rows: RNG_, ZLIB_, COMPR_, CRC_ and WIPE_.
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "child_run.h"
#include "sweep.h"

namespace sweep {

namespace {
// The prompted calls read the console: they run in a child whose standard
// input is closed, and the row sees the call's result as the exit status.
int32_t WithClosedInput(int (*body)()) {
    return RunInChildWithInput(nullptr, body).exitStatus;
}

std::string MakeFile(const std::string& name, size_t size) {
    const std::string path = Fs().dir + "/" + name;
    std::ofstream(path, std::ios::binary) << std::string(size, 'w');
    return path;
}
}  // namespace

Table RandomRows() {
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const std::string seed = Fs().dir + "/seed.bin";
    return {
        {"RNG_KeyBytes null output", [=] { return RNG_KeyBytes(nullptr, 16, nullptr, 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyBytes negative length", [=] { return RNG_KeyBytes(o, -1, nullptr, 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyBytes 65537", [=] { return RNG_KeyBytes(o, 65537, nullptr, 0); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_KeyBytes INT32_MAX", [=] { return RNG_KeyBytes(o, kMax, nullptr, 0); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_KeyBytes INT32_MIN", [=] { return RNG_KeyBytes(o, kMin, nullptr, 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyBytes nothing", [=] { return RNG_KeyBytes(o, 0, nullptr, 0); }, Is(0)},
        {"RNG_KeyBytes null seed with a length", [=] { return RNG_KeyBytes(o, 16, nullptr, 5); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyBytes negative seed length", [=] { return RNG_KeyBytes(o, 16, in, kMin); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyBytes long seed", [=] { return RNG_KeyBytes(o, 16, in, 256); }, Is(0)},
        {"RNG_KeyHex null output", [] { return RNG_KeyHex(nullptr, 32, 16, nullptr, 0); }, Is(NULL_ERROR)},
        {"RNG_KeyHex output length 0", [=] { return RNG_KeyHex(t, 0, 16, nullptr, 0); }, Is(NULL_ERROR)},
        {"RNG_KeyHex count 0", [=] { return RNG_KeyHex(t, 32, 0, nullptr, 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyHex count INT32_MIN", [=] { return RNG_KeyHex(t, 32, kMin, nullptr, 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyHex count 65537", [=] { return RNG_KeyHex(t, 32, 65537, nullptr, 0); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_KeyHex null seed with a length", [=] { return RNG_KeyHex(t, 32, 16, nullptr, 1); }, Is(BAD_PARAM_ERROR)},
        {"RNG_KeyHex cut", [=] { return RNG_KeyHex(t, 7, 16, in, 3); }, Is(0)},
        {"RNG_NonceData null output", [] { return RNG_NonceData(nullptr, 8); }, Is(BAD_PARAM_ERROR)},
        {"RNG_NonceData INT32_MIN", [=] { return RNG_NonceData(o, kMin); }, Is(BAD_PARAM_ERROR)},
        {"RNG_NonceData INT32_MAX", [=] { return RNG_NonceData(o, kMax); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_NonceDataHex null output", [] { return RNG_NonceDataHex(nullptr, 8, 4); }, Is(NULL_ERROR)},
        {"RNG_NonceDataHex negative length", [=] { return RNG_NonceDataHex(t, kMin, 4); }, Is(NULL_ERROR)},
        {"RNG_NonceDataHex count -1", [=] { return RNG_NonceDataHex(t, 8, -1); }, Is(BAD_PARAM_ERROR)},
        {"RNG_NonceDataHex count INT32_MAX", [=] { return RNG_NonceDataHex(t, 8, kMax); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_Number equal bounds", [] { return RNG_Number(5, 5); }, Is(5)},
        {"RNG_Number upper below lower", [] { return RNG_Number(kMax, kMin); }, Is(kMax)},
        {"RNG_Number whole range", [] {
             for (int i = 0; i < 16; ++i) RNG_Number(kMin, kMax);  // any value is in range
             int32_t v = RNG_Number(-3, -1);
             return v >= -3 && v <= -1 ? 1 : 0;
         }, Is(1)},
        {"RNG_BytesWithPrompt null output", [] { return RNG_BytesWithPrompt(nullptr, 16, "", 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_BytesWithPrompt too long", [=] { return RNG_BytesWithPrompt(o, 65537, nullptr, 0); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_BytesWithPrompt null prompt, closed input", [] {
             return WithClosedInput([] {
                 unsigned char out[16];
                 return int(RNG_BytesWithPrompt(out, 16, nullptr, OPT_RNG_NO_PROMPT | 3));
             });
         }, Is(0)},
        {"RNG_HexWithPrompt null output", [] { return RNG_HexWithPrompt(nullptr, 32, 16, "", 0); }, Is(NULL_ERROR)},
        {"RNG_HexWithPrompt count 0", [=] { return RNG_HexWithPrompt(t, 32, 0, "", 0); }, Is(BAD_PARAM_ERROR)},
        {"RNG_HexWithPrompt count INT32_MAX", [=] { return RNG_HexWithPrompt(t, 32, kMax, "", 0); }, Is(PRNG_ERR_TOOBIG)},
        {"RNG_HexWithPrompt empty prompt, closed input", [] {
             return WithClosedInput([] {
                 char out[9];
                 return int(RNG_HexWithPrompt(out, 8, 16, "", kMin));
             });
         }, Is(0)},
        {"RNG_Initialize no file", [] { return RNG_Initialize(nullptr, 0); },
         AnyOf({1, 2, 3, -PRNG_ERR_NOTAVAIL})},
        {"RNG_Initialize empty name, all options", [] { return RNG_Initialize("", kMax & ~OPT_RNG_NO_INTEL_DRBG); },
         AnyOf({1, 2, 3, -PRNG_ERR_NOTAVAIL})},
        {"RNG_Initialize file in a missing directory", [] { return RNG_Initialize(Fs().noDir.c_str(), 0); },
         Is(-PRNG_ERR_FILE_CREATE)},
        {"RNG_Initialize a directory", [] { return RNG_Initialize(Fs().dir.c_str(), 0); },
         AnyOf({-PRNG_ERR_FILE_CREATE, -PRNG_ERR_FILE_OPEN})},
        {"RNG_MakeSeedFile null name", [] { return RNG_MakeSeedFile(nullptr, "", 0); }, Is(-BAD_PARAM_ERROR)},
        {"RNG_MakeSeedFile empty name", [] { return RNG_MakeSeedFile("", nullptr, 0); }, Is(-BAD_PARAM_ERROR)},
        {"RNG_MakeSeedFile missing directory, closed input", [] {
             return WithClosedInput([] {
                 return -int(RNG_MakeSeedFile(Fs().noDir.c_str(), nullptr, OPT_RNG_NO_PROMPT));
             });
         }, Is(PRNG_ERR_FILE_CREATE)},
        {"RNG_UpdateSeedFile null name", [] { return RNG_UpdateSeedFile(nullptr, 0); }, Is(-BAD_PARAM_ERROR)},
        {"RNG_UpdateSeedFile missing file", [] { return RNG_UpdateSeedFile(Fs().missing.c_str(), kMin); },
         Is(-PRNG_ERR_FILE_OPEN)},
        {"RNG_UpdateSeedFile short file", [seed] {
             std::ofstream(seed, std::ios::binary) << "short";
             return RNG_UpdateSeedFile(seed.c_str(), 0);
         }, Is(0)},
        {"RNG_Test no report", [] { return RNG_Test(nullptr); }, AnyOf({0, 1})},
        {"RNG_Test report in a missing directory", [] { return RNG_Test(Fs().noDir.c_str()); },
         Is(-PRNG_ERR_FILE_CREATE)},
        {"RNG_TestDRBGVS zero bits", [] {
             return RNG_TestDRBGVS(nullptr, 0, 0, "", "", "", "", "", "", "", 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"RNG_TestDRBGVS INT32_MIN bits", [=] {
             return RNG_TestDRBGVS(t, 100, kMin, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
         }, Is(-BAD_PARAM_ERROR)},
        {"RNG_TestDRBGVS INT32_MAX bits", [=] {
             return RNG_TestDRBGVS(t, 100, kMax, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
         }, Is(-PRNG_ERR_TOOBIG)},
        {"RNG_TestDRBGVS query", [] {
             return RNG_TestDRBGVS(nullptr, kMin, 2048, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
         }, Is(512)},
        {"RNG_TestDRBGVS all null, cut", [=] {
             return RNG_TestDRBGVS(t, 5, 64, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, kMin);
         }, Is(4)},
        {"RNG_TestDRBGVS garbage texts", [=] {
             return RNG_TestDRBGVS(t, 100, 8, "zz", "\x80\xff", "-", "0", "g0", "000", "x1y", 0x10000);
         }, Is(2)},
    };
}

Table UtilityRows() {
    Buffers& b = Buf();
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    const char* ex = Fs().existing.c_str();
    return {
        {"ZLIB_Deflate null input", [=] { return ZLIB_Deflate(o, 64, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"ZLIB_Deflate negative length", [=] { return ZLIB_Deflate(o, 64, in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"ZLIB_Deflate negative output length", [=] { return ZLIB_Deflate(o, -1, in, 3); }, Is(-BAD_PARAM_ERROR)},
        {"ZLIB_Deflate query", [=] { return ZLIB_Deflate(nullptr, 0, in, 0); }, Is(8)},
        {"ZLIB_Deflate short", [=] { return ZLIB_Deflate(o, 2, in, 3); }, Is(-SHORT_BUF_ERROR)},
        {"ZLIB_Inflate null input", [=] { return ZLIB_Inflate(o, 64, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"ZLIB_Inflate negative length", [=] { return ZLIB_Inflate(o, 64, in, -1); }, Is(-BAD_PARAM_ERROR)},
        {"ZLIB_Inflate garbage", [=] { return ZLIB_Inflate(o, 64, in, 64); }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate garbage query", [=] { return ZLIB_Inflate(nullptr, 0, in, 64); }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate empty", [=] { return ZLIB_Inflate(o, 64, in, 0); }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate empty query", [=] { return ZLIB_Inflate(nullptr, 0, in, 0); }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate truncated", [=] {
             uint8_t z[64];
             int32_t n = ZLIB_Deflate(z, 64, Buf().in, 40);
             return n < 2 ? -1 : ZLIB_Inflate(o, 64, z, n - 1);
         }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate truncated query", [] {
             uint8_t z[64];
             int32_t n = ZLIB_Deflate(z, 64, Buf().in, 40);
             return n < 2 ? -1 : ZLIB_Inflate(nullptr, 0, z, n - 1);
         }, Is(-INVALID_DATA_ERROR)},
        {"ZLIB_Inflate short", [=] {
             uint8_t z[64];
             int32_t n = ZLIB_Deflate(z, 64, Buf().in, 40);
             return ZLIB_Inflate(o, 39, z, n);
         }, Is(-SHORT_BUF_ERROR)},
        {"COMPR_Compress bad option", [=] { return COMPR_Compress(o, 64, nullptr, -1, 2); }, Is(-BAD_FLAG_ERROR)},
        {"COMPR_Compress null input", [=] { return COMPR_Compress(o, 64, nullptr, 3, OPT_COMPR_ZSTD); }, Is(-BAD_PARAM_ERROR)},
        {"COMPR_Compress negative length", [=] { return COMPR_Compress(o, 64, in, -1, OPT_COMPR_ZSTD); }, Is(-BAD_PARAM_ERROR)},
        {"COMPR_Compress negative output length", [=] { return COMPR_Compress(o, kMin, in, 3, 0); }, Is(-BAD_PARAM_ERROR)},
        {"COMPR_Compress zstd short", [=] { return COMPR_Compress(o, 1, in, 3, OPT_COMPR_ZSTD); }, Is(-SHORT_BUF_ERROR)},
        {"COMPR_Uncompress zlib stream as zstd", [=] {
             uint8_t z[64];
             int32_t n = ZLIB_Deflate(z, 64, Buf().in, 40);
             return COMPR_Uncompress(o, 64, z, n, OPT_COMPR_ZSTD);
         }, Is(-BAD_FORMAT_ERROR)},
        {"COMPR_Uncompress zstd frame with a huge size", [=] {
             // Magic, a descriptor with an 8-byte content size, window byte,
             // then 2^40 as the size: the header claims far more than the
             // input could hold.
             const uint8_t frame[] = {0x28, 0xB5, 0x2F, 0xFD, 0xC0, 0, 0, 0, 0, 0, 0x01, 0, 0, 0};
             return COMPR_Uncompress(o, 64, frame, sizeof frame, OPT_COMPR_ZSTD);
         }, Is(-ZLIB_COMPR_ERROR)},
        {"COMPR_Uncompress zstd header cut short", [=] {
             const uint8_t frame[] = {0x28, 0xB5, 0x2F};
             return COMPR_Uncompress(o, 64, frame, sizeof frame, OPT_COMPR_ZSTD);
         }, Is(-BAD_FORMAT_ERROR)},
        {"COMPR_Uncompress null input", [=] { return COMPR_Uncompress(o, 64, nullptr, 3, 0); }, Is(-BAD_PARAM_ERROR)},
        {"COMPR_Uncompress negative length", [=] { return COMPR_Uncompress(o, 64, in, kMin, 1); }, Is(-BAD_PARAM_ERROR)},
        {"COMPR_Uncompress bad option", [=] { return COMPR_Uncompress(o, 64, in, 3, 0xF); }, Is(-BAD_FLAG_ERROR)},
        {"COMPR_Uncompress zlib garbage", [=] { return COMPR_Uncompress(o, 64, in, 64, 0); }, Is(-INVALID_DATA_ERROR)},

        {"CRC_Bytes null data", [] {
             int32_t v = CRC_Bytes(nullptr, 5, 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(BAD_PARAM_ERROR)},
        {"CRC_Bytes negative length", [=] {
             int32_t v = CRC_Bytes(in, kMin, 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(BAD_PARAM_ERROR)},
        {"CRC_Bytes check value", [] { return CRC_Bytes(reinterpret_cast<const uint8_t*>("123456789"), 9, kMin); },
         Is(int32_t(0xCBF43926u))},
        {"CRC_String null", [] {
             int32_t v = CRC_String(nullptr, 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(BAD_PARAM_ERROR)},
        {"CRC_File null name", [] {
             int32_t v = CRC_File(nullptr, 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(OPEN_ERROR)},
        {"CRC_File a directory", [] {
             int32_t v = CRC_File(Fs().dir.c_str(), 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(OPEN_ERROR)},
        {"CRC_File missing", [] {
             int32_t v = CRC_File(Fs().missing.c_str(), 0);
             return v == 0 ? API_ErrorCode() : -1;
         }, Is(OPEN_ERROR)},

        {"WIPE_Data null", [] { return WIPE_Data(nullptr, 5); }, Is(NULL_ERROR)},
        {"WIPE_Data length 0", [=] { return WIPE_Data(Buf().out, 0); }, Is(BAD_PARAM_ERROR)},
        {"WIPE_Data INT32_MIN", [=] { return WIPE_Data(Buf().out, kMin); }, Is(BAD_PARAM_ERROR)},
        {"WIPE_File null name", [] { return WIPE_File(nullptr, 0); }, Is(NULL_ERROR)},
        {"WIPE_File empty name", [] { return WIPE_File("", 0); }, Is(OPEN_ERROR)},
        {"WIPE_File missing", [] { return WIPE_File(Fs().missing.c_str(), OPT_WIPE_FAST); }, Is(OPEN_ERROR)},
        {"WIPE_File a directory", [] { return WIPE_File(Fs().dir.c_str(), 0); }, Is(OPEN_ERROR)},
        {"WIPE_File read-only file", [] {
             std::string path = MakeFile("readonly.bin", 10);
             chmod(path.c_str(), 0400);
             int32_t r = WIPE_File(path.c_str(), 0);
             chmod(path.c_str(), 0600);
             unlink(path.c_str());
             return geteuid() == 0 ? OPEN_ERROR : r;  // root writes anyway
         }, Is(OPEN_ERROR)},
        {"WIPE_File options INT32_MIN", [] { return WIPE_File(MakeFile("wipe.bin", 4097).c_str(), kMin); }, Is(0)},
        {"WIPE_File empty file", [] { return WIPE_File(MakeFile("empty-wipe.bin", 0).c_str(), 1); }, Is(0)},
    };
}

}  // namespace sweep
