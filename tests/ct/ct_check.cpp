// Constant-time check under valgrind's memcheck: secrets are marked undefined,
// so a branch or address that depends on them is reported; answers given away
// by design are marked defined by the library. Table-driven code (portable AES
// and GHASH, DES, Blowfish, ARCFOUR, hex parsers) is not covered.
#include <valgrind/memcheck.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "verimond.h"

namespace {

using Bytes = std::vector<uint8_t>;

int g_failures = 0;

void Secret(Bytes& b) { VALGRIND_MAKE_MEM_UNDEFINED(b.data(), b.size()); }
void Public(const void* p, size_t n) { VALGRIND_MAKE_MEM_DEFINED(p, n); }
template <class T>
T Public(T v) {
    VALGRIND_MAKE_MEM_DEFINED(&v, sizeof v);
    return v;
}

Bytes Pattern(size_t n, int seed) {
    Bytes b(n);
    for (size_t i = 0; i < n; ++i) b[i] = uint8_t(seed * 29 + i * 7 + (i >> 3));
    return b;
}

// The outcome of one call: its result and the bytes it wrote.
struct Outcome {
    int32_t result;
    Bytes out;
    bool operator==(const Outcome& o) const { return result == o.result && out == o.out; }
};

// Runs call on copies of the inputs, first defined, then with the inputs
// named secret marked undefined; the outputs are made defined again before
// they are compared, as a caller may use them. Gives the defined run's outcome.
Outcome Case(const std::string& name, std::vector<Bytes> inputs, const std::vector<size_t>& secret,
             size_t outLength, const std::function<int32_t(std::vector<Bytes>&, uint8_t*)>& call) {
    std::vector<Bytes> plain = inputs;
    Outcome expected{0, Bytes(outLength + 1, 0)};
    expected.result = call(plain, expected.out.data());
    for (size_t i : secret) Secret(inputs[i]);
    Outcome got{0, Bytes(outLength + 1, 0)};
    got.result = Public(call(inputs, got.out.data()));
    Public(got.out.data(), got.out.size());
    if (!(got == expected)) {
        ++g_failures;
        std::fprintf(stderr, "FAIL %s: result %d, expected %d\n", name.c_str(), got.result, expected.result);
    }
    expected.out.resize(outLength);
    return expected;
}

// A message and a copy with one bit flipped.
std::vector<Bytes> GoodAndSpoiled(const Bytes& good, size_t at, uint8_t bit) {
    Bytes spoiled = good;
    spoiled[at] ^= bit;
    return {good, spoiled};
}

void Padding() {
    const std::pair<const char*, int32_t> schemes[] = {{"pkcs5", OPT_PAD_PKCS5}, {"one-and-zeroes", OPT_PAD_ONEANDZEROES},
                                                       {"x9.23", OPT_PAD_ANSIX923}, {"w3c", OPT_PAD_W3C}};
    for (const auto& s : schemes) {
        for (int32_t block : {8, 16}) {
            for (int32_t dataLength : {0, 5, block - 1, block, 3 * block - 2}) {
                Bytes data = Pattern(size_t(dataLength), dataLength);
                Bytes padded(size_t(dataLength + block));
                const int32_t n = PAD_BytesBlock(padded.data(), int32_t(padded.size()), data.data(), dataLength, block,
                                                 s.second);
                padded.resize(size_t(n));
                // The last byte spoiled is out of range for every scheme.
                for (const Bytes& input : GoodAndSpoiled(padded, padded.size() - 1, 0x40)) {
                    Case(std::string("PAD_UnpadBytes ") + s.first + " block " + std::to_string(block), {input}, {0},
                         padded.size(), [&](std::vector<Bytes>& in, uint8_t* out) {
                             return PAD_UnpadBytes(out, int32_t(padded.size()), in[0].data(), int32_t(in[0].size()),
                                                   block, s.second);
                         });
                }
            }
        }
    }
}

void BlockCipher() {
    const char* names[] = {"aes128/cbc/pkcs5", "aes256/ecb/ansix923", "aes192/ctr", "aes128/cfb", "aes256/ofb",
                           "aes128/cbc/oneandzeroes"};
    const int32_t keyLengths[] = {16, 32, 24, 16, 32, 16};
    for (int i = 0; i < 6; ++i) {
        const Bytes key = Pattern(size_t(keyLengths[i]), i), iv = Pattern(16, 40 + i), plain = Pattern(45, 50 + i);
        const Outcome sealed = Case(std::string("CIPHER_EncryptBytes ") + names[i], {key, plain, iv}, {0, 1}, 64,
                                    [&](std::vector<Bytes>& in, uint8_t* out) {
                                        return CIPHER_EncryptBytes(out, 64, in[1].data(), 45, in[0].data(),
                                                                   keyLengths[i], in[2].data(), 16, names[i], 0);
                                    });
        const Bytes ct(sealed.out.begin(), sealed.out.begin() + sealed.result);
        Case(std::string("CIPHER_DecryptBytes ") + names[i], {key, ct, iv}, {0, 1}, 64,
             [&](std::vector<Bytes>& in, uint8_t* out) {
                 return CIPHER_DecryptBytes(out, 64, in[1].data(), int32_t(in[1].size()), in[0].data(), keyLengths[i],
                                            in[2].data(), 16, names[i], 0);
             });
    }
}

void KeyUnwrap() {
    for (const int32_t kekLength : {16, 32}) {
        const int32_t option = kekLength == 16 ? OPT_CIPHER_AES128 : OPT_CIPHER_AES256;
        const Bytes kek = Pattern(size_t(kekLength), kekLength), key = Pattern(32, 7);
        const Bytes wrapped = Case("CIPHER_KeyWrap", {kek, key}, {0, 1}, 40, [&](std::vector<Bytes>& in, uint8_t* out) {
                            return CIPHER_KeyWrap(out, 40, in[1].data(), 32, in[0].data(), kekLength, option);
                        }).out;
        for (const Bytes& input : GoodAndSpoiled(wrapped, 3, 1)) {
            Case("CIPHER_KeyUnwrap", {kek, input}, {0, 1}, 32, [&](std::vector<Bytes>& in, uint8_t* out) {
                return CIPHER_KeyUnwrap(out, 32, in[1].data(), 40, in[0].data(), kekLength, option);
            });
        }
    }
}

void Gcm() {
    for (int32_t ivLength : {12, 7, 60}) {
        const Bytes key = Pattern(32, 9), iv = Pattern(size_t(ivLength), 10), aad = Pattern(21, 11),
                    plain = Pattern(77, 12);
        const Bytes sealed =
            Case("GCM_Encrypt", {key, plain, iv, aad}, {0, 1, 2, 3}, 93, [&](std::vector<Bytes>& in, uint8_t* out) {
                return GCM_Encrypt(out, 77, out + 77, 16, in[1].data(), 77, in[0].data(), 32, in[2].data(), ivLength,
                                   in[3].data(), 21, 0);
            }).out;
        const Bytes ct(sealed.begin(), sealed.begin() + 77), tag(sealed.begin() + 77, sealed.begin() + 93);
        for (const Bytes& t : GoodAndSpoiled(tag, 15, 0x80)) {
            for (int32_t tagLength : {16, 4}) {
                Case("GCM_Decrypt", {key, ct, iv, aad, t}, {0, 1, 2, 3, 4}, 77,
                     [&](std::vector<Bytes>& in, uint8_t* out) {
                         return GCM_Decrypt(out, 77, in[1].data(), 77, in[0].data(), 32, in[2].data(), ivLength,
                                            in[3].data(), 21, in[4].data(), tagLength, 0);
                     });
            }
        }
    }
}

// The whole-message and incremental AEAD_ calls, with a good and a bad tag.
void Aead(int32_t algorithm, int32_t keyLength) {
    const std::string name = "AEAD " + std::to_string(algorithm);
    const int32_t nonceLength = algorithm == OPT_AEAD_ASCON_128 || algorithm == OPT_AEAD_ASCON_128A ? 16 : 12;
    const Bytes key = Pattern(size_t(keyLength), algorithm), nonce = Pattern(size_t(nonceLength), 3),
                aad = Pattern(13, 4), plain = Pattern(100, 5);
    const auto seal = [&](std::vector<Bytes>& in, uint8_t* out) {
        return AEAD_EncryptWithTag(out, 116, in[1].data(), 100, in[0].data(), keyLength, in[2].data(), nonceLength,
                                   in[3].data(), 13, algorithm);
    };
    const Bytes sealed = Case(name + " EncryptWithTag", {key, plain, nonce, aad}, {0, 1}, 116, seal).out;
    for (const Bytes& input : GoodAndSpoiled(sealed, 40, 2)) {
        Case(name + " DecryptWithTag", {key, input, nonce, aad}, {0, 1}, 100,
             [&](std::vector<Bytes>& in, uint8_t* out) {
                 return AEAD_DecryptWithTag(out, 100, in[1].data(), 116, in[0].data(), keyLength, in[2].data(),
                                            nonceLength, in[3].data(), 13, algorithm);
             });
    }
    if (nonceLength != 12) return;  // Ascon has the WithTag calls only
    for (const Bytes& t : GoodAndSpoiled(Bytes(sealed.begin() + 100, sealed.end()), 0, 1)) {
        Case(name + " Decrypt", {key, sealed, nonce, aad, t}, {0, 1, 4}, 100,
             [&](std::vector<Bytes>& in, uint8_t* out) {
                 return AEAD_Decrypt(out, 100, in[1].data(), 100, in[0].data(), keyLength, in[2].data(), 12,
                                     in[3].data(), 13, in[4].data(), 16, algorithm);
             });
        Case(name + " incremental", {key, sealed, nonce, aad, t}, {0, 1, 4}, 100,
             [&](std::vector<Bytes>& in, uint8_t* out) {
                 const int32_t h = Public(AEAD_InitKey(in[0].data(), keyLength, algorithm));
                 int32_t r = AEAD_SetNonce(h, in[2].data(), 12);
                 r |= AEAD_AddAAD(h, in[3].data(), 13);
                 r |= AEAD_StartDecrypt(h, in[4].data(), 16);
                 r |= AEAD_Update(h, out, 100, in[1].data(), 37);
                 r |= AEAD_Update(h, out + 37, 63, in[1].data() + 37, 63);
                 r |= AEAD_FinishDecrypt(h);
                 AEAD_Destroy(h);
                 return r;
             });
    }
}

void StreamsAndMacs() {
    Case("MAC_Bytes Poly1305", {Pattern(32, 1), Pattern(95, 2)}, {0, 1}, 16, [](std::vector<Bytes>& in, uint8_t* out) {
        return MAC_Bytes(out, 16, in[1].data(), 95, in[0].data(), 32, OPT_MAC_POLY1305);
    });
    Case("CIPHER_StreamBytes ChaCha20", {Pattern(32, 3), Pattern(150, 4), Pattern(12, 5)}, {0, 1}, 150,
         [](std::vector<Bytes>& in, uint8_t* out) {
             return CIPHER_StreamBytes(out, in[1].data(), 150, in[0].data(), 32, in[2].data(), 12, 1,
                                       OPT_STREAM_CHACHA20);
         });
    Case("CIPHER_StreamBytes Salsa20", {Pattern(16, 6), Pattern(70, 7), Pattern(8, 8)}, {0, 1}, 70,
         [](std::vector<Bytes>& in, uint8_t* out) {
             return CIPHER_StreamBytes(out, in[1].data(), 70, in[0].data(), 16, in[2].data(), 8, 0, OPT_STREAM_SALSA20);
         });
}

}  // namespace

int main() {
    Padding();
    BlockCipher();
    KeyUnwrap();
    Gcm();
    Aead(OPT_AEAD_AES_128_GCM, 16);
    Aead(OPT_AEAD_CHACHA20_POLY1305, 32);
    Aead(OPT_AEAD_ASCON_128, 16);
    Aead(OPT_AEAD_ASCON_128A, 16);
    StreamsAndMacs();
    std::printf("%s, %d mismatches\n", RUNNING_ON_VALGRIND ? "under memcheck" : "without valgrind", g_failures);
    return g_failures == 0 ? 0 : 1;
}
