// CIPHER_DecryptBytes of any data under each cipher, mode and padding: the
// query, a buffer as long as its answer and a shorter one agree, and a
// decrypted message encrypts back to the same bytes.
#include <algorithm>

#include "fuzz_support.h"

namespace {
const uint8_t kKey[32] = {0x60, 0x3d, 0xeb, 0x10, 0x15, 0xca, 0x71, 0xbe, 0x2b, 0x73, 0xae,
                          0xf0, 0x85, 0x7d, 0x77, 0x81, 0x1f, 0x35, 0x2c, 0x07, 0x3b, 0x61,
                          0x08, 0xd7, 0x2d, 0x98, 0x10, 0xa3, 0x09, 0x14, 0xdf, 0xf4};
const uint8_t kIv[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
const int32_t kCiphers[] = {OPT_CIPHER_TDEA, OPT_CIPHER_AES128, OPT_CIPHER_AES192, OPT_CIPHER_AES256};
const int32_t kKeyLengths[] = {24, 16, 24, 32};
const int32_t kModes[] = {OPT_MODE_ECB, OPT_MODE_CBC, OPT_MODE_OFB, OPT_MODE_CFB, OPT_MODE_CTR};
const int32_t kPaddings[] = {OPT_PAD_DEFAULT, OPT_PAD_PKCS5, OPT_PAD_ONEANDZEROES, OPT_PAD_ANSIX923, OPT_PAD_W3C,
                             OPT_PAD_NONE};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t a = r.Byte(), b = r.Byte();
    const int c = a & 3;
    const int32_t mode = kModes[(a >> 2) % 5];
    const int32_t padding = kPaddings[b % 6];
    const bool prefix = (b & 0x80) != 0;
    const int32_t options = kCiphers[c] | mode | padding | (prefix ? OPT_PREFIX_IV : 0);
    const int32_t keyLength = kKeyLengths[c];
    const int32_t block = c == 0 ? 8 : 16;
    const size_t room = r.Length(300);
    const std::vector<uint8_t> input = r.Rest();
    const int32_t n = int32_t(input.size());
    const bool padded = (mode == OPT_MODE_ECB || mode == OPT_MODE_CBC) && padding != OPT_PAD_NONE;

    const int32_t needed = CIPHER_DecryptBytes(nullptr, 0, Ptr(input), n, kKey, keyLength, kIv, block, nullptr, options);
    Exact out{room};
    const int32_t got = CIPHER_DecryptBytes(out.data(), int32_t(room), Ptr(input), n, kKey, keyLength, kIv, block,
                                            nullptr, options);
    if (needed < 0) {
        FUZZ_CHECK(needed == -BAD_LENGTH_ERROR || needed == -DECRYPT_ERROR);
        FUZZ_CHECK(got == needed);
        return 0;
    }
    const int32_t body = n - (prefix ? block : 0);
    FUZZ_CHECK(needed <= body && (padded ? needed > body - 1 - block : needed == body));
    if (room == 0) {
        FUZZ_CHECK(got == needed);
    } else if (size_t(needed) > room) {
        FUZZ_CHECK(got == -SHORT_BUF_ERROR);
    } else {
        // Unpadded ECB and CBC learn of a part block only when they run.
        FUZZ_CHECK(got == needed || (!padded && got == -BAD_LENGTH_ERROR));
    }
    Exact exact{size_t(needed)};
    const int32_t plain = CIPHER_DecryptBytes(exact.data(), needed, Ptr(input), n, kKey, keyLength, kIv, block,
                                              nullptr, options);
    if (plain < 0) {
        FUZZ_CHECK(!padded && plain == -BAD_LENGTH_ERROR);
        return 0;
    }
    FUZZ_CHECK(plain == needed);
    if (needed > 0 && room >= size_t(needed)) FUZZ_CHECK(std::memcmp(out.data(), exact.data(), size_t(needed)) == 0);

    // Encrypting the plaintext gives the input back, but for W3C padding,
    // whose filler bytes are never read.
    const bool w3c = padded && padding == OPT_PAD_W3C;
    if (w3c) return 0;
    const uint8_t* iv = prefix ? Ptr(input) : kIv;
    Exact again{input.size()};
    const int32_t written = CIPHER_EncryptBytes(again.data(), n, exact.data(), plain, kKey, keyLength, iv, block,
                                                nullptr, options);
    FUZZ_CHECK(written == n);
    FUZZ_CHECK(std::memcmp(again.data(), Ptr(input), input.size()) == 0);
    return 0;
}
