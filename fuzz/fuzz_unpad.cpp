// PAD_UnpadBytes and PAD_UnpadHex on any block: a defined code, a result
// that fits its buffer, and a padding that PAD_BytesBlock regenerates.
#include <algorithm>

#include "fuzz_support.h"

namespace {
const int32_t kSchemes[] = {OPT_PAD_PKCS5, OPT_PAD_ONEANDZEROES, OPT_PAD_ANSIX923, OPT_PAD_W3C, 0, OPT_PAD_NONE};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t choice = r.Byte();
    const int32_t block = choice & 1 ? 16 : 8;
    const int32_t scheme = kSchemes[(choice >> 1) % 6];
    const size_t room = r.Length(64);
    const std::vector<uint8_t> input = r.Rest();
    const int32_t n = int32_t(input.size());

    Exact out{room};
    const int32_t got = PAD_UnpadBytes(out.data(), int32_t(room), Ptr(input), n, block, scheme);
    Exact ample{input.size()};
    const int32_t length = PAD_UnpadBytes(ample.data(), n, Ptr(input), n, block, scheme);
    if (n < block || n % block != 0) {
        FUZZ_CHECK(got == -BAD_LENGTH_ERROR && length == -BAD_LENGTH_ERROR);
        return 0;
    }
    if (length < 0) {
        FUZZ_CHECK(length == -DECRYPT_ERROR && got == length);
    } else {
        // One to a block of padding came off.
        FUZZ_CHECK(length < n && length >= n - block);
        FUZZ_CHECK(std::memcmp(ample.data(), Ptr(input), size_t(length)) == 0);
        FUZZ_CHECK(got == (size_t(length) <= room ? length : -SHORT_BUF_ERROR));
        // The scheme rebuilds the very padding it accepted, but W3C, which
        // reads only the last byte.
        if (scheme != OPT_PAD_W3C) {
            Exact again{input.size()};
            FUZZ_CHECK(PAD_BytesBlock(again.data(), n, ample.data(), length, block, scheme) == n);
            FUZZ_CHECK(std::memcmp(again.data(), Ptr(input), input.size()) == 0);
        }
    }

    // The hex form decides alike, on the same bytes.
    Exact hex{2 * input.size() + 1};
    CNV_HexStrFromBytes(hex.text(), int32_t(2 * input.size()), Ptr(input), n);
    if (n == 0) return 0;
    const int32_t hexQuery = PAD_UnpadHex(hex.text() + 0, 0, hex.text(), block, scheme);
    FUZZ_CHECK(hexQuery == (length < 0 ? length : 2 * length));
    if (length >= 0) {
        Exact text{room + 1};
        const int32_t written = PAD_UnpadHex(text.text(), int32_t(room), hex.text(), block, scheme);
        if (room == 0) {
            FUZZ_CHECK(written == 2 * length);
        } else if (size_t(2 * length) > room) {
            FUZZ_CHECK(written == -SHORT_BUF_ERROR);
        } else {
            FUZZ_CHECK(written == 2 * length && text.text()[written] == '\0');
            FUZZ_CHECK(std::memcmp(text.text(), hex.text(), size_t(written)) == 0);
        }
    }
    return 0;
}
