// CNV_ decoders, filters and encoders: a query gives exactly what the real
// call writes, a short buffer gets a prefix of it and nothing past its end,
// and encoded text decodes back.
#include <algorithm>

#include "fuzz_support.h"

namespace {

void HexDecoder(const std::string& text, size_t room) {
    const int32_t needed = CNV_BytesFromHexStr(nullptr, 0, text.c_str());
    if (needed < 0) {
        FUZZ_CHECK(needed == -INVALID_DATA_ERROR);
        Exact out{room};
        FUZZ_CHECK(CNV_BytesFromHexStr(out.data(), int32_t(room), text.c_str()) == needed);
        return;
    }
    FUZZ_CHECK(size_t(needed) <= (text.size() + 1) / 2);
    Exact whole{size_t(needed)};
    FUZZ_CHECK(CNV_BytesFromHexStr(whole.data(), needed, text.c_str()) == needed);
    Exact cut{room};
    const int32_t got = CNV_BytesFromHexStr(cut.data(), int32_t(room), text.c_str());
    FUZZ_CHECK(got == (room == 0 ? needed : std::min(needed, int32_t(room))));
    if (room != 0) FUZZ_CHECK(std::memcmp(cut.data(), whole.data(), size_t(got)) == 0);
}

void Base64Decoder(const std::string& text, size_t room) {
    const int32_t needed = CNV_BytesFromB64Str(nullptr, 0, text.c_str());
    if (needed < 0) {
        FUZZ_CHECK(needed == -INVALID_DATA_ERROR);
        return;
    }
    FUZZ_CHECK(size_t(needed) <= (text.size() + 3) / 4 * 3);
    Exact whole{size_t(needed)};
    FUZZ_CHECK(CNV_BytesFromB64Str(whole.data(), needed, text.c_str()) == needed);
    // A short buffer drops whole groups: what it gets is a prefix.
    Exact cut{room};
    const int32_t got = CNV_BytesFromB64Str(cut.data(), int32_t(room), text.c_str());
    if (room == 0) {
        FUZZ_CHECK(got == needed);
    } else {
        FUZZ_CHECK(got >= 0 && got <= std::min(needed, int32_t(room)));
        FUZZ_CHECK(std::memcmp(cut.data(), whole.data(), size_t(got)) == 0);
    }
}

void Filters(const std::vector<uint8_t>& raw) {
    const char* input = reinterpret_cast<const char*>(Ptr(raw));
    for (int base64 = 0; base64 < 2; ++base64) {
        Exact out{raw.size() + 1};
        const int32_t kept = base64 ? CNV_B64Filter(out.text(), input, int32_t(raw.size()))
                                    : CNV_HexFilter(out.text(), input, int32_t(raw.size()));
        FUZZ_CHECK(kept >= 0 && size_t(kept) <= raw.size());
        FUZZ_CHECK(out.text()[kept] == '\0');
        // What a filter keeps, the decoder takes.
        if (base64) FUZZ_CHECK(CNV_BytesFromB64Str(nullptr, 0, out.text()) >= 0);
        else FUZZ_CHECK(CNV_BytesFromHexStr(nullptr, 0, out.text()) == kept / 2);
    }
}

void Encoders(const std::vector<uint8_t>& raw, size_t room) {
    const int32_t n = int32_t(raw.size());
    FUZZ_CHECK(CNV_HexStrFromBytes(nullptr, 0, Ptr(raw), n) == 2 * n);
    Exact hex{room + 1};
    const int32_t hexLength = CNV_HexStrFromBytes(hex.text(), int32_t(room), Ptr(raw), n);
    if (room == 0) {
        FUZZ_CHECK(hexLength == 2 * n);
    } else {
        FUZZ_CHECK(hexLength == 2 * std::min(n, int32_t(room / 2)));
        FUZZ_CHECK(hex.text()[hexLength] == '\0');
        Exact back{size_t(hexLength / 2)};
        FUZZ_CHECK(CNV_BytesFromHexStr(back.data(), hexLength / 2, hex.text()) == hexLength / 2);
        FUZZ_CHECK(std::memcmp(back.data(), Ptr(raw), back.size()) == 0);
    }
    const int32_t b64Needed = CNV_B64StrFromBytes(nullptr, 0, Ptr(raw), n);
    FUZZ_CHECK(b64Needed == (n + 2) / 3 * 4);
    if (n == 0) return;  // a length of 0 only asks
    Exact b64{size_t(b64Needed) + 1};
    FUZZ_CHECK(CNV_B64StrFromBytes(b64.text(), b64Needed, Ptr(raw), n) == b64Needed);
    FUZZ_CHECK(b64.text()[b64Needed] == '\0');
    Exact back{raw.size()};
    FUZZ_CHECK(CNV_BytesFromB64Str(back.data(), n, b64.text()) == n);
    FUZZ_CHECK(std::memcmp(back.data(), Ptr(raw), raw.size()) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const size_t room = r.Length(400);
    const std::vector<uint8_t> raw = r.Rest();
    const std::string text(raw.begin(), std::find(raw.begin(), raw.end(), uint8_t(0)));
    HexDecoder(text, room);
    Base64Decoder(text, room);
    Filters(raw);
    Encoders(raw, room);
    return 0;
}
