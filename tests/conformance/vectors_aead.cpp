// Published vectors for AEAD and stream ciphers.
#include "registry.h"

namespace {

// Fixed cuts for the incremental calls: a third and two thirds of the most.
int Thirds(int most) { return most / 3; }

void CheckGcm(Checker& check, const VectorRecord& r, bool encrypt, const std::string& where) {
    const AeadAnswer a{r.Bytes("Key"), r.Bytes("IV"), r.Bytes("AAD"), r.Bytes("PT"), r.Bytes("CT"), r.Bytes("Tag"),
                       r.fail};
    CheckAead(check, a, 0, encrypt, where, Thirds);
}

}  // namespace

CONFORMANCE_SUITE(Vectors, GcmEncrypt, 225,
                  "AES-GCM encryption, 128/192/256-bit keys, IVs of 8, 96 and 1024 bits, tags of 4 to 16 bytes",
                  "NIST CAVP GCMVS: nist-cavp/gcm/gcmEncryptExtIV{128,192,256}_subset.rsp (every IV, text, AAD and "
                  "tag length; one record per combination)",
                  "GCM_Encrypt GCM_InitKey GCM_NextEncrypt GCM_FinishKey AEAD_Encrypt AEAD_InitKey AEAD_SetNonce "
                  "AEAD_AddAAD AEAD_StartEncrypt AEAD_Update AEAD_FinishEncrypt AEAD_Destroy") {
    for (const char* bits : {"128", "192", "256"})
        EachRecord(check, "nist-cavp/gcm/gcmEncryptExtIV" + std::string(bits) + "_subset.rsp",
                   [&](const VectorRecord& r, const std::string& where) { CheckGcm(check, r, true, where); });
}

CONFORMANCE_SUITE(Vectors, GcmDecrypt, 449,
                  "AES-GCM decryption and tag check, 128/192/256-bit keys, IVs of 8, 96 and 1024 bits, failing tags",
                  "NIST CAVP GCMVS: nist-cavp/gcm/gcmDecrypt{128,192,256}_subset.rsp (one passing and one FAIL "
                  "record per combination)",
                  "GCM_Decrypt GCM_InitKey GCM_NextDecrypt GCM_FinishKey AEAD_Decrypt AEAD_InitKey AEAD_SetNonce "
                  "AEAD_AddAAD AEAD_StartDecrypt AEAD_Update AEAD_FinishDecrypt AEAD_Destroy") {
    for (const char* bits : {"128", "192", "256"})
        EachRecord(check, "nist-cavp/gcm/gcmDecrypt" + std::string(bits) + "_subset.rsp",
                   [&](const VectorRecord& r, const std::string& where) { CheckGcm(check, r, false, where); });
}

CONFORMANCE_SUITE(Vectors, ChaCha20Rfc8439, 16,
                  "ChaCha20 block function and encryption (12-byte nonce, 32-bit counter), Poly1305 key generation, "
                  "AEAD_CHACHA20_POLY1305",
                  "RFC 8439 sections 2.3.2, 2.4.2, 2.6.2, 2.8.2, A.1, A.2, A.4, A.5: rfc/rfc8439_chacha20_poly1305.txt",
                  "CIPHER_StreamBytes CIPHER_StreamHex CIPHER_StreamInit CIPHER_StreamUpdate CIPHER_StreamFinal "
                  "AEAD_Encrypt AEAD_Decrypt AEAD_EncryptWithTag AEAD_DecryptWithTag AEAD_InitKey AEAD_SetNonce "
                  "AEAD_AddAAD AEAD_StartEncrypt AEAD_StartDecrypt AEAD_Update AEAD_FinishEncrypt "
                  "AEAD_FinishDecrypt AEAD_Destroy") {
    const std::string file = "rfc/rfc8439_chacha20_poly1305.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        const std::string where = Where(file, r) + " " + r.Get("SOURCE");
        const ByteVec key = r.Bytes("KEY"), nonce = r.Bytes("NONCE");
        if (r.section.count("AEAD_CHACHA20_POLY1305")) {
            check.Case();
            const AeadAnswer a{key, nonce, r.Bytes("AAD"), r.Bytes("PLAINTEXT"), r.Bytes("CIPHERTEXT"), r.Bytes("TAG")};
            for (bool encrypt : {true, false})
                CheckAead(check, a, OPT_AEAD_CHACHA20_POLY1305, encrypt, where, Thirds);
            continue;
        }
        // Key stream and encryption records; the one-time Poly1305 key is the
        // first 32 key stream bytes of block 0.
        const bool block = r.section.count("ChaCha20 block function"), otk = r.section.count("Poly1305 key generation");
        if (!block && !otk && !r.section.count("ChaCha20 encryption")) continue;  // Poly1305: the MAC suite's
        const ByteVec in = block ? ByteVec(64) : otk ? ByteVec(32) : r.Bytes("PLAINTEXT");
        const ByteVec want = r.Bytes(block ? "BLOCK" : otk ? "OTK" : "CIPHERTEXT");
        const uint32_t counter = otk ? 0 : uint32_t(r.Int("COUNTER"));
        check.Case();
        const size_t cut = in.size() * 2 / 5;
        CheckStream(check, OPT_STREAM_CHACHA20, key, nonce, counter, in, want, where, [&] { return cut; });
        const std::string hexIn = ToHex(in), hexKey = ToHex(key), hexNonce = ToHex(nonce);
        check.Equal(HexText(in.size(),
                            [&](char* hex, int32_t room) {
                                return CIPHER_StreamHex(hex, room, hexIn.c_str(), hexKey.c_str(), hexNonce.c_str(),
                                                        counter, OPT_STREAM_CHACHA20);
                            }),
                    Upper(ToHex(want)), where + " CIPHER_StreamHex");
    }
}

CONFORMANCE_SUITE(Vectors, Ascon, 2178,
                  "Ascon-128 and Ascon-128a (v1.2) authenticated encryption, text and AD of 0 to 32 bytes",
                  "Ascon v1.2 LWC known answers: ascon-v1.2/Ascon-128{,a}_v1.2_LWC_AEAD_KAT_128_128.txt (complete)",
                  "AEAD_EncryptWithTag AEAD_DecryptWithTag") {
    for (int32_t alg : {OPT_AEAD_ASCON_128, OPT_AEAD_ASCON_128A}) {
        const std::string file = alg == OPT_AEAD_ASCON_128 ? "ascon-v1.2/Ascon-128_v1.2_LWC_AEAD_KAT_128_128.txt"
                                                           : "ascon-v1.2/Ascon-128a_v1.2_LWC_AEAD_KAT_128_128.txt";
        EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
            // CT holds the ciphertext and the 16-byte tag.
            const ByteVec sealed = r.Bytes("CT");
            AeadAnswer answer{r.Bytes("Key"), r.Bytes("Nonce"), r.Bytes("AD"), r.Bytes("PT"),
                              ByteVec(sealed.begin(), sealed.end() - 16), ByteVec(sealed.end() - 16, sealed.end())};
            CheckAead(check, answer, alg, true, where, Thirds);
            CheckAead(check, answer, alg, false, where, Thirds);
            answer.tag.back() ^= 1;
            answer.fail = true;
            CheckAead(check, answer, alg, false, where + " forged tag", Thirds);
        });
    }
}

CONFORMANCE_SUITE(Vectors, Salsa20, 5, "Salsa20/20 with 128- and 256-bit keys from block 0",
                  "eSTREAM verified test vectors (set 1) and the designer's examples: "
                  "estream/salsa20_verified_subset.txt (the records that start at block 0)",
                  "CIPHER_StreamBytes CIPHER_StreamInit CIPHER_StreamUpdate CIPHER_StreamFinal") {
    const std::string file = "estream/salsa20_verified_subset.txt";
    for (const VectorRecord& r : ReadSet(check, file)) {
        if (r.Get("COUNTER") != "0000000000000000") continue;  // no counter argument for Salsa20
        check.Case();
        const ByteVec key = r.Bytes("KEY"), iv = r.Bytes("IV"), want = r.Bytes("STREAM");
        const ByteVec zeros(size_t(r.Int("OFFSET")) + want.size(), 0);
        CheckStream(check, OPT_STREAM_SALSA20, key, iv, 0, zeros, want, Where(file, r), [] { return 37; });
    }
}

CONFORMANCE_SUITE(Vectors, Arcfour, 22, "ARCFOUR with 40- and 128-bit keys at key stream offsets up to 4096",
                  "RFC 6229 section 2 and published short-key examples: rfc/rfc6229_arcfour_subset.txt",
                  "CIPHER_StreamBytes PC1_Bytes PC1_Hex") {
    const std::string file = "rfc/rfc6229_arcfour_subset.txt";
    EachRecord(check, file, [&](const VectorRecord& r, const std::string& where) {
        const ByteVec key = r.Bytes("KEY");
        // Key stream records start at an offset.
        const bool stream = r.Has("KEYSTREAM");
        const ByteVec want = r.Bytes(stream ? "KEYSTREAM" : "CIPHERTEXT");
        const size_t offset = stream ? size_t(r.Int("OFFSET")) : 0;
        const ByteVec in = stream ? ByteVec(offset + want.size()) : r.Bytes("PLAINTEXT");
        CheckStream(check, OPT_STREAM_ARCFOUR, key, {}, 0, in, want, where, [] { return 100; });
        ByteVec b(in.size());
        int32_t rc = PC1_Bytes(b.data(), in.data(), Size(in), key.data(), Size(key));
        check.Equal(rc ? "error" : ToHex(b.data() + offset, want.size()), ToHex(want), where + " PC1_Bytes");
        std::string hex(in.size() * 2 + 1, '\0');
        rc = PC1_Hex(hex.data(), int32_t(hex.size() - 1), ToHex(in).c_str(), ToHex(key).c_str());
        check.Equal(rc ? "error" : std::string(hex.c_str() + offset * 2), Upper(ToHex(want)), where + " PC1_Hex");
    });
}
