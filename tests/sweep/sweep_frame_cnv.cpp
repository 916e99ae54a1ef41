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
    Buffers& b = Buf();
    char* t = b.text;
    uint8_t* o = b.out;
    const uint8_t* in = b.in;
    return {
        {"API_Version", [] { return API_Version(); }, Is(62201)},
        {"API_ErrorCode after a failure", [] { HASH_Length(9); return API_ErrorCode(); }, Is(BAD_FLAG_ERROR)},
        {"API_ErrorLookup null output", [] { return API_ErrorLookup(nullptr, 0, 6); }, Is(47)},
        {"API_ErrorLookup length INT32_MIN", [=] { return API_ErrorLookup(t, kMin, -6); }, Is(47)},
        {"API_ErrorLookup code INT32_MIN", [=] { return API_ErrorLookup(t, 100, kMin); }, Is(0)},
        {"API_ErrorLookup code INT32_MAX", [=] { return API_ErrorLookup(t, 100, kMax); }, Is(0)},
        {"API_ErrorLookup length INT32_MAX", [=] { return API_ErrorLookup(t, kMax, 6); }, Is(47)},
        {"API_ErrorLookup cut to 1", [=] { return API_ErrorLookup(t, 1, 6); }, Is(1)},
        {"API_CompileTime null", [] { return API_CompileTime(nullptr, 5); }, Is(20)},
        {"API_CompileTime negative length", [=] { return API_CompileTime(t, -1); }, Is(20)},
        {"API_CompileTime INT32_MAX", [=] { return API_CompileTime(t, kMax); }, Is(20)},
        {"API_CompileTime cut", [=] { return API_CompileTime(t, 5); }, Is(5)},
        {"API_ModuleName path query", [] { return API_ModuleName(nullptr, 0, 0); }, APositive()},
        {"API_ModuleName path cut to 3", [=] { return API_ModuleName(t, 3, 0); }, Is(3)},
        {"API_ModuleName platform query", [] { return API_ModuleName(nullptr, 0, 0x40); }, Is(5)},
        {"API_ModuleName option 1", [=] { return API_ModuleName(t, 100, 1); }, Is(-BAD_FLAG_ERROR)},
        {"API_ModuleName option INT32_MIN", [=] { return API_ModuleName(t, 100, kMin); }, Is(-BAD_FLAG_ERROR)},
        {"API_ModuleName 0xAB", [] { return API_ModuleName(nullptr, 0, 0xAB); }, Is(210)},
        {"API_Platform null", [] { return API_Platform(nullptr, 3); }, Is(5)},
        {"API_Platform INT32_MIN", [=] { return API_Platform(t, kMin); }, Is(5)},
        {"API_Platform cut to 2", [=] { return API_Platform(t, 2); }, Is(2)},
        {"API_ModuleInfo query", [] { return API_ModuleInfo(nullptr, 0, kMin); }, APositive()},
        {"API_ModuleInfo cut to 1", [=] { return API_ModuleInfo(t, 1, kMax); }, Is(1)},
        {"API_PowerUpTests any option", [] { return API_PowerUpTests(kMin); }, Is(0)},

        {"CNV_HexStrFromBytes null input", [=] { return CNV_HexStrFromBytes(t, 10, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexStrFromBytes negative length", [=] { return CNV_HexStrFromBytes(t, 10, in, -1); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexStrFromBytes INT32_MIN", [=] { return CNV_HexStrFromBytes(t, 10, in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexStrFromBytes query, output length INT32_MIN", [=] { return CNV_HexStrFromBytes(t, kMin, in, 3); }, Is(6)},
        // The doubled length wraps as a 32-bit count; nothing is read.
        {"CNV_HexStrFromBytes query of INT32_MAX bytes", [=] { return CNV_HexStrFromBytes(nullptr, 0, in, kMax); }, Is(-2)},
        {"CNV_HexStrFromBytes short output", [=] { return CNV_HexStrFromBytes(t, 3, in, 4); }, Is(2)},
        {"CNV_HexStrFromBytes output length 1", [=] { return CNV_HexStrFromBytes(t, 1, in, 4); }, Is(0)},
        {"CNV_BytesFromHexStr null input", [=] { return CNV_BytesFromHexStr(o, 10, nullptr); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_BytesFromHexStr letter", [=] { return CNV_BytesFromHexStr(o, 10, "0xAB"); }, Is(-INVALID_DATA_ERROR)},
        {"CNV_BytesFromHexStr high byte", [=] { return CNV_BytesFromHexStr(o, 10, "AB\xC3\xA9"); }, Is(-INVALID_DATA_ERROR)},
        {"CNV_BytesFromHexStr control character", [=] { return CNV_BytesFromHexStr(o, 10, "AB\x01"); }, Is(-INVALID_DATA_ERROR)},
        {"CNV_BytesFromHexStr query", [] { return CNV_BytesFromHexStr(nullptr, 0, "DE:AD BE-EF F"); }, Is(4)},
        {"CNV_BytesFromHexStr length INT32_MIN", [=] { return CNV_BytesFromHexStr(o, kMin, "ABC"); }, Is(1)},
        {"CNV_BytesFromHexStr capacity 1", [=] { return CNV_BytesFromHexStr(o, 1, "AABBCC"); }, Is(1)},
        {"CNV_BytesFromHexStr empty", [=] { return CNV_BytesFromHexStr(o, 10, ""); }, Is(0)},
        {"CNV_HexFilter null input", [=] { return CNV_HexFilter(t, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexFilter null output", [] { return CNV_HexFilter(nullptr, "AB", 2); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexFilter negative length", [=] { return CNV_HexFilter(t, "AB", -1); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexFilter INT32_MIN", [=] { return CNV_HexFilter(t, "AB", kMin); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_HexFilter NUL inside", [=] { return CNV_HexFilter(t, "A\0B-C", 5); }, Is(3)},
        {"CNV_HexFilter zero length", [=] { return CNV_HexFilter(t, "AB", 0); }, Is(0)},
        {"CNV_B64StrFromBytes null input", [=] { return CNV_B64StrFromBytes(t, 10, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_B64StrFromBytes INT32_MIN", [=] { return CNV_B64StrFromBytes(t, 10, in, kMin); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_B64StrFromBytes query", [=] { return CNV_B64StrFromBytes(t, -5, in, 4); }, Is(8)},
        {"CNV_B64StrFromBytes query of INT32_MAX bytes", [=] { return CNV_B64StrFromBytes(nullptr, 0, in, kMax); },
         Is(int32_t(uint32_t(715827883u * 4u)))},
        {"CNV_B64StrFromBytes room below a group", [=] { return CNV_B64StrFromBytes(t, 3, in, 1); }, Is(0)},
        {"CNV_BytesFromB64Str null input", [=] { return CNV_BytesFromB64Str(o, 10, nullptr); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_BytesFromB64Str bad character", [=] { return CNV_BytesFromB64Str(o, 10, "QU!D"); }, Is(-INVALID_DATA_ERROR)},
        {"CNV_BytesFromB64Str url alphabet", [=] { return CNV_BytesFromB64Str(o, 10, "QU-_"); }, Is(-INVALID_DATA_ERROR)},
        {"CNV_BytesFromB64Str query", [] { return CNV_BytesFromB64Str(nullptr, 0, "QQ==QUJD"); }, Is(1)},
        {"CNV_BytesFromB64Str length INT32_MIN", [=] { return CNV_BytesFromB64Str(o, kMin, "QUJD"); }, Is(3)},
        {"CNV_BytesFromB64Str capacity 2", [=] { return CNV_BytesFromB64Str(o, 2, "QUJD"); }, Is(0)},
        {"CNV_BytesFromB64Str one character", [=] { return CNV_BytesFromB64Str(o, 10, "Q"); }, Is(0)},
        {"CNV_B64Filter null input", [=] { return CNV_B64Filter(t, nullptr, 3); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_B64Filter null output", [] { return CNV_B64Filter(nullptr, "QQ", 2); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_B64Filter negative length", [=] { return CNV_B64Filter(t, "QQ", -1); }, Is(-BAD_PARAM_ERROR)},
        {"CNV_B64Filter keeps padding", [=] { return CNV_B64Filter(t, "Q Q=\0=", 6); }, Is(4)},

        {"CNV_Utf8FromWide null text", [] { return CNV_Utf8FromWide(nullptr, 0, nullptr); }, Is(0)},
        {"CNV_Utf8FromWide null text, real output", [=] { return CNV_Utf8FromWide(t, 10, nullptr); }, Is(0)},
        {"CNV_Utf8FromWide surrogate in a query", [] {
             std::vector<uint16_t> w = {'a', 0xD800, 0};
             return CNV_Utf8FromWide(nullptr, 0, w.data());
         }, Is(-ENCODING_ERROR)},
        {"CNV_Utf8FromWide short output", [=] { return CNV_Utf8FromWide(t, 1, Wide("ab").data()); }, Is(-SHORT_BUF_ERROR)},
        {"CNV_Utf8FromWide length INT32_MIN", [=] { return CNV_Utf8FromWide(t, kMin, Wide("ab").data()); }, Is(2)},
        {"CNV_Utf8FromWide length INT32_MAX", [=] {
             std::vector<uint16_t> w = {0x20AC, 0};
             return CNV_Utf8FromWide(t, kMax, w.data());
         }, Is(3)},
        {"CNV_ShortPathName null path", [] { return CNV_ShortPathName(nullptr, 0, nullptr); }, Is(0)},
        {"CNV_ShortPathName empty path", [=] { return CNV_ShortPathName(t, 10, Wide("").data()); }, Is(0)},
        {"CNV_ShortPathName missing file", [=] { return CNV_ShortPathName(t, 1000, Wide(Fs().missing).data()); }, Is(-1)},
        {"CNV_ShortPathName query counts the NUL", [] {
             return CNV_ShortPathName(nullptr, 0, Wide(Fs().existing).data());
         }, Is(int32_t(Fs().existing.size() + 1))},
        {"CNV_ShortPathName short output", [=] { return CNV_ShortPathName(t, 4, Wide(Fs().existing).data()); },
         Is(-SHORT_BUF_ERROR)},
        {"CNV_ShortPathName surrogate", [=] {
             std::vector<uint16_t> w = Wide(Fs().dir + "/x");
             w[w.size() - 2] = 0xDC00;
             return CNV_ShortPathName(t, 1000, w.data());
         }, AnyOf({-1, -ENCODING_ERROR})},
    };
}

}  // namespace sweep
