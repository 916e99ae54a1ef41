// Block ciphers and key wrap against OpenSSL's libcrypto, through the families
// and the generic CIPHER_ calls.
#include "reference.h"
#include "registry.h"

namespace {

// Unpadded ECB and CBC take whole blocks only.
std::vector<size_t> Lengths(const std::string& mode, size_t block) {
    const bool whole = mode == "ECB" || mode == "CBC";
    std::vector<size_t> lengths;
    for (size_t n = 0; n <= (whole ? 12 * block : 3 * block + 5); n += whole ? block : 1) lengths.push_back(n);
    lengths.push_back(whole ? 256 * block : 4099);
    lengths.push_back(100000 / block * block + (whole ? 0 : 3));
    return lengths;
}

void RunCipher(Checker& check, Random& rng, Cipher c, long* index) {
    const size_t block = size_t(BlockSize(c)), keyLength = GenericName(c).key;
    for (std::string mode : {"ECB", "CBC", "CFB", "OFB", "CTR"}) {
        if (mode == "CTR" && block == 8) continue;  // no CTR in the reference for 64-bit blocks
        const std::string name = std::string(GenericName(c).openssl) + "-" + mode;
        for (size_t length : Lengths(mode, block)) {
            for (int round = 0; round < 3; ++round) {
                check.Case();
                const ByteVec key = rng.Bytes(keyLength ? keyLength : size_t(rng.Between(1, 56))),
                              iv = mode == "ECB" ? ByteVec() : rng.Bytes(block);
                const ByteVec pt = rng.Bytes(length);
                const std::string where = CaseName(rng, (*index)++, name, "key", key, "iv", iv, "length", length);
                ByteVec ct;
                if (!check.True(ref::Crypt(name.c_str(), true, key, iv, pt, &ct), "reference failed", where)) continue;
                const auto cut = [&] { return block * size_t(rng.Between(0, 5)); };
                CheckCipherFamily(check, c, mode, key, iv, pt, ct, 1, where, cut);
                CheckCipherFamily(check, c, mode, key, iv, ct, pt, 0, where, cut);
            }
        }
    }
}

// One text through the generic calls. Padding unless the text is whole
// blocks and the coin says none; the IV in front or not; the cipher named by
// text or by bits.
void CheckGenericCalls(Checker& check, Random& rng, Cipher c, const std::string& mode, size_t length, long index) {
    const size_t block = size_t(BlockSize(c));
    const bool pad = (mode == "ECB" || mode == "CBC") && (length % block != 0 || rng.Between(0, 1) == 0);
    const bool prefix = mode != "ECB" && rng.Between(0, 1) == 0, byText = rng.Between(0, 1) == 0;
    const CipherNames names = GenericName(c);
    const ByteVec key = rng.Bytes(names.key), iv = rng.Bytes(block), pt = rng.Bytes(length);
    const std::string text = std::string(names.text) + "/" + mode + (pad ? "/pkcs5" : "/nopad");
    const int32_t bits = names.bits | ModeOption(mode) | (pad ? OPT_PAD_PKCS5 : OPT_PAD_NONE);
    const int32_t options = (byText ? 0 : bits) | (prefix ? OPT_PREFIX_IV : 0);
    const char* alg = byText ? text.c_str() : nullptr;
    const std::string name = std::string(names.openssl) + "-" + mode;
    const std::string where = CaseName(rng, index, text, prefix ? "prefix" : "", byText ? "by text" : "by bits", "key",
                                       key, "iv", iv, "length", length);
    ByteVec ct;
    if (!check.True(ref::Crypt(name.c_str(), true, key, mode == "ECB" ? ByteVec() : iv, pt, &ct, pad),
                    "reference failed", where))
        return;
    ByteVec want = prefix ? iv : ByteVec();
    want.insert(want.end(), ct.begin(), ct.end());
    // The query gives the exact size; then the call fills it.
    int32_t n = CIPHER_EncryptBytes(nullptr, 0, NonNull(pt), Size(pt), key.data(), Size(key), iv.data(), Size(iv), alg,
                                    options);
    check.Equal(n, Size(want), where + " size query");
    ByteVec out(want.size() + 1);
    n = CIPHER_EncryptBytes(out.data(), Size(out), NonNull(pt), Size(pt), key.data(), Size(key), iv.data(), Size(iv),
                            alg, options);
    check.Equal(OrError(n == Size(want), n, ToHex(out.data(), want.size())), ToHex(want), where + " encrypt");
    n = CIPHER_DecryptBytes(out.data(), Size(out), NonNull(want), Size(want), key.data(), Size(key), iv.data(),
                            Size(iv), alg, options);
    check.Equal(OrError(n == Size(pt), n, ToHex(out.data(), pt.size())), ToHex(pt), where + " decrypt");
    if (pad) return;
    // The stateful calls in random whole-block pieces, a part block last.
    const int32_t h = CIPHER_Init(1, alg, key.data(), Size(key), iv.data(), Size(iv), options);
    ByteVec streamed(pt.size());
    InPieces(pt.size(), [&] { return block * size_t(rng.Between(0, 4)); }, [&](size_t at, size_t n) {
        return CIPHER_Update(h, streamed.data() + at, int32_t(n), pt.data() + at, int32_t(n));
    });
    check.True(h != 0 && CIPHER_Final(h) == 0, "CIPHER_Init or CIPHER_Final failed", where);
    check.Equal(streamed, ct, where + " stateful");
}

}  // namespace

CONFORMANCE_SUITE(Differential, CipherCalls, 1936,
                  "AES-128/192/256 in ECB, CBC, CFB, OFB, CTR and Triple DES in ECB, CBC, CFB, OFB through the "
                  "generic calls: PKCS#5 padding or none, IV prefix, one-shot and stateful",
                  "OpenSSL libcrypto EVP AES-*, DES-EDE3-* (PKCS#7 padding on); every length to 3 blocks and 5 bytes, "
                  "1000 and 65537 bytes",
                  "CIPHER_EncryptBytes CIPHER_DecryptBytes CIPHER_Init CIPHER_Update CIPHER_Final") {
    Random rng(0x5eed0050);
    long index = 0;
    for (Cipher c : {Cipher::Aes128, Cipher::Aes192, Cipher::Aes256, Cipher::Tdea}) {
        const size_t block = size_t(BlockSize(c));
        for (const char* mode : {"ECB", "CBC", "CFB", "OFB", "CTR"}) {
            if (block == 8 && mode == std::string("CTR")) continue;  // the reference has no DES CTR
            for (size_t i = 0; i < 3 * block + 8; ++i) {
                // Every length to 3 blocks and 5 bytes, then 1000 and 65537 bytes.
                const size_t length = i <= 3 * block + 5 ? i : i == 3 * block + 6 ? 1000 : 65537;
                for (int round = 0; round < 2; ++round) {
                    check.Case();
                    CheckGenericCalls(check, rng, c, mode, length, index++);
                }
            }
        }
    }
}

CONFORMANCE_SUITE(Differential, KeyWrap, 392,
                  "AES Key Wrap with 128/192/256-bit KEKs and 16 to 520 bytes of key data; Triple-DES Key Wrap "
                  "(RFC 3217), whose output is random, both ways; a changed byte is refused",
                  "OpenSSL libcrypto EVP AES-*-WRAP and DES3-WRAP", "CIPHER_KeyWrap CIPHER_KeyUnwrap") {
    Random rng(0x5eed0051);
    long index = 0;
    for (size_t kek : {16u, 24u, 32u}) {
        const std::string name = "AES-" + std::to_string(kek * 8) + "-WRAP";
        for (size_t length = 16; length <= 520; length += 8) {
            check.Case();
            const ByteVec k = rng.Bytes(kek), data = rng.Bytes(length);
            const std::string where = CaseName(rng, index++, name, "data", length);
            ByteVec want;
            if (!check.True(ref::Crypt(name.c_str(), true, k, {}, data, &want), "reference failed", where)) continue;
            check.Equal(Wrapped(data, k), ToHex(want), where + " wrap");
            check.Equal(Unwrapped(want, k), ToHex(data), where + " unwrap");
            want[size_t(rng.Between(0, Size(want) - 1))] ^= 0x01;
            check.Equal(Unwrapped(want, k), "refused, zeroed", where + " changed byte");
        }
    }
    // The Triple-DES wrapping is random: the reference opens ours, and we open theirs.
    for (int i = 0; i < 200; ++i) {
        check.Case();
        const ByteVec kek = rng.Bytes(24), key = rng.Bytes(24);
        const std::string where = CaseName(rng, index++, "DES3-WRAP kek", kek, "key", key);
        ByteVec ours = FromHex(Wrapped(key, kek, true)), theirs, opened;
        check.True(ref::Crypt("DES3-WRAP", false, kek, {}, ours, &opened) && opened == key,
                   "the reference does not unwrap CIPHER_KeyWrap", where);
        if (!check.True(ref::Crypt("DES3-WRAP", true, kek, {}, key, &theirs), "reference failed", where)) continue;
        check.Equal(Unwrapped(theirs, kek, true), ToHex(key), where + " unwrap");
        theirs[size_t(rng.Between(0, 39))] ^= 0x80;
        check.Equal(Unwrapped(theirs, kek, true), "refused, zeroed", where + " changed byte");
    }
}

CONFORMANCE_SUITE(Differential, AesModes, 1782, "AES-128, AES-192, AES-256 in ECB, CBC, CFB-128, OFB, CTR",
                  "OpenSSL libcrypto EVP AES-*-{ECB,CBC,CFB,OFB,CTR}; every length to 53 bytes, whole blocks to 12, "
                  "4 KB and 100 KB texts",
                  "AES128_BytesMode AES192_BytesMode AES256_BytesMode AES128_Init AES192_Init AES256_Init "
                  "AES128_Update AES192_Update AES256_Update AES128_Final AES192_Final AES256_Final") {
    Random rng(0x5eed0010);
    long index = 0;
    for (Cipher c : {Cipher::Aes128, Cipher::Aes192, Cipher::Aes256}) RunCipher(check, rng, c, &index);
}

CONFORMANCE_SUITE(Differential, TdesModes, 282, "Triple DES (three independent keys) in ECB, CBC, CFB-64, OFB",
                  "OpenSSL libcrypto EVP DES-EDE3-{ECB,CBC,CFB,OFB}; every length to 29 bytes, whole blocks to 12, "
                  "4 KB and 100 KB texts",
                  "TDEA_BytesMode TDEA_Init TDEA_Update TDEA_Final") {
    Random rng(0x5eed0011);
    long index = 0;
    RunCipher(check, rng, Cipher::Tdea, &index);
}

CONFORMANCE_SUITE(Differential, DesBlowfishModes, 564,
                  "DES and Blowfish (keys of 1 to 56 bytes) in ECB, CBC, CFB-64, OFB",
                  "OpenSSL libcrypto legacy provider: DES-*, BF-*; the suite is skipped when that provider does not "
                  "load",
                  "DES_BytesMode DES_Init DES_Update DES_Final BLF_BytesMode BLF_Init BLF_Update BLF_Final") {
    if (!ref::LegacyLoaded())
        return check.Skip("OpenSSL's legacy provider does not load here: no reference for DES and Blowfish");
    Random rng(0x5eed0012);
    long index = 0;
    RunCipher(check, rng, Cipher::Des, &index);
    RunCipher(check, rng, Cipher::Blf, &index);
}
