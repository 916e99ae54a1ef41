// Throughput of the library's one-shot exports beside OpenSSL 3's EVP, in
// one run: each row times both sides in alternating batches on the same
// buffers and reports the median of the batches. Our side calls the exports
// once per message, as a caller would; the peer runs its own one-shot
// sequence with its algorithm objects fetched once beforehand.
//
//   verimond_bench [--quick] [--rounds N] [--filter TEXT] [--markdown] [--no-frame]
// --filter frame shows only the cost of the call frame.
#include <dlfcn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/params.h>
#include <openssl/rand.h>
#include <time.h>
#include <x86intrin.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "verimond.h"

namespace {

// ---- Exports that may not be in every build --------------------------------
// Some families arrive later than others; the rows that need them are left
// out, with a note, when the running library has no such symbol.
using MacBytesFn = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*,
                               int32_t, int32_t);
using CipherBytesFn = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*,
                                  int32_t, const unsigned char*, int32_t, const char*, int32_t);
using XofBytesFn = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, int32_t);
using Kdf2Fn = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                           int32_t, int32_t);
using ScryptFn = int32_t (*)(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                             int32_t, int32_t, int32_t, int32_t);

MacBytesFn g_macBytes;
CipherBytesFn g_cipherEncrypt, g_cipherDecrypt;
XofBytesFn g_xofBytes;
Kdf2Fn g_kdf2;
ScryptFn g_scrypt;

template <typename Fn>
Fn Lookup(const char* name) {
    return reinterpret_cast<Fn>(dlsym(RTLD_DEFAULT, name));
}

// ---- Clocks -----------------------------------------------------------------
uint64_t ReadClock(clockid_t clock) {
    timespec ts;
    clock_gettime(clock, &ts);
    return uint64_t(ts.tv_sec) * 1000000000ull + uint64_t(ts.tv_nsec);
}
uint64_t NowNs() { return ReadClock(CLOCK_MONOTONIC_RAW); }
// Batches are timed in the thread's own processor time, so that time spent
// off the processor (the machine may be shared) does not count.
uint64_t CpuNs() { return ReadClock(CLOCK_THREAD_CPUTIME_ID); }

// Time-stamp counter ticks per nanosecond, from 200 ms against the clock.
double EstimateTscGhz() {
    uint64_t t0 = NowNs(), c0 = __rdtsc();
    while (NowNs() - t0 < 200000000ull) {
    }
    uint64_t t1 = NowNs(), c1 = __rdtsc();
    return double(c1 - c0) / double(t1 - t0);
}

// ---- Data -------------------------------------------------------------------
constexpr size_t kMaxMessage = 1 << 20;
uint8_t* g_in;
uint8_t* g_out[2];     // ours, peer
uint8_t* g_cipher;     // prepared ciphertext for the decrypt rows
uint8_t g_tag[2][16];  // tags written by the seal rows
uint8_t g_sealTag[16]; // tag of the prepared ciphertext
uint8_t g_key[32], g_iv[16], g_salt[16];
const uint8_t kPassword[8] = {'p', 'a', 's', 's', 'w', 'o', 'r', 'd'};
char g_hex[256];

uint8_t* AlignedBuffer(size_t n) {
    void* p = nullptr;
    if (posix_memalign(&p, 64, n + 64) != 0) std::abort();
    std::memset(p, 0, n + 64);
    return static_cast<uint8_t*>(p);
}

void FillPattern(uint8_t* p, size_t n, uint32_t seed) {
    uint32_t x = seed;
    for (size_t i = 0; i < n; ++i) {
        x = x * 1664525u + 1013904223u;
        p[i] = uint8_t(x >> 24);
    }
}

// ---- Peer objects, fetched once ---------------------------------------------
EVP_MD *g_sha1, *g_sha256, *g_sha512, *g_sha3_256, *g_md5, *g_shake128;
EVP_CIPHER *g_aes128ecb, *g_aes256ecb, *g_aes128cbc, *g_aes256cbc, *g_aes128ctr, *g_aes256ctr;
EVP_CIPHER *g_aes128gcm, *g_aes256gcm, *g_chacha, *g_chachapoly, *g_tdeacbc;
EVP_MAC *g_hmac, *g_poly;

void FetchPeer() {
    g_sha1 = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    g_sha256 = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    g_sha512 = EVP_MD_fetch(nullptr, "SHA512", nullptr);
    g_sha3_256 = EVP_MD_fetch(nullptr, "SHA3-256", nullptr);
    g_md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
    g_shake128 = EVP_MD_fetch(nullptr, "SHAKE128", nullptr);
    g_aes128ecb = EVP_CIPHER_fetch(nullptr, "AES-128-ECB", nullptr);
    g_aes256ecb = EVP_CIPHER_fetch(nullptr, "AES-256-ECB", nullptr);
    g_aes128cbc = EVP_CIPHER_fetch(nullptr, "AES-128-CBC", nullptr);
    g_aes256cbc = EVP_CIPHER_fetch(nullptr, "AES-256-CBC", nullptr);
    g_aes128ctr = EVP_CIPHER_fetch(nullptr, "AES-128-CTR", nullptr);
    g_aes256ctr = EVP_CIPHER_fetch(nullptr, "AES-256-CTR", nullptr);
    g_aes128gcm = EVP_CIPHER_fetch(nullptr, "AES-128-GCM", nullptr);
    g_aes256gcm = EVP_CIPHER_fetch(nullptr, "AES-256-GCM", nullptr);
    g_chacha = EVP_CIPHER_fetch(nullptr, "ChaCha20", nullptr);
    g_chachapoly = EVP_CIPHER_fetch(nullptr, "ChaCha20-Poly1305", nullptr);
    g_tdeacbc = EVP_CIPHER_fetch(nullptr, "DES-EDE3-CBC", nullptr);
    g_hmac = EVP_MAC_fetch(nullptr, "HMAC", nullptr);
    g_poly = EVP_MAC_fetch(nullptr, "POLY1305", nullptr);
}

// ---- The two sides of each row -------------------------------------------------
void PeerDigest(const EVP_MD* md, size_t n) {
    unsigned int len = 0;
    EVP_Digest(g_in, n, g_out[1], &len, md, nullptr);
}

void PeerCipher(const EVP_CIPHER* c, bool encrypt, const uint8_t* in, size_t n, bool noPad) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    int l1 = 0, l2 = 0;
    if (encrypt) {
        EVP_EncryptInit_ex2(ctx, c, g_key, g_iv, nullptr);
        if (noPad) EVP_CIPHER_CTX_set_padding(ctx, 0);
        EVP_EncryptUpdate(ctx, g_out[1], &l1, in, int(n));
        EVP_EncryptFinal_ex(ctx, g_out[1] + l1, &l2);
    } else {
        EVP_DecryptInit_ex2(ctx, c, g_key, g_iv, nullptr);
        if (noPad) EVP_CIPHER_CTX_set_padding(ctx, 0);
        EVP_DecryptUpdate(ctx, g_out[1], &l1, in, int(n));
        EVP_DecryptFinal_ex(ctx, g_out[1] + l1, &l2);
    }
    EVP_CIPHER_CTX_free(ctx);
}

void PeerAeadSeal(const EVP_CIPHER* c, size_t n, uint8_t* out, uint8_t* tag) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    int l1 = 0, l2 = 0;
    EVP_EncryptInit_ex2(ctx, c, g_key, g_iv, nullptr);
    EVP_EncryptUpdate(ctx, out, &l1, g_in, int(n));
    EVP_EncryptFinal_ex(ctx, out + l1, &l2);
    EVP_CIPHER_CTX_ctrl(ctx, EVP_CTRL_AEAD_GET_TAG, 16, tag);
    EVP_CIPHER_CTX_free(ctx);
}

bool PeerAeadOpen(const EVP_CIPHER* c, size_t n) {
    EVP_CIPHER_CTX* ctx = EVP_CIPHER_CTX_new();
    int l1 = 0, l2 = 0;
    EVP_DecryptInit_ex2(ctx, c, g_key, g_iv, nullptr);
    EVP_DecryptUpdate(ctx, g_out[1], &l1, g_cipher, int(n));
    EVP_CIPHER_CTX_ctrl(ctx, EVP_CTRL_AEAD_SET_TAG, 16, g_sealTag);
    bool ok = EVP_DecryptFinal_ex(ctx, g_out[1] + l1, &l2) > 0;
    EVP_CIPHER_CTX_free(ctx);
    return ok;
}

void PeerMac(EVP_MAC* mac, const char* digest, size_t n) {
    EVP_MAC_CTX* ctx = EVP_MAC_CTX_new(mac);
    OSSL_PARAM params[2] = {OSSL_PARAM_construct_end(), OSSL_PARAM_construct_end()};
    if (digest != nullptr) params[0] = OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, const_cast<char*>(digest), 0);
    EVP_MAC_init(ctx, g_key, 32, params);
    EVP_MAC_update(ctx, g_in, n);
    size_t len = 0;
    EVP_MAC_final(ctx, g_out[1], &len, 64);
    EVP_MAC_CTX_free(ctx);
}

void OursCipher(const char* text, bool encrypt, const uint8_t* in, size_t n, int bits, const char* mode, bool tdea) {
    if (g_cipherEncrypt != nullptr) {
        CipherBytesFn fn = encrypt ? g_cipherEncrypt : g_cipherDecrypt;
        int32_t ivLength = std::strncmp(mode, "ECB", 3) == 0 ? 0 : (tdea ? 8 : 16);
        fn(g_out[0], int32_t(n), in, int32_t(n), g_key, tdea ? 24 : bits / 8, g_iv, ivLength, text, 0);
        return;
    }
    // Without the generic calls, the per-cipher family does the same work.
    const uint8_t* iv = std::strncmp(mode, "ECB", 3) == 0 ? nullptr : g_iv;
    int32_t dir = encrypt ? 1 : 0;
    if (tdea) TDEA_BytesMode(g_out[0], in, int32_t(n), g_key, dir, mode, iv);
    else if (bits == 128) AES128_BytesMode(g_out[0], in, int32_t(n), g_key, dir, mode, iv);
    else AES256_BytesMode(g_out[0], in, int32_t(n), g_key, dir, mode, iv);
}

// ---- Rows ------------------------------------------------------------------------
enum class Kind { Bytes, PerCall };

struct Row {
    const char* name;
    Kind kind;
    void (*ours)(size_t n);
    void (*peer)(size_t n);
    size_t (*compareLength)(size_t n);  // bytes of output both sides must agree on; null for none
    void (*prepare)(size_t n);          // set-up outside the timing, or null
    bool (*available)();                // null: always
    const char* missing;                // what is absent when unavailable
    size_t largest = 0;                 // in place of 1 MiB where a call takes less
};

size_t Fixed20(size_t) { return 20; }
size_t Fixed16(size_t) { return 16; }
size_t Fixed32(size_t) { return 32; }
size_t Fixed64(size_t) { return 64; }
size_t Whole(size_t n) { return n; }

bool HaveMac() { return g_macBytes != nullptr; }
bool HaveXof() { return g_xofBytes != nullptr; }
bool HaveKdf2() { return g_kdf2 != nullptr; }
bool HaveScrypt() { return g_scrypt != nullptr; }

// Ciphertext and tag for the open and decrypt rows, made by the peer.
void PrepareGcm128(size_t n) { PeerAeadSeal(g_aes128gcm, n, g_cipher, g_sealTag); }
void PrepareGcm256(size_t n) { PeerAeadSeal(g_aes256gcm, n, g_cipher, g_sealTag); }
void PrepareCbc128(size_t n) { FillPattern(g_cipher, n, 7); }

constexpr int kKdf2Iterations = 10000;

const Row kRows[] = {
    {"SHA-1", Kind::Bytes, [](size_t n) { HASH_Bytes(g_out[0], 20, g_in, int32_t(n), OPT_HASH_SHA1); },
     [](size_t n) { PeerDigest(g_sha1, n); }, Fixed20, nullptr, nullptr, nullptr},
    {"SHA-256", Kind::Bytes, [](size_t n) { HASH_Bytes(g_out[0], 32, g_in, int32_t(n), OPT_HASH_SHA256); },
     [](size_t n) { PeerDigest(g_sha256, n); }, Fixed32, nullptr, nullptr, nullptr},
    {"SHA-512", Kind::Bytes, [](size_t n) { HASH_Bytes(g_out[0], 64, g_in, int32_t(n), OPT_HASH_SHA512); },
     [](size_t n) { PeerDigest(g_sha512, n); }, Fixed64, nullptr, nullptr, nullptr},
    {"SHA3-256", Kind::Bytes, [](size_t n) { HASH_Bytes(g_out[0], 32, g_in, int32_t(n), OPT_HASH_SHA3_256); },
     [](size_t n) { PeerDigest(g_sha3_256, n); }, Fixed32, nullptr, nullptr, nullptr},
    {"MD5", Kind::Bytes, [](size_t n) { HASH_Bytes(g_out[0], 16, g_in, int32_t(n), OPT_HASH_MD5); },
     [](size_t n) { PeerDigest(g_md5, n); }, Fixed16, nullptr, nullptr, nullptr},
    {"SHAKE128 (32 B out)", Kind::Bytes, [](size_t n) { g_xofBytes(g_out[0], 32, g_in, int32_t(n), 0x203); },
     [](size_t n) {
         EVP_MD_CTX* ctx = EVP_MD_CTX_new();
         EVP_DigestInit_ex(ctx, g_shake128, nullptr);
         EVP_DigestUpdate(ctx, g_in, n);
         EVP_DigestFinalXOF(ctx, g_out[1], 32);
         EVP_MD_CTX_free(ctx);
     },
     Fixed32, nullptr, HaveXof, "XOF_Bytes"},
    {"HMAC-SHA-256", Kind::Bytes,
     [](size_t n) { g_macBytes(g_out[0], 32, g_in, int32_t(n), g_key, 32, 3); },
     [](size_t n) { PeerMac(g_hmac, "SHA256", n); }, Fixed32, nullptr, HaveMac, "MAC_Bytes"},
    {"Poly1305", Kind::Bytes, [](size_t n) { g_macBytes(g_out[0], 16, g_in, int32_t(n), g_key, 32, 0x200); },
     [](size_t n) { PeerMac(g_poly, nullptr, n); }, Fixed16, nullptr, HaveMac, "MAC_Bytes"},
    {"AES-128-ECB", Kind::Bytes, [](size_t n) { OursCipher("aes128/ecb/nopad", true, g_in, n, 128, "ECB", false); },
     [](size_t n) { PeerCipher(g_aes128ecb, true, g_in, n, true); }, Whole, nullptr, nullptr, nullptr},
    {"AES-256-ECB", Kind::Bytes, [](size_t n) { OursCipher("aes256/ecb/nopad", true, g_in, n, 256, "ECB", false); },
     [](size_t n) { PeerCipher(g_aes256ecb, true, g_in, n, true); }, Whole, nullptr, nullptr, nullptr},
    {"AES-128-CBC enc", Kind::Bytes,
     [](size_t n) { OursCipher("aes128/cbc/nopad", true, g_in, n, 128, "CBC", false); },
     [](size_t n) { PeerCipher(g_aes128cbc, true, g_in, n, true); }, Whole, nullptr, nullptr, nullptr},
    {"AES-128-CBC dec", Kind::Bytes,
     [](size_t n) { OursCipher("aes128/cbc/nopad", false, g_cipher, n, 128, "CBC", false); },
     [](size_t n) { PeerCipher(g_aes128cbc, false, g_cipher, n, true); }, Whole, PrepareCbc128, nullptr, nullptr},
    {"AES-256-CBC enc", Kind::Bytes,
     [](size_t n) { OursCipher("aes256/cbc/nopad", true, g_in, n, 256, "CBC", false); },
     [](size_t n) { PeerCipher(g_aes256cbc, true, g_in, n, true); }, Whole, nullptr, nullptr, nullptr},
    {"AES-256-CBC dec", Kind::Bytes,
     [](size_t n) { OursCipher("aes256/cbc/nopad", false, g_cipher, n, 256, "CBC", false); },
     [](size_t n) { PeerCipher(g_aes256cbc, false, g_cipher, n, true); }, Whole, PrepareCbc128, nullptr, nullptr},
    {"AES-128-CTR", Kind::Bytes, [](size_t n) { OursCipher("aes128/ctr", true, g_in, n, 128, "CTR", false); },
     [](size_t n) { PeerCipher(g_aes128ctr, true, g_in, n, false); }, Whole, nullptr, nullptr, nullptr},
    {"AES-256-CTR", Kind::Bytes, [](size_t n) { OursCipher("aes256/ctr", true, g_in, n, 256, "CTR", false); },
     [](size_t n) { PeerCipher(g_aes256ctr, true, g_in, n, false); }, Whole, nullptr, nullptr, nullptr},
    {"AES-128-GCM seal", Kind::Bytes,
     [](size_t n) {
         GCM_Encrypt(g_out[0], int32_t(n), g_tag[0], 16, g_in, int32_t(n), g_key, 16, g_iv, 12, nullptr, 0, 0);
     },
     [](size_t n) { PeerAeadSeal(g_aes128gcm, n, g_out[1], g_tag[1]); }, Whole, nullptr, nullptr, nullptr},
    {"AES-128-GCM open", Kind::Bytes,
     [](size_t n) {
         GCM_Decrypt(g_out[0], int32_t(n), g_cipher, int32_t(n), g_key, 16, g_iv, 12, nullptr, 0, g_sealTag, 16, 0);
     },
     [](size_t n) { PeerAeadOpen(g_aes128gcm, n); }, Whole, PrepareGcm128, nullptr, nullptr},
    {"AES-256-GCM seal", Kind::Bytes,
     [](size_t n) {
         GCM_Encrypt(g_out[0], int32_t(n), g_tag[0], 16, g_in, int32_t(n), g_key, 32, g_iv, 12, nullptr, 0, 0);
     },
     [](size_t n) { PeerAeadSeal(g_aes256gcm, n, g_out[1], g_tag[1]); }, Whole, nullptr, nullptr, nullptr},
    {"AES-256-GCM open", Kind::Bytes,
     [](size_t n) {
         GCM_Decrypt(g_out[0], int32_t(n), g_cipher, int32_t(n), g_key, 32, g_iv, 12, nullptr, 0, g_sealTag, 16, 0);
     },
     [](size_t n) { PeerAeadOpen(g_aes256gcm, n); }, Whole, PrepareGcm256, nullptr, nullptr},
    {"ChaCha20", Kind::Bytes,
     [](size_t n) {
         CIPHER_StreamBytes(g_out[0], g_in, int32_t(n), g_key, 32, g_iv + 4, 12, 1, OPT_STREAM_CHACHA20);
     },
     [](size_t n) { PeerCipher(g_chacha, true, g_in, n, false); }, Whole, nullptr, nullptr, nullptr},
    {"ChaCha20-Poly1305 seal", Kind::Bytes,
     [](size_t n) {
         AEAD_Encrypt(g_out[0], int32_t(n), g_tag[0], 16, g_in, int32_t(n), g_key, 32, g_iv, 12, nullptr, 0,
                      OPT_AEAD_CHACHA20_POLY1305);
     },
     [](size_t n) { PeerAeadSeal(g_chachapoly, n, g_out[1], g_tag[1]); }, Whole, nullptr, nullptr, nullptr},
    {"3DES-CBC enc", Kind::Bytes, [](size_t n) { OursCipher("tdea/cbc/nopad", true, g_in, n, 192, "CBC", true); },
     [](size_t n) { PeerCipher(g_tdeacbc, true, g_in, n, true); }, Whole, nullptr, nullptr, nullptr},
    {"CRC-32 (peer: zlib)", Kind::Bytes,
     [](size_t n) {
         uint32_t c = uint32_t(CRC_Bytes(g_in, int32_t(n), 0));
         std::memcpy(g_out[0], &c, 4);
     },
     [](size_t n) {
         uint32_t c = uint32_t(crc32(0L, g_in, uInt(n)));
         std::memcpy(g_out[1], &c, 4);
     },
     [](size_t) -> size_t { return 4; }, nullptr, nullptr, nullptr},
    // One request of the generator gives at most 64 KiB.
    {"RNG_KeyBytes (peer: RAND_bytes)", Kind::Bytes, [](size_t n) { RNG_KeyBytes(g_out[0], int32_t(n), nullptr, 0); },
     [](size_t n) { RAND_bytes(g_out[1], int(n)); }, nullptr, nullptr, nullptr, nullptr, 65536},
    {"PBKDF2-HMAC-SHA-256, 10000 it.", Kind::PerCall,
     [](size_t) { g_kdf2(g_out[0], 32, kPassword, 8, g_salt, 16, kKdf2Iterations, 3); },
     [](size_t) {
         PKCS5_PBKDF2_HMAC(reinterpret_cast<const char*>(kPassword), 8, g_salt, 16, kKdf2Iterations, g_sha256, 32,
                           g_out[1]);
     },
     Fixed32, nullptr, HaveKdf2, "PBE_Kdf2"},
    {"scrypt N=16384 r=8 p=1", Kind::PerCall,
     [](size_t) { g_scrypt(g_out[0], 64, kPassword, 8, g_salt, 16, 16384, 8, 1, 0); },
     [](size_t) {
         EVP_PBE_scrypt(reinterpret_cast<const char*>(kPassword), 8, g_salt, 16, 16384, 8, 1, 64u << 20, g_out[1],
                        64);
     },
     Fixed64, nullptr, HaveScrypt, "PBE_Scrypt"},
};

// ---- Timing ------------------------------------------------------------------------
struct Options {
    int rounds = 21;
    uint64_t batchNs = 1000000;  // aim of one timed batch
    const char* filter = nullptr;
    bool markdown = false;
    bool frame = true;
};

// Calls per batch so that a batch lasts about the aim.
uint64_t Calibrate(void (*fn)(size_t), size_t n, uint64_t aimNs) {
    uint64_t iters = 1;
    for (;;) {
        uint64_t t0 = CpuNs();
        for (uint64_t i = 0; i < iters; ++i) fn(n);
        uint64_t dt = CpuNs() - t0;
        if (dt >= aimNs / 8 || iters >= (1u << 24)) {
            uint64_t want = dt == 0 ? iters * 8 : uint64_t(double(iters) * double(aimNs) / double(dt));
            return want < 1 ? 1 : want;
        }
        iters *= 4;
    }
}

double BatchNsPerCall(void (*fn)(size_t), size_t n, uint64_t iters) {
    uint64_t t0 = CpuNs();
    for (uint64_t i = 0; i < iters; ++i) fn(n);
    return double(CpuNs() - t0) / double(iters);
}

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

struct Result {
    double oursNs, peerNs;  // per call, medians
    double ratio;           // median of peer/ours over adjacent batch pairs
};

Result Measure(const Row& row, size_t n, const Options& opt) {
    int rounds = opt.rounds;
    uint64_t aim = opt.batchNs;
    if (row.kind == Kind::PerCall) rounds = std::max(3, rounds / 2 | 1);
    uint64_t itersOurs = Calibrate(row.ours, n, aim), itersPeer = Calibrate(row.peer, n, aim);
    std::vector<double> ours, peer, ratios;
    for (int r = 0; r < rounds; ++r) {
        // Alternate which side goes first, so that neither always runs on a
        // cache the other has just warmed or cooled.
        if (r % 2 == 0) {
            ours.push_back(BatchNsPerCall(row.ours, n, itersOurs));
            peer.push_back(BatchNsPerCall(row.peer, n, itersPeer));
        } else {
            peer.push_back(BatchNsPerCall(row.peer, n, itersPeer));
            ours.push_back(BatchNsPerCall(row.ours, n, itersOurs));
        }
        // A pair of batches run back to back shares the machine's state of
        // the moment; its ratio is steadier than a ratio of medians.
        ratios.push_back(peer.back() / ours.back());
    }
    return {Median(ours), Median(peer), Median(ratios)};
}

std::string SizeText(size_t n) {
    if (n >= (1u << 20)) return std::to_string(n >> 20) + " MiB";
    if (n >= 1024) return std::to_string(n >> 10) + " KiB";
    return std::to_string(n) + " B";
}

void PrintHeader(const Options& opt) {
    if (opt.markdown) {
        std::printf("| Algorithm | Size | Ours MB/s | Ours c/B | Peer MB/s | Peer c/B | Ours/peer |\n");
        std::printf("|---|---:|---:|---:|---:|---:|---:|\n");
    } else {
        std::printf("%-34s %8s %10s %8s %10s %8s %9s\n", "Algorithm", "Size", "Ours MB/s", "c/B", "Peer MB/s", "c/B",
                    "Ours/peer");
    }
}

void PrintBytesRow(const Options& opt, const char* name, size_t n, const Result& r, double ghz, const char* flag) {
    double oursMb = double(n) / r.oursNs * 1000.0, peerMb = double(n) / r.peerNs * 1000.0;
    double oursCpb = r.oursNs * ghz / double(n), peerCpb = r.peerNs * ghz / double(n);
    double ratio = r.ratio;
    if (opt.markdown) {
        std::printf("| %s%s | %s | %.0f | %.2f | %.0f | %.2f | %.2f |\n", name, flag, SizeText(n).c_str(), oursMb,
                    oursCpb, peerMb, peerCpb, ratio);
    } else {
        std::printf("%-34s %8s %10.0f %8.2f %10.0f %8.2f %9.2f%s\n", name, SizeText(n).c_str(), oursMb, oursCpb, peerMb,
                    peerCpb, ratio, flag);
    }
}

void PrintCallRow(const Options& opt, const char* name, const Result& r, const char* flag) {
    double ratio = r.ratio;
    if (opt.markdown) {
        std::printf("| %s%s | per call | %.2f ms | | %.2f ms | | %.2f |\n", name, flag, r.oursNs / 1e6, r.peerNs / 1e6,
                    ratio);
    } else {
        std::printf("%-34s %8s %8.2f ms %8s %8.2f ms %8s %9.2f%s\n", name, "call", r.oursNs / 1e6, "", r.peerNs / 1e6,
                    "", ratio, flag);
    }
}

// What one exported call costs with next to no work in it.
void FrameSection(const Options& opt) {
    struct Probe {
        const char* name;
        void (*fn)(size_t);
    };
    static const Probe probes[] = {
        {"HASH_Length (enter, leave)", [](size_t) { HASH_Length(OPT_HASH_SHA256); }},
        {"API_ErrorCode (light stir)", [](size_t) { API_ErrorCode(); }},
        {"CNV_HexStrFromBytes 1 B (stir, enter)", [](size_t) { CNV_HexStrFromBytes(g_hex, 2, g_in, 1); }},
        {"HASH_Bytes SHA-256, 0 B", [](size_t) { HASH_Bytes(g_out[0], 32, g_in, 0, OPT_HASH_SHA256); }},
        {"RNG_NonceData 16 B", [](size_t) { RNG_NonceData(g_out[0], 16); }},
        {"RNG_KeyBytes 16 B (full stir)", [](size_t) { RNG_KeyBytes(g_out[0], 16, nullptr, 0); }},
    };
    if (opt.markdown) {
        std::printf("| Call | ns per call |\n|---|---:|\n");
    } else {
        std::printf("%-40s %12s\n", "Call", "ns per call");
    }
    for (const Probe& p : probes) {
        uint64_t iters = Calibrate(p.fn, 0, opt.batchNs);
        std::vector<double> v;
        for (int r = 0; r < opt.rounds; ++r) v.push_back(BatchNsPerCall(p.fn, 0, iters));
        if (opt.markdown) std::printf("| %s | %.1f |\n", p.name, Median(v));
        else std::printf("%-40s %12.1f\n", p.name, Median(v));
    }
    std::printf("\n");
}

void PrintMachine(double ghz) {
    char model[256] = "unknown";
    if (FILE* f = std::fopen("/proc/cpuinfo", "r")) {
        char line[512];
        while (std::fgets(line, sizeof line, f)) {
            if (std::strncmp(line, "model name", 10) == 0) {
                const char* colon = std::strchr(line, ':');
                if (colon != nullptr) {
                    std::snprintf(model, sizeof model, "%s", colon + 2);
                    model[std::strcspn(model, "\n")] = '\0';
                }
                break;
            }
        }
        std::fclose(f);
    }
    const char* cpu = std::getenv("VERIMOND_CPU");
    std::printf("CPU %s, TSC %.3f GHz; peer %s; VERIMOND_CPU=%s\n\n", model, ghz, OpenSSL_version(OPENSSL_VERSION),
                cpu != nullptr ? cpu : "(unset)");
}

}  // namespace

int main(int argc, char** argv) {
    Options opt;
    std::vector<size_t> sizes = {64, 1024, 16384, kMaxMessage};
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--quick") {
            opt.rounds = 7;
            opt.batchNs = 500000;
        } else if (a == "--rounds" && i + 1 < argc) {
            opt.rounds = std::max(1, std::atoi(argv[++i])) | 1;
        } else if (a == "--filter" && i + 1 < argc) {
            opt.filter = argv[++i];
        } else if (a == "--markdown") {
            opt.markdown = true;
        } else if (a == "--no-frame") {
            opt.frame = false;
        } else {
            std::fprintf(stderr, "usage: %s [--quick] [--rounds N] [--filter TEXT] [--markdown] [--no-frame]\n",
                         argv[0]);
            return 2;
        }
    }

    g_macBytes = Lookup<MacBytesFn>("MAC_Bytes");
    g_cipherEncrypt = Lookup<CipherBytesFn>("CIPHER_EncryptBytes");
    g_cipherDecrypt = Lookup<CipherBytesFn>("CIPHER_DecryptBytes");
    g_xofBytes = Lookup<XofBytesFn>("XOF_Bytes");
    g_kdf2 = Lookup<Kdf2Fn>("PBE_Kdf2");
    g_scrypt = Lookup<ScryptFn>("PBE_Scrypt");
    FetchPeer();

    g_in = AlignedBuffer(kMaxMessage);
    g_out[0] = AlignedBuffer(kMaxMessage);
    g_out[1] = AlignedBuffer(kMaxMessage);
    g_cipher = AlignedBuffer(kMaxMessage);
    FillPattern(g_in, kMaxMessage, 1);
    FillPattern(g_key, sizeof g_key, 2);
    FillPattern(g_iv, sizeof g_iv, 3);
    FillPattern(g_salt, sizeof g_salt, 4);
    g_iv[0] = 1, g_iv[1] = g_iv[2] = g_iv[3] = 0;  // ChaCha20's counter word for the peer: block 1
    RNG_KeyBytes(g_out[0], 16, nullptr, 0);         // the generator instantiates on first use

    double ghz = EstimateTscGhz();
    PrintMachine(ghz);
    bool frameOnly = opt.filter != nullptr && std::strcmp(opt.filter, "frame") == 0;
    if (opt.frame && (opt.filter == nullptr || frameOnly)) FrameSection(opt);
    if (frameOnly) return 0;
    PrintHeader(opt);

    std::vector<std::string> notes;
    for (const Row& row : kRows) {
        if (opt.filter != nullptr && std::strstr(row.name, opt.filter) == nullptr) continue;
        if (row.available != nullptr && !row.available()) {
            notes.push_back(std::string(row.name) + ": left out, this library has no " + row.missing);
            continue;
        }
        std::vector<size_t> rowSizes = row.kind == Kind::PerCall ? std::vector<size_t>{0} : sizes;
        if (row.largest != 0) rowSizes.back() = row.largest;
        for (size_t n : rowSizes) {
            if (row.prepare != nullptr) row.prepare(n);
            std::memset(g_out[0], 0, n + 64);
            std::memset(g_out[1], 0xA5, n + 64);
            row.ours(n);
            row.peer(n);
            const char* flag = "";
            if (row.compareLength != nullptr) {
                size_t len = row.compareLength(n);
                if (std::memcmp(g_out[0], g_out[1], len) != 0 || std::memcmp(g_tag[0], g_tag[1], 16) != 0) {
                    flag = "  OUTPUT DIFFERS";
                }
            }
            Result r = Measure(row, n, opt);
            if (row.kind == Kind::PerCall) PrintCallRow(opt, row.name, r, flag);
            else PrintBytesRow(opt, row.name, n, r, ghz, flag);
            std::fflush(stdout);
        }
    }
    if (g_cipherEncrypt == nullptr) notes.push_back("AES and 3DES rows: the per-cipher calls (AES128_BytesMode...), since this library has no CIPHER_EncryptBytes");
    for (const std::string& note : notes) std::printf("note: %s\n", note.c_str());
    return 0;
}
