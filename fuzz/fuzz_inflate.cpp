// ZLIB_Inflate and COMPR_Uncompress of any data: the query equals the real
// count, a buffer one byte short is refused, and compressed data restores.
#include "fuzz_support.h"

namespace {

using Restore = int32_t (*)(uint8_t* out, int32_t outLength, const uint8_t* in, int32_t inLength);

int32_t Inflate(uint8_t* out, int32_t outLength, const uint8_t* in, int32_t inLength) {
    return ZLIB_Inflate(out, outLength, in, inLength);
}
int32_t UncompressZlib(uint8_t* out, int32_t outLength, const uint8_t* in, int32_t inLength) {
    return COMPR_Uncompress(out, outLength, in, inLength, OPT_COMPR_ZLIB);
}
int32_t UncompressZstd(uint8_t* out, int32_t outLength, const uint8_t* in, int32_t inLength) {
    return COMPR_Uncompress(out, outLength, in, inLength, OPT_COMPR_ZSTD);
}

bool IsDataFailure(int32_t r) {
    return r == -INVALID_DATA_ERROR || r == -BAD_FORMAT_ERROR || r == -ZLIB_COMPR_ERROR || r == -SHORT_BUF_ERROR ||
           r == -MEMORY_ERROR || r == -INTERNAL_ERROR;
}

void Restores(Restore restore, const std::vector<uint8_t>& input) {
    const int32_t n = int32_t(input.size());
    const int32_t needed = restore(nullptr, 0, Ptr(input), n);
    if (needed < 0) {
        FUZZ_CHECK(IsDataFailure(needed));
        return;
    }
    if (needed > (1 << 24)) return;  // a legal bomb: the count is what matters
    Exact out{size_t(needed)};
    const int32_t got = restore(out.data(), needed, Ptr(input), n);
    // zlib's one-shot also refuses trailing or truncated data the counting
    // pass stopped short of; a success must agree with the query.
    if (got >= 0) FUZZ_CHECK(got == needed);
    else FUZZ_CHECK(IsDataFailure(got));
    if (got > 0) {
        Exact shorter{size_t(got - 1)};
        FUZZ_CHECK(restore(shorter.data(), got - 1, Ptr(input), n) == (got == 1 ? got : -SHORT_BUF_ERROR));
    }
}

void RoundTrip(int32_t options, const std::vector<uint8_t>& input) {
    const int32_t n = int32_t(input.size());
    const int32_t needed = COMPR_Compress(nullptr, 0, Ptr(input), n, options);
    FUZZ_CHECK(needed > 0);
    Exact packed{size_t(needed)};
    FUZZ_CHECK(COMPR_Compress(packed.data(), needed, Ptr(input), n, options) == needed);
    Exact back{input.size()};
    FUZZ_CHECK(COMPR_Uncompress(back.data(), n, packed.data(), needed, options) == n);
    FUZZ_CHECK(n == 0 || std::memcmp(back.data(), Ptr(input), input.size()) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t choice = r.Byte();
    std::vector<uint8_t> input = r.Rest();
    switch (choice % 3) {
        case 0: Restores(Inflate, input); break;
        case 1: Restores(UncompressZlib, input); break;
        default:
            // A frame may claim up to 32768 times its size; small inputs keep
            // the claims small.
            if (input.size() > 512) input.resize(512);
            Restores(UncompressZstd, input);
            break;
    }
    RoundTrip(choice & 0x80 ? OPT_COMPR_ZSTD : OPT_COMPR_ZLIB, input);
    return 0;
}
