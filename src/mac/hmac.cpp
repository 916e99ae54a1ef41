// HMAC, FIPS 198-1: one generic construction over each digest's start,
// update and final. A key longer than the block is digested first; a key of
// exactly the block length is used as it stands.
#include "mac/hmac.h"

#include <cstring>

#include "util/wipe.h"

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

template <typename Kind>
void Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength) {
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
void Finish(uint8_t* output, HmacContext* ctx) {
    uint8_t inner[64];
    typename Kind::Context& d = Kind::Of(ctx->digest);
    Kind::Final(inner, &d);
    Kind::Start(&d);
    Kind::Update(&d, ctx->outerPad, Kind::kBlock);
    Kind::Update(&d, inner, Kind::kOut);
    Kind::Final(output, &d);
    SecureWipe(inner, sizeof inner);
    WipeObject(*ctx);
}

template <typename Kind>
void OneShot(uint8_t* output, const uint8_t* message, uint32_t messageLength, const uint8_t* key,
             uint32_t keyLength) {
    HmacContext ctx;
    Start<Kind>(&ctx, key, keyLength);
    Kind::Update(&Kind::Of(ctx.digest), message, messageLength);
    Finish<Kind>(output, &ctx);
}
}  // namespace

#define VERIMOND_HMAC_KIND(Name, Kind)                                                           \
    void Hmac##Name(uint8_t* output, const uint8_t* message, uint32_t messageLength,              \
                    const uint8_t* key, uint32_t keyLength) {                                     \
        OneShot<Kind>(output, message, messageLength, key, keyLength);                            \
    }                                                                                             \
    void Hmac##Name##Start(HmacContext* ctx, const uint8_t* key, uint32_t keyLength) {            \
        Start<Kind>(ctx, key, keyLength);                                                         \
    }                                                                                             \
    void Hmac##Name##Finish(uint8_t* output, HmacContext* ctx) { Finish<Kind>(output, ctx); }

VERIMOND_HMAC_KIND(Sha1, Sha1Kind)
VERIMOND_HMAC_KIND(Sha224, Sha224Kind)
VERIMOND_HMAC_KIND(Sha256, Sha256Kind)
VERIMOND_HMAC_KIND(Sha384, Sha384Kind)
VERIMOND_HMAC_KIND(Sha512, Sha512Kind)
