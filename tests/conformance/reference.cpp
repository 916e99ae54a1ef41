// OpenSSL libcrypto as the independent reference. Linked into the conformance
// runner only.
#include "reference.h"

// PKCS1_MGF1 is the one MGF1 the library offers; it is marked deprecated
// since 3.0 but kept.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <openssl/provider.h>
#include <openssl/rsa.h>

#include <memory>

namespace ref {
namespace {

struct Providers {
    bool legacy;
    Providers() {
        // Loading one provider by hand stops the default one loading by
        // itself, so both are loaded.
        OSSL_PROVIDER_load(nullptr, "default");
        legacy = OSSL_PROVIDER_load(nullptr, "legacy") != nullptr;
    }
};

const Providers& Loaded() {
    static Providers p;
    return p;
}

template <typename T, void (*Free)(T*)>
struct Deleter {
    void operator()(T* p) const { Free(p); }
};
using CipherPtr = std::unique_ptr<EVP_CIPHER, Deleter<EVP_CIPHER, EVP_CIPHER_free>>;
using CipherCtx = std::unique_ptr<EVP_CIPHER_CTX, Deleter<EVP_CIPHER_CTX, EVP_CIPHER_CTX_free>>;
using MdPtr = std::unique_ptr<EVP_MD, Deleter<EVP_MD, EVP_MD_free>>;
using MdCtx = std::unique_ptr<EVP_MD_CTX, Deleter<EVP_MD_CTX, EVP_MD_CTX_free>>;
using MacPtr = std::unique_ptr<EVP_MAC, Deleter<EVP_MAC, EVP_MAC_free>>;
using MacCtx = std::unique_ptr<EVP_MAC_CTX, Deleter<EVP_MAC_CTX, EVP_MAC_CTX_free>>;

// Never a null pointer, also for empty data: some EVP calls refuse one.
const uint8_t* P(const ByteVec& v) {
    static const uint8_t empty = 0;
    return v.empty() ? &empty : v.data();
}

CipherPtr FetchCipher(const char* name) {
    Loaded();
    return CipherPtr(EVP_CIPHER_fetch(nullptr, name, nullptr));
}

bool RunMac(const char* name, const OSSL_PARAM* params, const ByteVec& key, const ByteVec& msg, size_t length,
            ByteVec* out) {
    Loaded();
    MacPtr mac(EVP_MAC_fetch(nullptr, name, nullptr));
    if (!mac) return false;
    MacCtx ctx(EVP_MAC_CTX_new(mac.get()));
    if (!ctx || EVP_MAC_init(ctx.get(), P(key), key.size(), params) != 1) return false;
    if (EVP_MAC_update(ctx.get(), P(msg), msg.size()) != 1) return false;
    out->assign(length, 0);
    size_t n = 0;
    if (EVP_MAC_final(ctx.get(), out->data(), &n, length) != 1) return false;
    out->resize(n);
    return true;
}

}  // namespace

bool LegacyLoaded() {
    return Loaded().legacy;
}

bool Digest(const char* name, const ByteVec& msg, ByteVec* out, size_t xofLength) {
    Loaded();
    MdPtr md(EVP_MD_fetch(nullptr, name, nullptr));
    MdCtx ctx(EVP_MD_CTX_new());
    if (!md || !ctx || EVP_DigestInit_ex(ctx.get(), md.get(), nullptr) != 1) return false;
    if (EVP_DigestUpdate(ctx.get(), P(msg), msg.size()) != 1) return false;
    if (xofLength > 0) {
        out->assign(xofLength, 0);
        return EVP_DigestFinalXOF(ctx.get(), out->data(), xofLength) == 1;
    }
    out->assign(EVP_MAX_MD_SIZE, 0);
    unsigned n = 0;
    if (EVP_DigestFinal_ex(ctx.get(), out->data(), &n) != 1) return false;
    out->resize(n);
    return true;
}

bool Crypt(const char* name, bool encrypt, const ByteVec& key, const ByteVec& iv, const ByteVec& in, ByteVec* out,
           bool pad) {
    CipherPtr c = FetchCipher(name);
    CipherCtx ctx(EVP_CIPHER_CTX_new());
    if (!c || !ctx) return false;
    EVP_CIPHER_CTX_set_flags(ctx.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    if (EVP_CipherInit_ex(ctx.get(), c.get(), nullptr, nullptr, nullptr, encrypt) != 1) return false;
    if (int(key.size()) != EVP_CIPHER_CTX_get_key_length(ctx.get()) &&
        EVP_CIPHER_CTX_set_key_length(ctx.get(), int(key.size())) != 1)
        return false;
    if (EVP_CipherInit_ex(ctx.get(), nullptr, nullptr, P(key), iv.empty() ? nullptr : iv.data(), encrypt) != 1)
        return false;
    EVP_CIPHER_CTX_set_padding(ctx.get(), pad ? 1 : 0);
    out->assign(in.size() + 64, 0);
    int n = 0, total = 0;
    if (!in.empty()) {
        if (EVP_CipherUpdate(ctx.get(), out->data(), &n, in.data(), int(in.size())) != 1 || n < 0) return false;
        total = n;
    }
    if (EVP_CipherFinal_ex(ctx.get(), out->data() + total, &n) != 1) return false;
    out->resize(size_t(total + n));
    return true;
}

bool Aead(const char* name, bool encrypt, const ByteVec& key, const ByteVec& iv, const ByteVec& aad, const ByteVec& in,
          ByteVec* out, ByteVec* tag) {
    CipherPtr c = FetchCipher(name);
    CipherCtx ctx(EVP_CIPHER_CTX_new());
    if (!c || !ctx) return false;
    int n = 0;
    if (EVP_CipherInit_ex(ctx.get(), c.get(), nullptr, nullptr, nullptr, encrypt) != 1 ||
        EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_SET_IVLEN, int(iv.size()), nullptr) != 1 ||
        EVP_CipherInit_ex(ctx.get(), nullptr, nullptr, key.data(), iv.data(), encrypt) != 1)
        return false;
    if (!encrypt && EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_SET_TAG, int(tag->size()), tag->data()) != 1)
        return false;
    if (!aad.empty() && EVP_CipherUpdate(ctx.get(), nullptr, &n, aad.data(), int(aad.size())) != 1) return false;
    out->assign(in.size() + 16, 0);
    int total = 0;
    if (!in.empty()) {
        if (EVP_CipherUpdate(ctx.get(), out->data(), &n, in.data(), int(in.size())) != 1) return false;
        total = n;
    }
    if (EVP_CipherFinal_ex(ctx.get(), out->data() + total, &n) != 1) return false;
    out->resize(size_t(total + n));
    if (encrypt && EVP_CIPHER_CTX_ctrl(ctx.get(), EVP_CTRL_AEAD_GET_TAG, int(tag->size()), tag->data()) != 1)
        return false;
    return true;
}

bool Mac(const char* name, const char* setting, const ByteVec& key, const ByteVec& msg, ByteVec* out) {
    const char* param = std::string(name) == "HMAC" ? OSSL_MAC_PARAM_DIGEST : OSSL_MAC_PARAM_CIPHER;
    OSSL_PARAM params[] = {setting ? OSSL_PARAM_construct_utf8_string(param, const_cast<char*>(setting), 0)
                                   : OSSL_PARAM_construct_end(),
                           OSSL_PARAM_construct_end()};
    return RunMac(name, params, key, msg, EVP_MAX_MD_SIZE, out);
}

bool Kmac(int strength, const ByteVec& key, const ByteVec& msg, const std::string& custom, size_t length,
          ByteVec* out) {
    OSSL_PARAM params[] = {
        OSSL_PARAM_construct_octet_string(OSSL_MAC_PARAM_CUSTOM, const_cast<char*>(custom.data()), custom.size()),
        OSSL_PARAM_construct_size_t(OSSL_MAC_PARAM_SIZE, &length), OSSL_PARAM_construct_end()};
    return RunMac(strength == 128 ? "KMAC128" : "KMAC256", params, key, msg, length, out);
}

bool Pbkdf2(const char* digest, const ByteVec& password, const ByteVec& salt, int iterations, size_t length,
            ByteVec* out) {
    Loaded();
    MdPtr md(EVP_MD_fetch(nullptr, digest, nullptr));
    if (!md) return false;
    out->assign(length, 0);
    return PKCS5_PBKDF2_HMAC(reinterpret_cast<const char*>(P(password)), int(password.size()), P(salt),
                             int(salt.size()), iterations, md.get(), int(length), out->data()) == 1;
}

bool Scrypt(const ByteVec& password, const ByteVec& salt, uint64_t n, uint64_t r, uint64_t p, size_t length,
            ByteVec* out) {
    Loaded();
    out->assign(length, 0);
    return EVP_PBE_scrypt(reinterpret_cast<const char*>(P(password)), password.size(), P(salt), salt.size(), n, r, p, 0,
                          out->data(), length) == 1;
}

bool Mgf1(const char* digest, const ByteVec& seed, size_t length, ByteVec* out) {
    Loaded();
    MdPtr md(EVP_MD_fetch(nullptr, digest, nullptr));
    if (!md) return false;
    out->assign(length, 0);
    return PKCS1_MGF1(out->data(), long(length), P(seed), long(seed.size()), md.get()) == 0;
}

}  // namespace ref
