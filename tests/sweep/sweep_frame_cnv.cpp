// Sweep rows: module information, error lookup, hex, Base64 and wide text.
#include <vector>

#include "sweep.h"

namespace sweep {

namespace {
std::vector<uint16_t> Wide(const std::string& s) {
    std::vector<uint16_t> w(s.begin(), s.end());
    w.push_back(0);
    return w;
}
}  // namespace

Table FrameAndConversionRows() {
    Table rows = {
        ROW(Is(62201), API_Version()),
        {"API_ErrorCode after a failure", [] { HASH_Length(9); return API_ErrorCode(); }, Is(BAD_FLAG_ERROR)},
        ROW(Is(47), API_ErrorLookup(nullptr, 0, 6)),
        ROW(Is(47), API_ErrorLookup(t, kMin, -6)),
        ROW(Is(5), API_CompileTime(t, 5)),
        ROW(APositive(), API_ModuleName(nullptr, 0, 0)),
        ROW(Is(5), API_ModuleName(nullptr, 0, 0x40)),
        ROW(Is(210), API_ModuleName(nullptr, 0, 0xAB)),
        ROW(Is(2), API_Platform(t, 2)),
        ROW(APositive(), API_ModuleInfo(nullptr, 0, kMin)),
        ROW(Is(1), API_ModuleInfo(t, 1, kMax)),
        ROW(Is(0), API_PowerUpTests(kMin)),

        // The doubled length wraps as a 32-bit count; nothing is read.
        ROW(Is(-2), CNV_HexStrFromBytes(nullptr, 0, in, kMax)),
        ROW(Is(2), CNV_HexStrFromBytes(t, 3, in, 4)),
        ROW(Is(0), CNV_HexStrFromBytes(t, 1, in, 4)),
        ROW(Is(4), CNV_BytesFromHexStr(nullptr, 0, "DE:AD BE-EF F")),
        ROW(Is(1), CNV_BytesFromHexStr(o, kMin, "ABC")),
        ROW(Is(1), CNV_BytesFromHexStr(o, 1, "AABBCC")),
        ROW(Is(3), CNV_HexFilter(t, "A\0B-C", 5)),
        ROW(Is(8), CNV_B64StrFromBytes(t, -5, in, 4)),
        ROW(Is(int32_t(uint32_t(715827883u * 4u))), CNV_B64StrFromBytes(nullptr, 0, in, kMax)),
        ROW(Is(0), CNV_B64StrFromBytes(t, 3, in, 1)),
        ROW(Is(1), CNV_BytesFromB64Str(nullptr, 0, "QQ==QUJD")),
        ROW(Is(4), CNV_B64Filter(t, "Q Q=\0=", 6)),

        ROW(Is(0), CNV_Utf8FromWide(nullptr, 0, nullptr)),
        ROW(Is(0), CNV_Utf8FromWide(t, 10, nullptr)),
        ROW(Is(-ENCODING_ERROR), CNV_Utf8FromWide(nullptr, 0, std::vector<uint16_t>{'a', 0xD800, 0}.data())),
        ROW(Is(-SHORT_BUF_ERROR), CNV_Utf8FromWide(t, 1, Wide("ab").data())),
        ROW(Is(2), CNV_Utf8FromWide(t, kMin, Wide("ab").data())),
        ROW(Is(3), CNV_Utf8FromWide(t, kMax, std::vector<uint16_t>{0x20AC, 0}.data())),
        ROW(Is(0), CNV_ShortPathName(nullptr, 0, nullptr)),
        ROW(Is(0), CNV_ShortPathName(t, 10, Wide("").data())),
        ROW(Is(-1), CNV_ShortPathName(t, 1000, Wide(Fs().missing).data())),
        ROW(Is(int32_t(Fs().existing.size() + 1)), CNV_ShortPathName(nullptr, 0, Wide(Fs().existing).data())),
        ROW(Is(-SHORT_BUF_ERROR), CNV_ShortPathName(t, 4, Wide(Fs().existing).data())),
        {"CNV_ShortPathName surrogate", [=] {
             std::vector<uint16_t> w = Wide(Fs().dir + "/x");
             w[w.size() - 2] = 0xDC00;
             return CNV_ShortPathName(t, 1000, w.data());
         }, AnyOf(-1, -ENCODING_ERROR)},
    };
    VARY(API_ErrorLookup, {t, 100, 6}, {{0, {{2, kMin}, {2, kMax}}}, {1, {{1, 1}}}});
    VARY(API_CompileTime, {t, 5}, {{20, {{0, nullptr}, {1, -1}}}});
    VARY(API_ModuleName, {t, 100, 0}, {{-BAD_FLAG_ERROR, {{2, 1}, {2, kMin}}}, {3, {{1, 3}}}});
    VARY(API_Platform, {t, 3}, {{5, {{0, nullptr}, {1, kMin}}}});
    VARY(CNV_HexStrFromBytes, {t, 10, in, 3}, {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, kMin}}}, {6, {{1, kMin}}}});
    VARY(CNV_BytesFromHexStr, {o, 10, "AB"},
         {{-BAD_PARAM_ERROR, {{2, nullptr}}}, {-INVALID_DATA_ERROR, {{2, "0xAB"}, {2, "AB\xC3\xA9"}, {2, "AB\x01"}}},
          {0, {{2, ""}}}});
    VARY(CNV_HexFilter, {t, "AB", 2}, {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, nullptr}, {2, kMin}}}, {0, {{2, 0}}}});
    VARY(CNV_B64StrFromBytes, {t, 10, in, 3}, {{-BAD_PARAM_ERROR, {{2, nullptr}, {3, kMin}}}});
    VARY(CNV_BytesFromB64Str, {o, 10, "QUJD"},
         {{-BAD_PARAM_ERROR, {{2, nullptr}}}, {-INVALID_DATA_ERROR, {{2, "QU!D"}, {2, "QU-_"}}}, {3, {{1, kMin}}},
          {0, {{1, 2}, {2, "Q"}}}});
    VARY(CNV_B64Filter, {t, "QQ", 2}, {{-BAD_PARAM_ERROR, {{0, nullptr}, {1, nullptr}, {2, -1}}}});
    return rows;
}

}  // namespace sweep
