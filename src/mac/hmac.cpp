// HMAC, FIPS 198-1: one generic construction over each digest's start,
// update and final. A key longer than the block is digested first; a key of
// exactly the block length is used as it stands. For SHA-3 the block is the
// rate.
#include "mac/hmac.h"

#include <cstring>

#include "util/wipe.h"
#include "verimond.h"

namespace {
struct Sha1Kind {
    using Context = Sha1Context;
    static constexpr uint32_t kBlock = 64, kOut = 20;
    static Context& Of(HmacDigestContext& d) { return d.sha1; }
    static void Start(Context* c) { Sha1Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha1Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha1Final(o, c); }
};
struct Sha224Kind {
    using Context = Sha256Context;
    static constexpr uint32_t kBlock = 64, kOut = 28;
    static Context& Of(HmacDigestContext& d) { return d.sha256; }
    static void Start(Context* c) { Sha224Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha256Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha224Final(o, c); }
};
struct Sha256Kind {
    using Context = Sha256Context;
    static constexpr uint32_t kBlock = 64, kOut = 32;
    static Context& Of(HmacDigestContext& d) { return d.sha256; }
    static void Start(Context* c) { Sha256Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha256Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha256Final(o, c); }
};
struct Sha384Kind {
    using Context = Sha512Context;
    static constexpr uint32_t kBlock = 128, kOut = 48;
    static Context& Of(HmacDigestContext& d) { return d.sha512; }
    static void Start(Context* c) { Sha384Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha512Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha384Final(o, c); }
};
struct Sha512Kind {
    using Context = Sha512Context;
    static constexpr uint32_t kBlock = 128, kOut = 64;
    static Context& Of(HmacDigestContext& d) { return d.sha512; }
    static void Start(Context* c) { Sha512Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha512Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha512Final(o, c); }
};
struct Md5Kind {
    using Context = Md5Context;
    static constexpr uint32_t kBlock = 64, kOut = 16;
    static Context& Of(HmacDigestContext& d) { return d.md5; }
    static void Start(Context* c) { Md5Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Md5Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Md5Final(o, c); }
};
struct Rmd160Kind {
    using Context = Ripemd160Context;
    static constexpr uint32_t kBlock = 64, kOut = 20;
    static Context& Of(HmacDigestContext& d) { return d.sha1; }
    static void Start(Context* c) { Ripemd160Start(c); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Ripemd160Update(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Ripemd160Final(o, c); }
};
template <uint32_t Bits, uint32_t Rate>
struct Sha3Kind {
    using Context = Sha3Context;
    static constexpr uint32_t kBlock = Rate, kOut = Bits / 8;
    static Context& Of(HmacDigestContext& d) { return d.sha3; }
    static void Start(Context* c) { Sha3Start(c, Bits); }
    static void Update(Context* c, const uint8_t* p, uint32_t n) { Sha3Absorb(c, p, n); }
    static void Final(uint8_t* o, Context* c) { Sha3Finish(o, kOut, c); }
};
using Sha3x224Kind = Sha3Kind<224, 144>;
using Sha3x256Kind = Sha3Kind<256, 136>;
using Sha3x384Kind = Sha3Kind<384, 104>;
using Sha3x512Kind = Sha3Kind<512, 72>;

template <typename Kind>
void Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength) {
    static_assert(Kind::kBlock <= kHmacMaxBlock && Kind::kOut <= 64);
    uint8_t reduced[64];
    if (keyLength > Kind::kBlock) {
        typename Kind::Context k;
        Kind::Start(&k);
        Kind::Update(&k, key, keyLength);
        Kind::Final(reduced, &k);
        WipeObject(k);
        key = reduced;
        keyLength = Kind::kOut;
    }
    std::memset(ctx->innerPad, 0x36, Kind::kBlock);
    std::memset(ctx->outerPad, 0x5c, Kind::kBlock);
    for (uint32_t i = 0; i < keyLength; ++i) {
        ctx->innerPad[i] ^= key[i];
        ctx->outerPad[i] ^= key[i];
    }
    SecureWipe(reduced, sizeof reduced);
    typename Kind::Context& d = Kind::Of(ctx->digest);
    Kind::Start(&d);
    Kind::Update(&d, ctx->innerPad, Kind::kBlock);
}

template <typename Kind>
int32_t Finish(uint8_t* output, HmacContext* ctx) {
    uint8_t inner[64];
    typename Kind::Context& d = Kind::Of(ctx->digest);
    Kind::Final(inner, &d);
    Kind::Start(&d);
    Kind::Update(&d, ctx->outerPad, Kind::kBlock);
    Kind::Update(&d, inner, Kind::kOut);
    Kind::Final(output, &d);
    SecureWipe(inner, sizeof inner);
    WipeObject(*ctx);
    return int32_t(Kind::kOut);
}

template <typename Kind>
int32_t OneShot(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                uint32_t keyLength) {
    HmacContext ctx;
    Start<Kind>(&ctx, key, keyLength);
    Kind::Update(&Kind::Of(ctx.digest), message, messageLength);
    return Finish<Kind>(output, &ctx);
}
}  // namespace

#define VERIMOND_HMAC_ONE_SHOT(Name, Kind)                                                       \
    void Hmac##Name(uint8_t* output, const uint8_t* message, uint32_t messageLength,              \
                    const uint8_t* key, uint32_t keyLength) {                                     \
        OneShot<Kind>(output, message, messageLength, key, keyLength);                            \
    }
#define VERIMOND_HMAC_KIND(Name, Kind)                                                           \
    VERIMOND_HMAC_ONE_SHOT(Name, Kind)                                                            \
    void Hmac##Name##Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength) {            \
        Start<Kind>(ctx, key, keyLength);                                                         \
    }                                                                                             \
    void Hmac##Name##Finish(uint8_t* output, HmacContext* ctx) { Finish<Kind>(output, ctx); }

VERIMOND_HMAC_KIND(Sha1, Sha1Kind)
VERIMOND_HMAC_KIND(Sha224, Sha224Kind)
VERIMOND_HMAC_KIND(Sha256, Sha256Kind)
VERIMOND_HMAC_KIND(Sha384, Sha384Kind)
VERIMOND_HMAC_KIND(Sha512, Sha512Kind)
VERIMOND_HMAC_ONE_SHOT(Md5, Md5Kind)
VERIMOND_HMAC_ONE_SHOT(Rmd160, Rmd160Kind)

#undef VERIMOND_HMAC_KIND
#undef VERIMOND_HMAC_ONE_SHOT

int32_t HmacSha3(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                 uint32_t keyLength, uint32_t bits) {
    switch (bits) {
        case 224: return OneShot<Sha3x224Kind>(output, message, messageLength, key, keyLength);
        case 256: return OneShot<Sha3x256Kind>(output, message, messageLength, key, keyLength);
        case 384: return OneShot<Sha3x384Kind>(output, message, messageLength, key, keyLength);
        case 512: return OneShot<Sha3x512Kind>(output, message, messageLength, key, keyLength);
        default: return 0;
    }
}

bool HmacSha3Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength, uint32_t bits) {
    switch (bits) {
        case 224: Start<Sha3x224Kind>(ctx, key, keyLength); return true;
        case 256: Start<Sha3x256Kind>(ctx, key, keyLength); return true;
        case 384: Start<Sha3x384Kind>(ctx, key, keyLength); return true;
        case 512: Start<Sha3x512Kind>(ctx, key, keyLength); return true;
        default: return false;
    }
}

int32_t HmacSha3Finish(uint8_t* output, HmacContext* ctx) {
    switch (ctx->digest.sha3.digestLength) {
        case 28: return Finish<Sha3x224Kind>(output, ctx);
        case 32: return Finish<Sha3x256Kind>(output, ctx);
        case 48: return Finish<Sha3x384Kind>(output, ctx);
        case 64: return Finish<Sha3x512Kind>(output, ctx);
        default: WipeObject(*ctx); return 0;
    }
}

int32_t HmacByOption(uint8_t out[64], const uint8_t* message, uint32_t messageLength, const uint8_t* key,
                     uint32_t keyLength, int32_t options) {
    switch (options & 0xF) {
        case OPT_HMAC_SHA1: return OneShot<Sha1Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_MD5: return OneShot<Md5Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA256: return OneShot<Sha256Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA384: return OneShot<Sha384Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA512: return OneShot<Sha512Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA224: return OneShot<Sha224Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_RMD160: return OneShot<Rmd160Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA3_224: return OneShot<Sha3x224Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA3_256: return OneShot<Sha3x256Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA3_384: return OneShot<Sha3x384Kind>(out, message, messageLength, key, keyLength);
        case OPT_HMAC_SHA3_512: return OneShot<Sha3x512Kind>(out, message, messageLength, key, keyLength);
        default: return -BAD_FLAG_ERROR;
    }
}

bool HmacStartByOption(HmacContext* ctx, int32_t nibble, const uint8_t* key, uint32_t keyLength) {
    switch (nibble) {
        case OPT_HMAC_SHA1: Start<Sha1Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA256: Start<Sha256Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA384: Start<Sha384Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA512: Start<Sha512Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA224: Start<Sha224Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA3_224: Start<Sha3x224Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA3_256: Start<Sha3x256Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA3_384: Start<Sha3x384Kind>(ctx, key, keyLength); return true;
        case OPT_HMAC_SHA3_512: Start<Sha3x512Kind>(ctx, key, keyLength); return true;
        default: return false;
    }
}

void HmacUpdateByOption(HmacContext* ctx, int32_t nibble, const uint8_t* data, uint32_t length) {
    switch (nibble) {
        case OPT_HMAC_SHA1: Sha1Update(&ctx->digest.sha1, data, length); break;
        case OPT_HMAC_SHA224:
        case OPT_HMAC_SHA256: Sha256Update(&ctx->digest.sha256, data, length); break;
        case OPT_HMAC_SHA384:
        case OPT_HMAC_SHA512: Sha512Update(&ctx->digest.sha512, data, length); break;
        case OPT_HMAC_SHA3_224:
        case OPT_HMAC_SHA3_256:
        case OPT_HMAC_SHA3_384:
        case OPT_HMAC_SHA3_512: Sha3Absorb(&ctx->digest.sha3, data, length); break;
        default: break;
    }
}

int32_t HmacFinishByOption(uint8_t out[64], HmacContext* ctx, int32_t nibble) {
    switch (nibble) {
        case OPT_HMAC_SHA1: return Finish<Sha1Kind>(out, ctx);
        case OPT_HMAC_SHA256: return Finish<Sha256Kind>(out, ctx);
        case OPT_HMAC_SHA384: return Finish<Sha384Kind>(out, ctx);
        case OPT_HMAC_SHA512: return Finish<Sha512Kind>(out, ctx);
        case OPT_HMAC_SHA224: return Finish<Sha224Kind>(out, ctx);
        case OPT_HMAC_SHA3_224: return Finish<Sha3x224Kind>(out, ctx);
        case OPT_HMAC_SHA3_256: return Finish<Sha3x256Kind>(out, ctx);
        case OPT_HMAC_SHA3_384: return Finish<Sha3x384Kind>(out, ctx);
        case OPT_HMAC_SHA3_512: return Finish<Sha3x512Kind>(out, ctx);
        default: WipeObject(*ctx); return 0;
    }
}
