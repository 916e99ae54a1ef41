// Sweep rows: RNG_, ZLIB_, COMPR_, CRC_ and WIPE_.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

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
    const std::string seed = Fs().dir + "/seed.bin";
    Table rows = {
        ROW(Is(BAD_PARAM_ERROR), RNG_KeyBytes(o, 16, in, kMin)),
        ROW(Is(0), RNG_KeyBytes(o, 16, in, 256)),
        ROW(Is(0), RNG_KeyHex(t, 7, 16, in, 3)),
        ROW(Is(BAD_PARAM_ERROR), RNG_NonceData(o, kMin)),
        ROW(Is(NULL_ERROR), RNG_NonceDataHex(t, kMin, 4)),
        ROW(Is(5), RNG_Number(5, 5)),
        ROW(Is(kMax), RNG_Number(kMax, kMin)),
        {"RNG_Number whole range", [] {
             for (int i = 0; i < 16; ++i) RNG_Number(kMin, kMax);  // any value is in range
             int32_t v = RNG_Number(-3, -1);
             return v >= -3 && v <= -1 ? 1 : 0;
         }, Is(1)},
        ROW(Is(PRNG_ERR_TOOBIG), RNG_BytesWithPrompt(o, 65537, nullptr, 0)),
        {"RNG_BytesWithPrompt null prompt, closed input", [] {
             return WithClosedInput([] {
                 unsigned char out[16];
                 return int(RNG_BytesWithPrompt(out, 16, nullptr, OPT_RNG_NO_PROMPT | 3));
             });
         }, Is(0)},
        ROW(Is(PRNG_ERR_TOOBIG), RNG_HexWithPrompt(t, 32, kMax, "", 0)),
        {"RNG_HexWithPrompt empty prompt, closed input", [] {
             return WithClosedInput([] {
                 char out[9];
                 return int(RNG_HexWithPrompt(out, 8, 16, "", kMin));
             });
         }, Is(0)},
        ROW(AnyOf(1, 2, 3, -PRNG_ERR_NOTAVAIL), RNG_Initialize(nullptr, 0)),
        ROW(AnyOf(1, 2, 3, -PRNG_ERR_NOTAVAIL), RNG_Initialize("", kMax & ~OPT_RNG_NO_INTEL_DRBG)),
        ROW(Is(-PRNG_ERR_FILE_CREATE), RNG_Initialize(Fs().noDir.c_str(), 0)),
        ROW(AnyOf(-PRNG_ERR_FILE_CREATE, -PRNG_ERR_FILE_OPEN), RNG_Initialize(Fs().dir.c_str(), 0)),
        {"RNG_MakeSeedFile missing directory, closed input", [] {
             return WithClosedInput([] {
                 return -int(RNG_MakeSeedFile(Fs().noDir.c_str(), nullptr, OPT_RNG_NO_PROMPT));
             });
         }, Is(PRNG_ERR_FILE_CREATE)},
        ROW(Is(-BAD_PARAM_ERROR), RNG_UpdateSeedFile(nullptr, 0)),
        ROW(Is(-PRNG_ERR_FILE_OPEN), RNG_UpdateSeedFile(Fs().missing.c_str(), kMin)),
        {"RNG_UpdateSeedFile short file", [seed] {
             std::ofstream(seed, std::ios::binary) << "short";
             return RNG_UpdateSeedFile(seed.c_str(), 0);
         }, Is(0)},
        ROW(AnyOf(0, 1), RNG_Test(nullptr)),
        ROW(Is(-PRNG_ERR_FILE_CREATE), RNG_Test(Fs().noDir.c_str())),
        ROW(Is(-BAD_PARAM_ERROR), RNG_TestDRBGVS(nullptr, 0, 0, "", "", "", "", "", "", "", 0)),
        ROW(Is(512),
            RNG_TestDRBGVS(nullptr, kMin, 2048, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0)),
        ROW(Is(4), RNG_TestDRBGVS(t, 5, 64, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, kMin)),
        ROW(Is(2), RNG_TestDRBGVS(t, 100, 8, "zz", "\x80\xff", "-", "0", "g0", "000", "x1y", 0x10000)),
    };
    VARY(RNG_KeyBytes, {o, 16, nullptr, 0},
         {{BAD_PARAM_ERROR, {{0, nullptr}, {1, kMin}, {3, 5}}}, {PRNG_ERR_TOOBIG, {{1, 65537}}}, {0, {{1, 0}}}});
    VARY(RNG_KeyHex, {t, 32, 16, nullptr, 0},
         {{NULL_ERROR, {{0, nullptr}, {1, 0}}}, {BAD_PARAM_ERROR, {{2, 0}, {4, 1}}}, {PRNG_ERR_TOOBIG, {{2, 65537}}}});
    VARY(RNG_MakeSeedFile, {"", "", 0}, {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, nullptr}}}});
    VARY(RNG_TestDRBGVS, {t, 100, 64, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0},
         {{-PRNG_ERR_TOOBIG, {{2, kMax}}}, {-BAD_PARAM_ERROR, {{2, kMin}}}});
    return rows;
}

Table UtilityRows() {
    // 40 bytes deflated.
    std::vector<uint8_t> z(64);
    z.resize(size_t(std::max(0, ZLIB_Deflate(z.data(), 64, in, 40))));
    Table rows = {
        ROW(Is(8), ZLIB_Deflate(nullptr, 0, in, 0)),
        ROW(Is(-BAD_PARAM_ERROR), ZLIB_Inflate(o, 64, nullptr, 3)),
        ROW(Is(-INVALID_DATA_ERROR), ZLIB_Inflate(o, 64, z.data(), int32_t(z.size()) - 1)),  // cut short
        ROW(Is(-SHORT_BUF_ERROR), ZLIB_Inflate(o, 39, z.data(), int32_t(z.size()))),
        ROW(Is(-BAD_FLAG_ERROR), COMPR_Compress(o, 64, nullptr, -1, 2)),
        ROW(Is(-BAD_PARAM_ERROR), COMPR_Compress(o, kMin, in, 3, 0)),
        ROW(Is(-BAD_FORMAT_ERROR), COMPR_Uncompress(o, 64, z.data(), int32_t(z.size()), OPT_COMPR_ZSTD)),
        {"COMPR_Uncompress zstd frame with a huge size", [=] {
             // Magic, a descriptor with an 8-byte content size, window byte,
             // then 2^40 as the size: the header claims far more than the
             // input could hold.
             const uint8_t frame[] = {0x28, 0xB5, 0x2F, 0xFD, 0xC0, 0, 0, 0, 0, 0, 0x01, 0, 0, 0};
             return COMPR_Uncompress(o, 64, frame, sizeof frame, OPT_COMPR_ZSTD);
         }, Is(-ZLIB_COMPR_ERROR)},
        ROW(Is(-BAD_FORMAT_ERROR),
            COMPR_Uncompress(o, 64, std::vector<uint8_t>{0x28, 0xB5, 0x2F}.data(), 3, OPT_COMPR_ZSTD)),
        ROW(Is(-BAD_PARAM_ERROR), COMPR_Uncompress(o, 64, in, kMin, 1)),

        ROW(Is(int32_t(0xCBF43926u)), CRC_Bytes(reinterpret_cast<const uint8_t*>("123456789"), 9, kMin)),
        ROW(Is(BAD_PARAM_ERROR), Latched(CRC_String(nullptr, 0))),

        ROW(Is(NULL_ERROR), WIPE_File(nullptr, 0)),
        ROW(Is(OPEN_ERROR), WIPE_File(Fs().missing.c_str(), OPT_WIPE_FAST)),
        ROW(Is(OPEN_ERROR), WIPE_File(Fs().dir.c_str(), 0)),
        {"WIPE_File read-only file", [] {
             std::string path = MakeFile("readonly.bin", 10);
             chmod(path.c_str(), 0400);
             int32_t r = WIPE_File(path.c_str(), 0);
             chmod(path.c_str(), 0600);
             unlink(path.c_str());
             return geteuid() == 0 ? OPEN_ERROR : r;  // root writes anyway
         }, Is(OPEN_ERROR)},
        ROW(Is(0), WIPE_File(MakeFile("wipe.bin", 4097).c_str(), kMin)),
        ROW(Is(0), WIPE_File(MakeFile("empty-wipe.bin", 0).c_str(), 1)),
    };
    VARY(ZLIB_Deflate, {o, 64, in, 3},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, kMin}, {1, -1}}}, {-SHORT_BUF_ERROR, {{1, 2}}}});
    VARY(ZLIB_Inflate, {o, 64, in, 64}, {{-BAD_PARAM_ERROR, {{3, -1}}}, {-INVALID_DATA_ERROR, {{3, 64}, {3, 0}}}});
    VARY(COMPR_Compress, {o, 64, in, 3, OPT_COMPR_ZSTD},
         {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, -1}}}, {-SHORT_BUF_ERROR, {{1, 1}}}});
    VARY(COMPR_Uncompress, {o, 64, in, 3, 0},
         {{-BAD_PARAM_ERROR, {{2, nullptr}}}, {-BAD_FLAG_ERROR, {{4, 0xF}}}, {-INVALID_DATA_ERROR, {{3, 64}}}});
    VARY(CRC_Bytes, {in, 5, 0}, {{BAD_PARAM_ERROR, {{0, nullptr}, {1, kMin}}}}, {.latch = API_ErrorCode});
    VARY(CRC_File, {ex, 0}, {{OPEN_ERROR, {{0, nullptr}, {0, Fs().dir.c_str()}, {0, Fs().missing.c_str()}}}},
         {.latch = API_ErrorCode});
    VARY(WIPE_Data, {Buf().out, 5}, {{NULL_ERROR, {{0, nullptr}}}, {BAD_PARAM_ERROR, {{1, 0}, {1, kMin}}}});
    return rows;
}

}  // namespace sweep
