// HASH_HexFromHex on any text and option: odd text fails, other text that is
// not hex digests as the empty message, and hex digests as its bytes do.
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t low = r.Byte(), flags = r.Byte();
    const int32_t options = int32_t(low) | (flags & 1 ? OPT_HASH_DOUBLE : 0) | (flags & 2 ? OPT_HASH_TEXT_MODE : 0);
    const size_t room = r.Length(140);
    const std::string text = r.Text();

    Exact out{room + 1};
    const int32_t got = HASH_HexFromHex(out.text(), int32_t(room), text.c_str(), options);
    if (text.size() % 2 != 0) {
        FUZZ_CHECK(got == -INVALID_DATA_ERROR);
        return 0;
    }
    const std::vector<uint8_t> message = IsStrictHex(text) ? DecodeStrictHex(text) : std::vector<uint8_t>();
    Exact expected{room + 1};
    const int32_t want = HASH_HexFromBytes(expected.text(), int32_t(room), Ptr(message), int32_t(message.size()),
                                           options);
    FUZZ_CHECK(got == want);
    if (got > 0 && room > 0) {
        FUZZ_CHECK(std::memcmp(out.text(), expected.text(), size_t(got) + 1) == 0);
        FUZZ_CHECK(size_t(got) <= room && got % 2 == 0);
    }
    return 0;
}
