#include "aead/ascon.h"

#include <cstring>

#include "util/bytes.h"
#include "util/ct.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
struct AscState {
    uint64_t x[5];
};

// A run of n rounds uses the last n of the twelve constants.
constexpr uint8_t kRoundConstants[12] = {0xf0, 0xe1, 0xd2, 0xc3, 0xb4, 0xa5, 0x96, 0x87, 0x78, 0x69, 0x5a, 0x4b};

void Permute(AscState& s, int rounds) {
    uint64_t x0 = s.x[0], x1 = s.x[1], x2 = s.x[2], x3 = s.x[3], x4 = s.x[4];
    for (int r = 12 - rounds; r < 12; ++r) {
        x2 ^= kRoundConstants[r];
        // Substitution layer, bitsliced.
        x0 ^= x4;
        x4 ^= x3;
        x2 ^= x1;
        uint64_t t0 = ~x0 & x1, t1 = ~x1 & x2, t2 = ~x2 & x3, t3 = ~x3 & x4, t4 = ~x4 & x0;
        x0 ^= t1;
        x1 ^= t2;
        x2 ^= t3;
        x3 ^= t4;
        x4 ^= t0;
        x1 ^= x0;
        x0 ^= x4;
        x3 ^= x2;
        x2 = ~x2;
        // Linear layer.
        x0 ^= Rotr64(x0, 19) ^ Rotr64(x0, 28);
        x1 ^= Rotr64(x1, 61) ^ Rotr64(x1, 39);
        x2 ^= Rotr64(x2, 1) ^ Rotr64(x2, 6);
        x3 ^= Rotr64(x3, 10) ^ Rotr64(x3, 17);
        x4 ^= Rotr64(x4, 7) ^ Rotr64(x4, 41);
    }
    s.x[0] = x0;
    s.x[1] = x1;
    s.x[2] = x2;
    s.x[3] = x3;
    s.x[4] = x4;
}

// Byte i of the rate part: word i / 8, big-endian within the word.
inline int Shift(size_t i) { return int(56 - 8 * (i & 7)); }
inline void XorByte(AscState& s, size_t i, uint8_t b) { s.x[i >> 3] ^= uint64_t(b) << Shift(i); }
inline uint8_t GetByte(const AscState& s, size_t i) { return uint8_t(s.x[i >> 3] >> Shift(i)); }
inline void SetByte(AscState& s, size_t i, uint8_t b) {
    s.x[i >> 3] = (s.x[i >> 3] & ~(uint64_t(0xff) << Shift(i))) | (uint64_t(b) << Shift(i));
}

struct AeadParams {
    uint64_t iv;
    size_t rate;
    int middleRounds;
};
constexpr AeadParams kAeadParams[2] = {{0x80400c0600000000ull, 8, 6}, {0x80800c0800000000ull, 16, 8}};

struct HashParams {
    uint64_t iv;
    int middleRounds;
};
constexpr HashParams kHashParams[2] = {{0x00400c0000000100ull, 12}, {0x00400c0400000100ull, 8}};
constexpr HashParams kXofParams[2] = {{0x00400c0000000000ull, 12}, {0x00400c0400000000ull, 8}};

void AeadStart(AscState& s, const AeadParams& p, const uint8_t* key, const uint8_t* nonce, const uint8_t* aad,
               uint64_t aadLength) {
    const uint64_t k0 = Load64Be(key), k1 = Load64Be(key + 8);
    s.x[0] = p.iv;
    s.x[1] = k0;
    s.x[2] = k1;
    s.x[3] = Load64Be(nonce);
    s.x[4] = Load64Be(nonce + 8);
    Permute(s, 12);
    s.x[3] ^= k0;
    s.x[4] ^= k1;
    if (aadLength != 0) {
        while (aadLength >= p.rate) {
            for (size_t w = 0; w < p.rate / 8; ++w) s.x[w] ^= Load64Be(aad + 8 * w);
            Permute(s, p.middleRounds);
            aad += p.rate;
            aadLength -= p.rate;
        }
        for (size_t i = 0; i < aadLength; ++i) XorByte(s, i, aad[i]);
        XorByte(s, size_t(aadLength), 0x80);
        Permute(s, p.middleRounds);
    }
    s.x[4] ^= 1;  // domain separation, with or without AAD
}

void AeadFinish(AscState& s, const AeadParams& p, const uint8_t* key, uint8_t tag[16]) {
    const uint64_t k0 = Load64Be(key), k1 = Load64Be(key + 8);
    const size_t w = p.rate / 8;
    s.x[w] ^= k0;
    s.x[w + 1] ^= k1;
    Permute(s, 12);
    Store64Be(tag, s.x[3] ^ k0);
    Store64Be(tag + 8, s.x[4] ^ k1);
}

void HashAbsorb(AscState& s, const HashParams& p, const uint8_t* message, uint64_t length) {
    s.x[0] = p.iv;
    s.x[1] = s.x[2] = s.x[3] = s.x[4] = 0;
    Permute(s, 12);
    while (length >= 8) {
        s.x[0] ^= Load64Be(message);
        Permute(s, p.middleRounds);
        message += 8;
        length -= 8;
    }
    for (size_t i = 0; i < length; ++i) XorByte(s, i, message[i]);
    XorByte(s, size_t(length), 0x80);
    Permute(s, 12);
}

void WriteLeading(uint8_t* out, uint64_t word, size_t n) {
    for (size_t i = 0; i < n; ++i) out[i] = uint8_t(word >> (56 - 8 * i));
}
}  // namespace

int32_t AsconHash(uint8_t* output, const uint8_t* message, uint64_t length, int flag) {
    const HashParams& p = kHashParams[flag ? 1 : 0];
    AscState s;
    HashAbsorb(s, p, message, length);
    for (int i = 0; i < 3; ++i) {
        Store64Be(output + 8 * i, s.x[0]);
        Permute(s, p.middleRounds);
    }
    Store64Be(output + 24, s.x[0]);
    return 0;
}

int32_t AsconXof(uint8_t* output, uint64_t outputLength, const uint8_t* message, uint64_t length, int flag) {
    const HashParams& p = kXofParams[flag ? 1 : 0];
    AscState s;
    HashAbsorb(s, p, message, length);
    while (outputLength > 8) {
        Store64Be(output, s.x[0]);
        Permute(s, p.middleRounds);
        output += 8;
        outputLength -= 8;
    }
    WriteLeading(output, s.x[0], size_t(outputLength));
    return 0;
}

int32_t AsconSeal(uint8_t* out, uint64_t* outLength, const uint8_t* input, uint64_t inputLength,
                  const uint8_t* aad, uint64_t aadLength, const uint8_t* nonce, const uint8_t* key, int flag) {
    const AeadParams& p = kAeadParams[flag ? 1 : 0];
    AscState s;
    AeadStart(s, p, key, nonce, aad, aadLength);
    *outLength = inputLength + 16;
    while (inputLength >= p.rate) {
        for (size_t w = 0; w < p.rate / 8; ++w) {
            s.x[w] ^= Load64Be(input + 8 * w);
            Store64Be(out + 8 * w, s.x[w]);
        }
        Permute(s, p.middleRounds);
        input += p.rate;
        out += p.rate;
        inputLength -= p.rate;
    }
    for (size_t i = 0; i < inputLength; ++i) {
        XorByte(s, i, input[i]);
        out[i] = GetByte(s, i);
    }
    XorByte(s, size_t(inputLength), 0x80);
    AeadFinish(s, p, key, out + inputLength);
    WipeObject(s);
    return 0;
}

int32_t AsconOpen(uint8_t* out, uint64_t* outLength, const uint8_t* input, uint64_t inputLength,
                  const uint8_t* aad, uint64_t aadLength, const uint8_t* nonce, const uint8_t* key, int flag) {
    const AeadParams& p = kAeadParams[flag ? 1 : 0];
    AscState s;
    AeadStart(s, p, key, nonce, aad, aadLength);
    uint64_t textLength = inputLength - 16;
    *outLength = textLength;
    while (textLength >= p.rate) {
        for (size_t w = 0; w < p.rate / 8; ++w) {
            uint64_t c = Load64Be(input + 8 * w);  // read first: out may be input
            Store64Be(out + 8 * w, s.x[w] ^ c);
            s.x[w] = c;
        }
        Permute(s, p.middleRounds);
        input += p.rate;
        out += p.rate;
        textLength -= p.rate;
    }
    for (size_t i = 0; i < textLength; ++i) {
        uint8_t c = input[i];
        out[i] = uint8_t(GetByte(s, i) ^ c);
        SetByte(s, i, c);
    }
    XorByte(s, size_t(textLength), 0x80);
    uint8_t expected[16];
    AeadFinish(s, p, key, expected);
    int equal = CtEqual(expected, input + textLength, 16);
    SecureWipe(expected, sizeof expected);
    WipeObject(s);
    return equal ? 0 : -1;
}

int32_t AsconAeadSeal(uint8_t* out, const uint8_t* input, int32_t inputLength, const uint8_t* key,
                      const uint8_t* nonce, const uint8_t* aad, int32_t aadLength, int32_t options) {
    int32_t number = options & 0xff;
    if (number != OPT_AEAD_ASCON_128 && number != OPT_AEAD_ASCON_128A) return -BAD_FLAG_ERROR;
    uint64_t written;
    return AsconSeal(out, &written, input, uint64_t(int64_t(inputLength)), aad, uint64_t(int64_t(aadLength)),
                     nonce, key, number == OPT_AEAD_ASCON_128A);
}

int32_t AsconAeadOpen(uint8_t* out, int32_t outputLength, const uint8_t* input, int32_t inputLength,
                      const uint8_t* key, const uint8_t* nonce, const uint8_t* aad, int32_t aadLength,
                      int32_t options) {
    int32_t number = options & 0xff;
    int32_t status = -1;
    if ((number == OPT_AEAD_ASCON_128 || number == OPT_AEAD_ASCON_128A) && uint64_t(int64_t(inputLength)) >= 16) {
        uint64_t written;
        status = AsconOpen(out, &written, input, uint64_t(int64_t(inputLength)), aad,
                           uint64_t(int64_t(aadLength)), nonce, key, number == OPT_AEAD_ASCON_128A);
    }
    if (status == 0) return 0;
    if (out != nullptr && outputLength > 0) SecureWipe(out, size_t(outputLength));
    return -AUTH_FAIL_ERROR;
}
