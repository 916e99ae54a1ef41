// MAC_HexFromHex on any texts and option: hex texts give the code that
// MAC_HexFromBytes gives for their bytes, anything else a defined failure.
#include <algorithm>

#include "fuzz_support.h"

namespace {
const int32_t kOptions[] = {OPT_HMAC_SHA1,     OPT_HMAC_MD5,       OPT_HMAC_SHA256,  OPT_HMAC_SHA384,
                            OPT_HMAC_SHA512,   OPT_HMAC_SHA224,    OPT_HMAC_RMD160,  OPT_HMAC_SHA3_224,
                            OPT_HMAC_SHA3_256, OPT_HMAC_SHA3_384,  OPT_HMAC_SHA3_512, OPT_CMAC_TDEA,
                            OPT_CMAC_AES128,   OPT_CMAC_AES192,    OPT_CMAC_AES256,  OPT_MAC_POLY1305,
                            OPT_KMAC_128,      OPT_KMAC_256,       2,                0x104,
                            0x2FF,             0x13};

bool IsFailure(int32_t r) {
    return r == -BAD_FORMAT_ERROR || r == -BAD_KEY_LEN_ERROR || r == -BAD_FLAG_ERROR || r == -SHORT_BUF_ERROR ||
           r == -BAD_BLK_LEN_ERROR;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const int32_t options = kOptions[r.Byte() % (sizeof kOptions / sizeof kOptions[0])];
    const size_t room = r.Length(160);
    const size_t keyDigits = r.Length(140);
    std::vector<uint8_t> keyBytes = r.Bytes(keyDigits);
    const std::string keyHex(keyBytes.begin(), std::find(keyBytes.begin(), keyBytes.end(), uint8_t(0)));
    const std::string messageHex = r.Text();

    Exact out{room + 1};
    const int32_t got = MAC_HexFromHex(out.text(), int32_t(room), messageHex.c_str(), keyHex.c_str(), options);
    const bool kmac = options == OPT_KMAC_128 || options == OPT_KMAC_256;
    const bool usable = IsStrictHex(keyHex) && IsStrictHex(messageHex) && (kmac || !keyHex.empty());
    if (!usable) {
        FUZZ_CHECK(IsFailure(got));
        return 0;
    }
    const std::vector<uint8_t> key = DecodeStrictHex(keyHex), message = DecodeStrictHex(messageHex);
    Exact expected{room + 1};
    const uint8_t anyKey = 0;  // an empty key still needs a pointer
    const int32_t want = MAC_HexFromBytes(expected.text(), int32_t(room), Ptr(message), int32_t(message.size()),
                                          key.empty() ? &anyKey : Ptr(key), int32_t(key.size()), options);
    FUZZ_CHECK(got == want);
    if (got > 0 && room > 0) FUZZ_CHECK(std::memcmp(out.text(), expected.text(), size_t(got) + 1) == 0);
    return 0;
}
