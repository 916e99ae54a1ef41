// AEAD_DecryptWithTag for each algorithm and GCM_Decrypt: data that was not
// sealed under the key fails in the algorithm's own way; sealed data opens;
// one changed byte anywhere fails again.
#include <algorithm>

#include "fuzz_support.h"

namespace {
const uint8_t kKey[32] = {0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8a, 0x8b, 0x8c, 0x8d, 0x8e, 0x8f,
                          0x90, 0x91, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97, 0x98, 0x99, 0x9a, 0x9b, 0x9c, 0x9d, 0x9e, 0x9f};
const uint8_t kNonce[16] = {7, 0, 0, 0, 0x40, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4a, 0x4b};
const int32_t kAlgorithms[] = {OPT_AEAD_AES_128_GCM, OPT_AEAD_AES_256_GCM, OPT_AEAD_CHACHA20_POLY1305,
                               OPT_AEAD_ASCON_128, OPT_AEAD_ASCON_128A};

int32_t KeyLength(int32_t alg) { return alg == OPT_AEAD_AES_256_GCM || alg == OPT_AEAD_CHACHA20_POLY1305 ? 32 : 16; }
int32_t NonceLength(int32_t alg) { return alg == OPT_AEAD_ASCON_128 || alg == OPT_AEAD_ASCON_128A ? 16 : 12; }

// A failed open leaves out untouched (AES-GCM), zeroed over the plaintext
// length (Ascon), or holding the unauthenticated plaintext (ChaCha20-Poly1305).
void CheckFailedOut(int32_t alg, const uint8_t* out, size_t plainLength) {
    if (alg == OPT_AEAD_ASCON_128 || alg == OPT_AEAD_ASCON_128A) {
        for (size_t i = 0; i < plainLength; ++i) FUZZ_CHECK(out[i] == 0);
    } else if (alg != OPT_AEAD_CHACHA20_POLY1305) {
        for (size_t i = 0; i < plainLength; ++i) FUZZ_CHECK(out[i] == 0xA5);
    }
}

void OpenAny(int32_t options, const std::vector<uint8_t>& input, const std::vector<uint8_t>& aad) {
    const int32_t alg = options & 0xFF;
    const int32_t prefix = options & OPT_PREFIX_IV ? NonceLength(alg) : 0;
    const int32_t n = int32_t(input.size());
    const int32_t needed = AEAD_DecryptWithTag(nullptr, 0, Ptr(input), n, kKey, KeyLength(alg), kNonce,
                                               NonceLength(alg), Ptr(aad), int32_t(aad.size()), options);
    if (n < prefix + 16) {
        FUZZ_CHECK(needed == -BAD_LENGTH_ERROR);
        return;
    }
    FUZZ_CHECK(needed == n - prefix - 16);
    // One byte more than the plaintext: a length of 0 would only ask the size.
    Exact out{size_t(needed) + 1};
    const int32_t got = AEAD_DecryptWithTag(out.data(), needed + 1, Ptr(input), n, kKey, KeyLength(alg), kNonce,
                                            NonceLength(alg), Ptr(aad), int32_t(aad.size()), options);
    // Forging a 16-byte tag by chance is out of reach; the seeds hold
    // genuine messages.
    FUZZ_CHECK(got == -AUTH_FAIL_ERROR || got == needed);
    if (got < 0) CheckFailedOut(alg, out.data(), size_t(needed));
}

void SealOpenTamper(int32_t options, const std::vector<uint8_t>& plain, const std::vector<uint8_t>& aad,
                    size_t flip) {
    const int32_t alg = options & 0xFF;
    const int32_t n = int32_t(plain.size());
    const int32_t needed = AEAD_EncryptWithTag(nullptr, 0, Ptr(plain), n, kKey, KeyLength(alg), kNonce,
                                               NonceLength(alg), Ptr(aad), int32_t(aad.size()), options);
    FUZZ_CHECK(needed == n + 16 + (options & OPT_PREFIX_IV ? NonceLength(alg) : 0));
    Exact sealed{size_t(needed)};
    FUZZ_CHECK(AEAD_EncryptWithTag(sealed.data(), needed, Ptr(plain), n, kKey, KeyLength(alg), kNonce,
                                   NonceLength(alg), Ptr(aad), int32_t(aad.size()), options) == needed);
    Exact opened{plain.size()};
    FUZZ_CHECK(AEAD_DecryptWithTag(opened.data(), n, sealed.data(), needed, kKey, KeyLength(alg), kNonce,
                                   NonceLength(alg), Ptr(aad), int32_t(aad.size()), options) == n);
    FUZZ_CHECK(n == 0 || std::memcmp(opened.data(), Ptr(plain), plain.size()) == 0);
    sealed.data()[flip % size_t(needed)] ^= 0x01;
    Exact forged{plain.size() + 1};
    FUZZ_CHECK(AEAD_DecryptWithTag(forged.data(), n + 1, sealed.data(), needed, kKey, KeyLength(alg), kNonce,
                                   NonceLength(alg), Ptr(aad), int32_t(aad.size()), options) == -AUTH_FAIL_ERROR);
    CheckFailedOut(alg, forged.data(), plain.size());
}

// GCM_ takes IVs of any length and tags of 4 to 16 bytes (0 compares nothing).
void Gcm(const std::vector<uint8_t>& input, const std::vector<uint8_t>& aad, int32_t ivLength, int32_t tagLength,
         size_t flip) {
    const uint8_t* iv = Ptr(input);
    if (input.size() < size_t(ivLength) + 16 || ivLength == 0) return;
    const uint8_t* tag = iv + ivLength;
    const uint8_t* body = tag + 16;
    const int32_t n = int32_t(input.size()) - ivLength - 16;
    Exact out{size_t(n)};
    const int32_t got = GCM_Decrypt(out.data(), n, body, n, kKey, 24, iv, ivLength, Ptr(aad), int32_t(aad.size()),
                                    tag, tagLength, 0);
    if (tagLength == 0) {
        FUZZ_CHECK(got == 0);
    } else {
        FUZZ_CHECK(got == -AUTH_FAIL_ERROR || (tagLength < 8 && got == 0));  // 2^-32 is reachable
        if (got != 0) CheckFailedOut(OPT_AEAD_AES_128_GCM, out.data(), size_t(n));
    }
    // Sealed under the same IV, the body opens; a changed byte does not.
    Exact sealed{size_t(n)};
    uint8_t sealedTag[16];
    FUZZ_CHECK(GCM_Encrypt(sealed.data(), n, sealedTag, 16, body, n, kKey, 24, iv, ivLength, Ptr(aad),
                           int32_t(aad.size()), 0) == 0);
    Exact opened{size_t(n)};
    FUZZ_CHECK(GCM_Decrypt(opened.data(), n, sealed.data(), n, kKey, 24, iv, ivLength, Ptr(aad), int32_t(aad.size()),
                           sealedTag, 16, 0) == 0);
    FUZZ_CHECK(n == 0 || std::memcmp(opened.data(), body, size_t(n)) == 0);
    sealedTag[flip % 16] ^= 0x80;
    FUZZ_CHECK(GCM_Decrypt(nullptr, n, sealed.data(), n, kKey, 24, iv, ivLength, Ptr(aad), int32_t(aad.size()),
                           sealedTag, 16, 0) == -AUTH_FAIL_ERROR);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader r(data, size);
    const uint8_t choice = r.Byte();
    const size_t flip = r.Length(4096);
    const std::vector<uint8_t> aad = r.Bytes(r.Length(64));
    const std::vector<uint8_t> input = r.Rest();
    if (choice >= 0xF0) {
        Gcm(input, aad, int32_t(choice & 0x0F) + 1, int32_t(flip % 17), flip);
        return 0;
    }
    const int32_t options = kAlgorithms[choice % 5] | (choice & 0x80 ? OPT_PREFIX_IV : 0);
    OpenAny(options, input, aad);
    SealOpenTamper(options, input, aad, flip);
    return 0;
}
