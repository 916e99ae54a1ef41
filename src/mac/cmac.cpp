// CMAC (SP 800-38B): subkeys K1 and K2 by doubling E(0) in GF(2^b), CBC
// from a zero chain over all but the last block, and the last block either
// whole XOR K1 or padded with 0x80 0... XOR K2. The cipher runs through the
// mode engine in ECB, one block in place at a time. Not constant-time beyond
// what the block cipher is; every key-dependent value is wiped.
#include "mac/cmac.h"

#include <cstring>

#include "block/block.h"
#include "mac/mac.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
struct AesCipher {
    using Context = AesContext;
    static constexpr size_t kBlock = 16;
    static constexpr uint8_t kReduction = 0x87;
    static void Encrypt(Context* c, uint8_t* block) { AesProcess(c, block, block, kBlock); }
    static void Wipe(Context* c) { AesWipeContext(c); }
};
struct TdeaCipher {
    using Context = TdeaContext;
    static constexpr size_t kBlock = 8;
    static constexpr uint8_t kReduction = 0x1B;
    static void Encrypt(Context* c, uint8_t* block) { TdeaProcess(c, block, block, kBlock); }
    static void Wipe(Context* c) { TdeaWipeContext(c); }
};

// out = in x 2 in GF(2^b); the reduction is applied without a branch.
template <class C>
void Double(uint8_t* out, const uint8_t* in) {
    const uint8_t carry = uint8_t(-(in[0] >> 7));
    for (size_t i = 0; i + 1 < C::kBlock; ++i) out[i] = uint8_t((in[i] << 1) | (in[i + 1] >> 7));
    out[C::kBlock - 1] = uint8_t((in[C::kBlock - 1] << 1) ^ (carry & C::kReduction));
}

// The whole tag (kBlock bytes) into output; wipes the context.
template <class C>
void Tag(uint8_t* output, typename C::Context* ctx, const uint8_t* message, size_t length) {
    constexpr size_t B = C::kBlock;
    uint8_t l[B] = {}, k1[B], k2[B], chain[B] = {}, last[B] = {};
    C::Encrypt(ctx, l);
    Double<C>(k1, l);
    Double<C>(k2, k1);
    const size_t blocks = length == 0 ? 1 : (length + B - 1) / B;
    for (size_t i = 0; i + 1 < blocks; ++i) {
        for (size_t k = 0; k < B; ++k) chain[k] ^= message[i * B + k];
        C::Encrypt(ctx, chain);
    }
    const size_t tail = length - (blocks - 1) * B;
    if (tail != 0) std::memcpy(last, message + (blocks - 1) * B, tail);
    const uint8_t* subkey = k1;
    if (tail < B) {
        last[tail] = 0x80;
        subkey = k2;
    }
    for (size_t k = 0; k < B; ++k) chain[k] ^= last[k] ^ subkey[k];
    C::Encrypt(ctx, chain);
    std::memcpy(output, chain, B);
    C::Wipe(ctx);
    SecureWipe(l, B);
    SecureWipe(k1, B);
    SecureWipe(k2, B);
    SecureWipe(chain, B);
    SecureWipe(last, B);
}

// Key bytes each option takes; 0 for a number outside 0x100 to 0x103.
size_t KeyBytes(int32_t low12) {
    switch (low12) {
        case OPT_CMAC_TDEA: return 24;
        case OPT_CMAC_AES128: return 16;
        case OPT_CMAC_AES192: return 24;
        case OPT_CMAC_AES256: return 32;
        default: return 0;
    }
}
}  // namespace

int32_t CmacAes(uint8_t* output, const uint8_t* key, int32_t keyBytes, const uint8_t* message,
                size_t messageLength) {
    if (keyBytes != 16 && keyBytes != 24 && keyBytes != 32) return -BAD_KEY_LEN_ERROR;
    AesContext ctx;
    int status = AesSetupMode(&ctx, kModeEcb, key, size_t(keyBytes), 1, nullptr);
    if (status != 0) {
        AesWipeContext(&ctx);
        return -status;
    }
    Tag<AesCipher>(output, &ctx, message, messageLength);
    return 16;
}

int32_t CmacTdea(uint8_t* output, const uint8_t* key, const uint8_t* message, size_t messageLength) {
    if (key == nullptr) return -BAD_KEY_ERROR;
    TdeaContext ctx;
    int status = TdeaSetupMode(&ctx, kModeEcb, key, 1, nullptr);
    if (status != 0) {
        TdeaWipeContext(&ctx);
        return -status;
    }
    Tag<TdeaCipher>(output, &ctx, message, messageLength);
    return 8;
}

int32_t CmacBytes(uint8_t* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                  const uint8_t* key, int32_t keyLength, int32_t options) {
    const int32_t low12 = options & 0xFFF;
    const size_t keyBytes = KeyBytes(low12);
    if (keyBytes == 0) return -BAD_FLAG_ERROR;
    // Exact lengths: two-key Triple DES is not taken.
    if (keyLength < 0 || size_t(keyLength) != keyBytes) return -BAD_KEY_LEN_ERROR;
    uint8_t tag[16];
    const int32_t length = low12 == OPT_CMAC_TDEA ? CmacTdea(tag, key, message, size_t(messageLength))
                                                  : CmacAes(tag, key, keyLength, message, size_t(messageLength));
    int32_t result = length;
    if (length >= 1 && output != nullptr && outputLength >= 1) {
        result = outputLength < length ? outputLength : length;
        std::memcpy(output, tag, size_t(result));
    }
    SecureWipe(tag, sizeof tag);
    return result;
}

int32_t CmacHexFromBytes(char* output, int32_t outputLength, const uint8_t* message, int32_t messageLength,
                         const uint8_t* key, int32_t keyLength, int32_t options) {
    uint8_t tag[16];
    const int32_t length = CmacBytes(tag, sizeof tag, message, messageLength, key, keyLength, options);
    int32_t result = length;
    if (length >= 1) result = MacHexCut(output, outputLength, tag, length);
    SecureWipe(tag, sizeof tag);
    return result;
}

int32_t CmacHexFromHex(char* output, int32_t outputLength, const char* messageHex, const char* keyHex,
                       int32_t options) {
    if (messageHex == nullptr || keyHex == nullptr) return -BAD_PARAM_ERROR;
    MacHexBuffer key, message;
    int32_t result = MacDecodeHexPair(&key, &message, keyHex, messageHex, false);
    if (result != 0) return result;
    result = CmacHexFromBytes(output, outputLength, message.data, int32_t(message.length), key.data,
                              int32_t(key.length), options);
    MacReleaseHex(&message);
    MacReleaseHex(&key);
    return result;
}
