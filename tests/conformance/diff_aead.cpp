// AEAD and stream ciphers against OpenSSL's libcrypto.
#include "reference.h"
#include "registry.h"

namespace {

// The answer with one bit changed in the text, the AAD or the tag.
AeadAnswer Forged(Random& rng, AeadAnswer a) {
    ByteVec& victim = rng.Between(0, 2) == 0 && !a.ct.empty() ? a.ct
                      : !a.aad.empty() && rng.Between(0, 1)   ? a.aad
                                                              : a.tag;
    victim[size_t(rng.Between(0, int(victim.size()) - 1))] ^= uint8_t(1 << rng.Between(0, 7));
    a.fail = true;
    return a;
}

}  // namespace

CONFORMANCE_SUITE(Differential, AesGcm, 6000,
                  "AES-GCM with 128/192/256-bit keys, IVs of 1 to 80 bytes, tags of 4 to 16 bytes, AAD and text of "
                  "0 to 200 bytes; a changed byte is refused",
                  "OpenSSL libcrypto EVP AES-*-GCM",
                  "GCM_Encrypt GCM_Decrypt AEAD_Encrypt AEAD_Decrypt AEAD_InitKey AEAD_SetNonce AEAD_AddAAD "
                  "AEAD_StartEncrypt AEAD_Update AEAD_FinishEncrypt AEAD_Destroy") {
    Random rng(0x5eed0020);
    for (long i = 0; i < 6000; ++i) {
        check.Case();
        const size_t keyLength = size_t(16 + 8 * rng.Between(0, 2));
        // One case in four takes the 12-byte IV that the AEAD_ calls also take.
        const size_t ivLength = rng.Between(0, 3) == 0 ? 12 : size_t(rng.Between(1, 80));
        const ByteVec key = rng.Bytes(keyLength), iv = rng.Bytes(ivLength);
        const ByteVec aad = rng.Bytes(size_t(rng.Between(0, 200))), pt = rng.Bytes(size_t(rng.Between(0, 200)));
        ByteVec ct, tag(size_t(rng.Between(4, 16)));
        const std::string where =
            CaseName(rng, i, "key", key, "iv", iv, "aad", aad.size(), "text", pt.size(), "tag", tag.size());
        const std::string name = "AES-" + std::to_string(keyLength * 8) + "-GCM";
        if (!check.True(ref::Aead(name.c_str(), true, key, iv, aad, pt, &ct, &tag), "reference failed", where))
            continue;
        const AeadAnswer a{key, iv, aad, pt, ct, tag};
        const auto cut = [&](int most) { return rng.Between(1, most); };
        CheckAead(check, a, 0, true, where, cut);
        CheckAead(check, a, 0, false, where, cut);
        CheckAead(check, Forged(rng, a), 0, false, where + " forged", cut);
    }
}

CONFORMANCE_SUITE(Differential, ChaCha20, 1500,
                  "ChaCha20 with 8-, 12- and 16-byte nonces and any start block; the stream cut anywhere",
                  "OpenSSL libcrypto EVP ChaCha20 (its 16-byte IV is the 32-bit counter and the 12-byte nonce)",
                  "CIPHER_StreamBytes CIPHER_StreamInit CIPHER_StreamUpdate CIPHER_StreamFinal") {
    Random rng(0x5eed0021);
    for (long i = 0; i < 1500; ++i) {
        check.Case();
        const int layout = int(i % 3);
        const ByteVec key = rng.Bytes(32), nonce = rng.Bytes(size_t(8 + 4 * layout));
        // Far enough from 2^32 that the reference's 32-bit counter never wraps.
        uint32_t counter = layout == 2 ? 0 : uint32_t(rng.Between(0, 1 << 30));
        ByteVec refIv(16, 0);
        for (int b = 0; b < 4; ++b) refIv[size_t(b)] = uint8_t(counter >> (8 * b));
        std::copy(nonce.begin(), nonce.end(), refIv.begin() + 16 - long(nonce.size()));
        if (layout == 2) refIv[3] &= 0x3f;  // keeps the reference's counter word from wrapping
        const ByteVec pt = rng.Bytes(i < 300 ? size_t(i) : size_t(rng.Between(0, i % 100 == 0 ? 100000 : 1000)));
        const ByteVec& ourNonce = layout == 2 ? refIv : nonce;
        const std::string where = CaseName(rng, i, "nonce", ourNonce, "counter", counter, "length", pt.size());
        ByteVec want;
        if (!check.True(ref::Crypt("ChaCha20", true, key, refIv, pt, &want), "reference failed", where)) continue;
        CheckStream(check, OPT_STREAM_CHACHA20, key, ourNonce, counter, pt, want, where,
                    [&] { return rng.Between(0, 150); });
    }
}

CONFORMANCE_SUITE(Differential, ChaCha20Poly1305, 3000,
                  "ChaCha20-Poly1305 (RFC 8439) with AAD and text of 0 to 300 bytes; a changed byte is refused",
                  "OpenSSL libcrypto EVP ChaCha20-Poly1305",
                  "AEAD_Encrypt AEAD_Decrypt AEAD_EncryptWithTag AEAD_DecryptWithTag AEAD_InitKey AEAD_SetNonce "
                  "AEAD_AddAAD AEAD_StartEncrypt AEAD_Update AEAD_FinishEncrypt AEAD_Destroy") {
    Random rng(0x5eed0022);
    const int32_t alg = OPT_AEAD_CHACHA20_POLY1305;
    for (long i = 0; i < 3000; ++i) {
        check.Case();
        const ByteVec key = rng.Bytes(32), nonce = rng.Bytes(12);
        const ByteVec aad = rng.Bytes(size_t(rng.Between(0, 300))), pt = rng.Bytes(size_t(rng.Between(0, 300)));
        const std::string where = CaseName(rng, i, "aad", aad.size(), "text", pt.size());
        ByteVec ct, tag(16);
        if (!check.True(ref::Aead("ChaCha20-Poly1305", true, key, nonce, aad, pt, &ct, &tag), "reference failed",
                        where))
            continue;
        const AeadAnswer a{key, nonce, aad, pt, ct, tag};
        const auto cut = [&](int most) { return rng.Between(1, most); };
        CheckAead(check, a, alg, true, where, cut);
        CheckAead(check, a, alg, false, where, cut);
        CheckAead(check, Forged(rng, a), alg, false, where + " forged", cut);
    }
}

CONFORMANCE_SUITE(Differential, Arcfour, 500, "ARCFOUR with keys of 1 to 256 bytes",
                  "OpenSSL libcrypto legacy provider: RC4; skipped when that provider does not load",
                  "CIPHER_StreamBytes PC1_Bytes") {
    if (!ref::LegacyLoaded())
        return check.Skip("OpenSSL's legacy provider does not load here: no reference for ARCFOUR");
    Random rng(0x5eed0023);
    for (long i = 0; i < 500; ++i) {
        check.Case();
        const ByteVec key = rng.Bytes(size_t(1 + i % 256)), pt = rng.Bytes(size_t(rng.Between(0, 2000)));
        const std::string where = CaseName(rng, i, "key", key, "length", pt.size());
        ByteVec want, out(pt.size() + 1);
        if (!check.True(ref::Crypt("RC4", true, key, {}, pt, &want), "reference failed", where)) continue;
        CheckStream(check, OPT_STREAM_ARCFOUR, key, {}, 0, pt, want, where, [&] { return rng.Between(0, 300); });
        const int32_t rc = PC1_Bytes(out.data(), NonNull(pt), Size(pt), key.data(), Size(key));
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(want), where + " PC1_Bytes");
    }
}
