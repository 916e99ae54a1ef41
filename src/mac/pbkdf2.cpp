// PBKDF2 with the padded HMAC key kept between iterations: the chaining
// values after the inner and the outer pad are computed once, and each later
// U costs two compressions of pre-formatted blocks (U with its padding, then
// the inner digest with its padding). The result equals the textbook HMAC.
// All key-dependent state is wiped before return.
#include "mac/pbkdf2.h"

#include <cstring>

#include "convert/codec.h"
#include "frame/memory.h"
#include "mac/hmac.h"
#include "util/bytes.h"
#include "util/wipe.h"
#include "verimond.h"

namespace {
struct Sha1Kind {
    using Context = Sha1Context;
    using Word = uint32_t;
    static constexpr size_t kBlock = 64, kOut = 20, kWords = 5, kLengthField = 8;
    static void Start(Context* c) { Sha1Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha1Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha1Final(o, c); }
    static void Compress(Word* h, const uint8_t* block) { Sha1Compress(h, block); }
};
struct Sha224Kind {
    using Context = Sha256Context;
    using Word = uint32_t;
    static constexpr size_t kBlock = 64, kOut = 28, kWords = 8, kLengthField = 8;
    static void Start(Context* c) { Sha224Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha256Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha224Final(o, c); }
    static void Compress(Word* h, const uint8_t* block) { Sha256Compress(h, block); }
};
struct Sha256Kind {
    using Context = Sha256Context;
    using Word = uint32_t;
    static constexpr size_t kBlock = 64, kOut = 32, kWords = 8, kLengthField = 8;
    static void Start(Context* c) { Sha256Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha256Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha256Final(o, c); }
    static void Compress(Word* h, const uint8_t* block) { Sha256Compress(h, block); }
};
struct Sha384Kind {
    using Context = Sha512Context;
    using Word = uint64_t;
    static constexpr size_t kBlock = 128, kOut = 48, kWords = 8, kLengthField = 16;
    static void Start(Context* c) { Sha384Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha512Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha384Final(o, c); }
    static void Compress(Word* h, const uint8_t* block) { Sha512Compress(h, block); }
};
struct Sha512Kind {
    using Context = Sha512Context;
    using Word = uint64_t;
    static constexpr size_t kBlock = 128, kOut = 64, kWords = 8, kLengthField = 16;
    static void Start(Context* c) { Sha512Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha512Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha512Final(o, c); }
    static void Compress(Word* h, const uint8_t* block) { Sha512Compress(h, block); }
};

template <class K>
void UpdateLong(typename K::Context* c, const uint8_t* data, size_t length) {
    while (length > 0) {
        uint32_t part = length > 0x40000000u ? 0x40000000u : uint32_t(length);
        K::Update(c, data, part);
        data += part;
        length -= part;
    }
}

template <class K>
void StoreWords(uint8_t* out, const typename K::Word* h) {
    for (size_t i = 0; i < K::kOut / sizeof(typename K::Word); ++i) {
        if constexpr (sizeof(typename K::Word) == 4) {
            Store32Be(out + 4 * i, h[i]);
        } else {
            Store64Be(out + 8 * i, h[i]);
        }
    }
}

// The keyed PRF: contexts that have absorbed the inner and the outer pad,
// and two blocks laid out as the final block of a digest over one pad block
// plus kOut bytes, whose first kOut bytes are the only part that changes.
template <class K>
struct KeyedPrf {
    typename K::Context inner, outer;
    uint8_t innerBlock[K::kBlock], outerBlock[K::kBlock];

    void Setup(const uint8_t* key, size_t keyLength) {
        uint8_t reduced[K::kOut];
        if (keyLength > K::kBlock) {
            typename K::Context c;
            K::Start(&c);
            UpdateLong<K>(&c, key, keyLength);
            K::Final(reduced, &c);
            WipeObject(c);
            key = reduced;
            keyLength = K::kOut;
        }
        uint8_t pad[K::kBlock];
        std::memset(pad, 0x36, K::kBlock);
        for (size_t i = 0; i < keyLength; ++i) pad[i] ^= key[i];
        K::Start(&inner);
        K::Update(&inner, pad, K::kBlock);
        for (size_t i = 0; i < K::kBlock; ++i) pad[i] ^= 0x36 ^ 0x5c;
        K::Start(&outer);
        K::Update(&outer, pad, K::kBlock);
        SecureWipe(pad, sizeof pad);
        SecureWipe(reduced, sizeof reduced);

        std::memset(innerBlock, 0, K::kBlock);
        innerBlock[K::kOut] = 0x80;
        Store64Be(innerBlock + K::kBlock - 8, uint64_t(K::kBlock + K::kOut) * 8);
        std::memcpy(outerBlock, innerBlock, K::kBlock);
    }

    // u = HMAC(key, u), u being kOut bytes.
    void Iterate(uint8_t* u) {
        typename K::Word h[K::kWords];
        std::memcpy(innerBlock, u, K::kOut);
        std::memcpy(h, inner.h, sizeof h);
        K::Compress(h, innerBlock);
        StoreWords<K>(outerBlock, h);
        std::memcpy(h, outer.h, sizeof h);
        K::Compress(h, outerBlock);
        StoreWords<K>(u, h);
        SecureWipe(h, sizeof h);
    }

    // out = HMAC(key, message) for a message continuing a running inner
    // context.
    void Finish(uint8_t* out, typename K::Context* running) {
        uint8_t t[K::kOut];
        K::Final(t, running);
        typename K::Context c = outer;
        K::Update(&c, t, K::kOut);
        K::Final(out, &c);
        SecureWipe(t, sizeof t);
        WipeObject(c);
    }
};

template <class K>
void Derive(uint8_t* output, size_t outputLength, const uint8_t* password, size_t passwordLength,
            const uint8_t* salt, size_t saltLength, uint32_t iterations) {
    KeyedPrf<K> prf;
    prf.Setup(password, passwordLength);
    typename K::Context salted = prf.inner, running;
    UpdateLong<K>(&salted, salt, saltLength);
    uint8_t u[K::kOut], t[K::kOut], index[4];
    for (uint32_t block = 1; outputLength > 0; ++block) {
        running = salted;
        Store32Be(index, block);
        K::Update(&running, index, 4);
        prf.Finish(u, &running);
        std::memcpy(t, u, K::kOut);
        for (uint32_t i = 1; i < iterations; ++i) {
            prf.Iterate(u);
            for (size_t k = 0; k < K::kOut; ++k) t[k] ^= u[k];
        }
        // A short last block is computed whole and cut.
        size_t take = outputLength < K::kOut ? outputLength : K::kOut;
        std::memcpy(output, t, take);
        output += take;
        outputLength -= take;
    }
    SecureWipe(u, sizeof u);
    SecureWipe(t, sizeof t);
    WipeObject(prf);
    WipeObject(salted);
    WipeObject(running);
}
}  // namespace

bool Pbkdf2Accepts(int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1:
        case OPT_HASH_SHA256:
        case OPT_HASH_SHA384:
        case OPT_HASH_SHA512:
        case OPT_HASH_SHA224: return true;
        default: return false;
    }
}

int32_t Pbkdf2Derive(uint8_t* output, size_t outputLength, const uint8_t* password, size_t passwordLength,
                     const uint8_t* salt, size_t saltLength, uint32_t iterations, int32_t nibble) {
    switch (nibble) {
        case OPT_HASH_SHA1:
            Derive<Sha1Kind>(output, outputLength, password, passwordLength, salt, saltLength, iterations);
            return 0;
        case OPT_HASH_SHA256:
            Derive<Sha256Kind>(output, outputLength, password, passwordLength, salt, saltLength, iterations);
            return 0;
        case OPT_HASH_SHA384:
            Derive<Sha384Kind>(output, outputLength, password, passwordLength, salt, saltLength, iterations);
            return 0;
        case OPT_HASH_SHA512:
            Derive<Sha512Kind>(output, outputLength, password, passwordLength, salt, saltLength, iterations);
            return 0;
        case OPT_HASH_SHA224:
            Derive<Sha224Kind>(output, outputLength, password, passwordLength, salt, saltLength, iterations);
            return 0;
        default: return BAD_PARAM_ERROR;
    }
}

int32_t Pbkdf2Bytes(uint8_t* derivedKey, int32_t derivedKeyLength, const uint8_t* password,
                    int32_t passwordLength, const uint8_t* salt, int32_t saltLength, int32_t iterations,
                    int32_t options) {
    if (derivedKey == nullptr || password == nullptr || salt == nullptr) return NULL_ERROR;
    if (derivedKeyLength <= 0 || passwordLength <= 0 || saltLength <= 0 || iterations <= 0) return BAD_PARAM_ERROR;
    const int32_t nibble = options & 0xF;
    if (!Pbkdf2Accepts(nibble)) return BAD_PARAM_ERROR;
    std::memset(derivedKey, 0, size_t(derivedKeyLength));
    return Pbkdf2Derive(derivedKey, size_t(derivedKeyLength), password, size_t(passwordLength), salt,
                        size_t(saltLength), uint32_t(iterations), nibble);
}

bool Pbkdf2DecodeSalt(const char* saltHex, uint8_t** salt, size_t* capacity) {
    *capacity = (std::strlen(saltHex) + 1) / 2;
    *salt = static_cast<uint8_t*>(SafeAlloc(*capacity));
    return HexDecodeLoose(*salt, *capacity, saltHex) == *capacity;
}

int32_t Pbkdf2Hex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                  const char* saltHex, int32_t iterations, int32_t options) {
    if (derivedKeyHex == nullptr || password == nullptr || saltHex == nullptr) return NULL_ERROR;
    if (hexLength <= 0 || derivedKeyLength <= 0 || iterations <= 0) return BAD_PARAM_ERROR;
    // This form never cuts its output.
    if (int64_t(hexLength) < 2 * int64_t(derivedKeyLength)) return SHORT_BUF_ERROR;
    uint8_t* salt;
    size_t saltLength;
    if (!Pbkdf2DecodeSalt(saltHex, &salt, &saltLength)) {
        SafeWipeFree(salt, saltLength);
        return BAD_FORMAT_ERROR;
    }
    uint8_t* derived = static_cast<uint8_t*>(SafeAlloc(size_t(derivedKeyLength)));
    int32_t result = Pbkdf2Derive(derived, size_t(derivedKeyLength), reinterpret_cast<const uint8_t*>(password),
                                  std::strlen(password), salt, saltLength, uint32_t(iterations), options & 0xF);
    if (result == 0) HexEncodeBounded(derivedKeyHex, size_t(hexLength) + 1, derived, size_t(derivedKeyLength));
    SafeWipeFree(derived, size_t(derivedKeyLength));
    SafeWipeFree(salt, saltLength);
    return result;
}
