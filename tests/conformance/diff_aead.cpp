// Authenticated encryption and stream ciphers against OpenSSL's libcrypto:
// AES-GCM with random IV and tag lengths, ChaCha20 with every nonce layout,
// ChaCha20-Poly1305, ARCFOUR.
#include "reference.h"
#include "registry.h"

namespace {

// The incremental AEAD_ calls with AAD and text cut at random: ciphertext
// and tag as hex.
std::string Incremental(Random& rng, int32_t alg, const ByteVec& key, const ByteVec& nonce, const ByteVec& aad,
                        const ByteVec& pt) {
    ByteVec out, tag;
    const int32_t rc =
        AeadInPieces(alg, true, key, nonce, aad, pt, &out, &tag, [&](int most) { return rng.Between(1, most); });
    return OrError(!rc, rc, ToHex(out) + ToHex(tag));
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
        const std::string sealed = ToHex(ct) + ToHex(tag);
        ByteVec out(pt.size() + 1), got(16);
        int32_t rc = GCM_Encrypt(out.data(), Size(out), got.data(), Size(tag), Ptr(pt), Size(pt), key.data(), Size(key),
                                 iv.data(), Size(iv), Ptr(aad), Size(aad), 0);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size()) + ToHex(got.data(), tag.size())), sealed,
                    where + " GCM_Encrypt");
        rc = GCM_Decrypt(out.data(), Size(out), Ptr(ct), Size(ct), key.data(), Size(key), iv.data(), Size(iv), Ptr(aad),
                         Size(aad), tag.data(), Size(tag), 0);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(pt), where + " GCM_Decrypt");
        // One changed byte anywhere in text, AAD or tag is refused.
        ByteVec badCt = ct, badAad = aad, badTag = tag;
        ByteVec& victim = rng.Between(0, 2) == 0 && !ct.empty() ? badCt
                          : !aad.empty() && rng.Between(0, 1)   ? badAad
                                                                : badTag;
        victim[size_t(rng.Between(0, int(victim.size()) - 1))] ^= uint8_t(1 << rng.Between(0, 7));
        rc = GCM_Decrypt(out.data(), Size(out), Ptr(badCt), Size(badCt), key.data(), Size(key), iv.data(), Size(iv),
                         Ptr(badAad), Size(badAad), badTag.data(), Size(badTag), 0);
        check.Equal(rc, -AUTH_FAIL_ERROR, where + " forged");
        if (ivLength != 12 || keyLength == 24) continue;
        const int32_t alg = keyLength == 16 ? OPT_AEAD_AES_128_GCM : OPT_AEAD_AES_256_GCM;
        rc = AEAD_Encrypt(out.data(), Size(out), got.data(), 16, Ptr(pt), Size(pt), key.data(), Size(key), iv.data(),
                          12, Ptr(aad), Size(aad), alg);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size()) + ToHex(got.data(), tag.size())), sealed,
                    where + " AEAD_Encrypt");
        rc = AEAD_Decrypt(out.data(), Size(out), Ptr(ct), Size(ct), key.data(), Size(key), iv.data(), 12, Ptr(aad),
                          Size(aad), tag.data(), Size(tag), alg);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(pt), where + " AEAD_Decrypt");
        if (tag.size() == 16)
            check.Equal(Incremental(rng, alg, key, iv, aad, pt), sealed, where + " AEAD_ incremental");
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
        ByteVec out(pt.size() + 1);
        int32_t rc = CIPHER_StreamBytes(out.data(), NonNull(pt), Size(pt), key.data(), 32, ourNonce.data(),
                                        Size(ourNonce), counter, OPT_STREAM_CHACHA20);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(want), where + " bytes");
        const int32_t h =
            CIPHER_StreamInit(key.data(), 32, ourNonce.data(), Size(ourNonce), counter, OPT_STREAM_CHACHA20);
        InPieces(
            pt.size(), [&] { return rng.Between(0, 150); },
            [&](size_t at, size_t n) { CIPHER_StreamUpdate(h, out.data() + at, pt.data() + at, int32_t(n)); });
        CIPHER_StreamFinal(h);
        check.Equal(ToHex(out.data(), pt.size()), ToHex(want), where + " stream");
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
        ByteVec sealed = ct, out(pt.size() + 16), got(16), back(pt.size() + 1);
        sealed.insert(sealed.end(), tag.begin(), tag.end());
        int32_t rc = AEAD_Encrypt(out.data(), Size(out), got.data(), 16, Ptr(pt), Size(pt), key.data(), 32,
                                  nonce.data(), 12, Ptr(aad), Size(aad), alg);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size()) + ToHex(got)), ToHex(sealed), where + " encrypt");
        rc = AEAD_EncryptWithTag(out.data(), Size(out), Ptr(pt), Size(pt), key.data(), 32, nonce.data(), 12, Ptr(aad),
                                 Size(aad), alg);
        check.Equal(OrError(rc == Size(out), rc, ToHex(out)), ToHex(sealed), where + " EncryptWithTag");
        rc = AEAD_Decrypt(back.data(), Size(back), Ptr(ct), Size(ct), key.data(), 32, nonce.data(), 12, Ptr(aad),
                          Size(aad), tag.data(), 16, alg);
        check.Equal(OrError(!rc, rc, ToHex(back.data(), pt.size())), ToHex(pt), where + " decrypt");
        sealed[size_t(rng.Between(0, Size(sealed) - 1))] ^= 0x20;
        rc = AEAD_DecryptWithTag(back.data(), Size(back), sealed.data(), Size(sealed), key.data(), 32, nonce.data(), 12,
                                 Ptr(aad), Size(aad), alg);
        check.Equal(rc, -AUTH_FAIL_ERROR, where + " forged");
        check.Equal(Incremental(rng, alg, key, nonce, aad, pt), ToHex(ct) + ToHex(tag), where + " incremental");
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
        int32_t rc = CIPHER_StreamBytes(out.data(), NonNull(pt), Size(pt), key.data(), Size(key), nullptr, 0, 0,
                                        OPT_STREAM_ARCFOUR);
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(want), where + " CIPHER_StreamBytes");
        rc = PC1_Bytes(out.data(), NonNull(pt), Size(pt), key.data(), Size(key));
        check.Equal(OrError(!rc, rc, ToHex(out.data(), pt.size())), ToHex(want), where + " PC1_Bytes");
    }
}
