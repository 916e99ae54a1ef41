// CIPHER_KeyUnwrap of any data: a wrong integrity value gives -1 and zeros,
// the query tells the real length, and a wrapped key unwraps to itself.
#include "fuzz_support.h"

namespace {
const uint8_t kKek[32] = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F,
                          0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F};
const int32_t kCiphers[] = {OPT_CIPHER_TDEA, OPT_CIPHER_AES128, OPT_CIPHER_AES192, OPT_CIPHER_AES256};
const int32_t kKekLengths[] = {24, 16, 24, 32};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t choice = r.Byte();
    const int32_t options = kCiphers[choice & 3] | (choice & 0xF0) << 4;  // only the cipher bits count
    const int32_t kekLength = kKekLengths[choice & 3];
    const bool tdea = (choice & 3) == 0;
    const size_t room = r.Length(128);
    const std::vector<uint8_t> input = r.Rest();
    const int32_t n = int32_t(input.size());

    const int32_t needed = CIPHER_KeyUnwrap(nullptr, 0, Ptr(input), n, kKek, kekLength, options);
    const bool lengthOk = tdea ? n == 40 : n >= 24 && n % 8 == 0;
    if (!lengthOk) {
        FUZZ_CHECK(needed == -BAD_LENGTH_ERROR);
        return 0;
    }
    FUZZ_CHECK(needed == (tdea ? 24 : n - 8));
    Exact out{room};
    const int32_t got = CIPHER_KeyUnwrap(out.data(), int32_t(room), Ptr(input), n, kKek, kekLength, options);
    if (room == 0) {
        FUZZ_CHECK(got == needed);
    } else if (room < size_t(needed)) {
        FUZZ_CHECK(got == -SHORT_BUF_ERROR);
    } else {
        // Data not wrapped under this key fails its check, and the buffer is
        // cleared over its whole length (the seeds hold genuine wraps).
        FUZZ_CHECK(got == -1 || got == needed);
        if (got == -1) {
            for (size_t i = 0; i < room; ++i) FUZZ_CHECK(out.data()[i] == 0);
        }
    }

    // Wrap the input as key material, unwrap it, then spoil one byte.
    const std::vector<uint8_t> key(input.begin(), input.begin() + (tdea ? 24 : n - 8));
    const int32_t keyLength = int32_t(key.size());
    const int32_t wrappedLength = CIPHER_KeyWrap(nullptr, 0, Ptr(key), keyLength, kKek, kekLength, options);
    FUZZ_CHECK(wrappedLength == (tdea ? 40 : keyLength + 8));
    Exact wrapped{size_t(wrappedLength)};
    FUZZ_CHECK(CIPHER_KeyWrap(wrapped.data(), wrappedLength, Ptr(key), keyLength, kKek, kekLength, options) ==
               wrappedLength);
    Exact back{key.size()};
    FUZZ_CHECK(CIPHER_KeyUnwrap(back.data(), keyLength, wrapped.data(), wrappedLength, kKek, kekLength, options) ==
               keyLength);
    FUZZ_CHECK(std::memcmp(back.data(), Ptr(key), key.size()) == 0);
    wrapped.data()[choice % wrappedLength] ^= 0x10;
    FUZZ_CHECK(CIPHER_KeyUnwrap(back.data(), keyLength, wrapped.data(), wrappedLength, kKek, kekLength, options) == -1);
    return 0;
}
