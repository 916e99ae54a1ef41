// The block-mode engine (SP 800-38A): ECB, CBC, CFB with whole-block
// feedback, OFB and CTR over any block cipher that supplies a small traits
// struct:
//
//   using Context;                 the cipher's record, with direction, mode
//   static constexpr size_t kBlock;
//   Encrypt(ctx, in, out)           forward transform, in == out allowed
//   Decrypt(ctx, in, out)           inverse transform (ECB and CBC only)
//   LoadRegister(ctx, bytes)        the record's iv as block bytes
//   StoreRegister(ctx, bytes)
//
// The engine keeps no offset within a block and buffers nothing: every call
// starts on a block boundary with the register the last call left. A part
// block in CFB, OFB or CTR is therefore meant to be the last data of a
// message; its unused keystream is dropped.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "util/wipe.h"
#include "verimond.h"

namespace mode_engine {

enum : uint32_t { kEcb = 0, kCbc = 1, kCfb = 2, kOfb = 3, kCtr = 4 };

template <size_t B>
inline void XorBlock(uint8_t* out, const uint8_t* a, const uint8_t* b, size_t n = B) {
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t x, y;
        std::memcpy(&x, a + i, 8);
        std::memcpy(&y, b + i, 8);
        x ^= y;
        std::memcpy(out + i, &x, 8);
    }
    for (; i < n; ++i) out[i] = uint8_t(a[i] ^ b[i]);
}

// The counter is the whole block as one big-endian integer; it wraps silently.
template <size_t B>
inline void IncrementCounter(uint8_t* counter) {
    for (size_t i = B; i-- > 0;)
        if (++counter[i] != 0) break;
}

// ECB with an explicit direction, whatever the record's mode; the register
// is not touched.
template <class C>
int ProcessEcb(const typename C::Context* ctx, uint8_t* out, const uint8_t* in, size_t length,
               bool encrypt) {
    constexpr size_t B = C::kBlock;
    if (length % B != 0) return BAD_LENGTH_ERROR;
    if (length != 0 && (out == nullptr || in == nullptr)) return NULL_ERROR;
    for (size_t off = 0; off < length; off += B) {
        if (encrypt) {
            C::Encrypt(*ctx, in + off, out + off);
        } else {
            C::Decrypt(*ctx, in + off, out + off);
        }
    }
    return 0;
}

// The checks of a process call, in their order; 0 when the run may go ahead.
// Shared with the accelerated AES runs, which must fail the same way.
template <size_t B>
inline int Screen(uint32_t mode, const uint8_t* out, const uint8_t* in, size_t length) {
    if (mode > kCtr) return BAD_MODE_ERROR;
    if (mode <= kCbc && length % B != 0) return BAD_LENGTH_ERROR;
    if (length != 0 && (out == nullptr || in == nullptr)) return NULL_ERROR;
    return 0;
}

template <class C>
int Process(typename C::Context* ctx, uint8_t* out, const uint8_t* in, size_t length) {
    constexpr size_t B = C::kBlock;
    const uint32_t mode = ctx->mode;
    if (const int status = Screen<B>(mode, out, in, length); status != 0) return status;
    if (mode == kEcb) return ProcessEcb<C>(ctx, out, in, length, ctx->direction != 0);

    const bool encrypt = ctx->direction != 0;
    const size_t whole = length - length % B;
    const size_t tail = length % B;
    // reg: the register; work and keep: copies that let output share the
    // input's buffer. All three are wiped on the way out.
    uint8_t reg[B], work[B], keep[B];
    C::LoadRegister(*ctx, reg);

    switch (mode) {
    case kCbc:
        for (size_t off = 0; off < whole; off += B) {
            if (encrypt) {
                XorBlock<B>(work, in + off, reg);
                C::Encrypt(*ctx, work, reg);
                std::memcpy(out + off, reg, B);
            } else {
                std::memcpy(keep, in + off, B);
                C::Decrypt(*ctx, keep, work);
                XorBlock<B>(out + off, work, reg);
                std::memcpy(reg, keep, B);
            }
        }
        break;
    case kCfb:
        for (size_t off = 0; off < whole; off += B) {
            std::memcpy(keep, in + off, B);
            C::Encrypt(*ctx, reg, reg);
            XorBlock<B>(work, keep, reg);
            std::memcpy(out + off, work, B);
            std::memcpy(reg, encrypt ? work : keep, B);
        }
        if (tail != 0) {
            // The register takes the whole zero-extended block, so the two
            // sides differ in the unused bytes afterwards: keystream when
            // encrypting, zeros when decrypting.
            std::memset(keep, 0, B);
            std::memcpy(keep, in + whole, tail);
            C::Encrypt(*ctx, reg, reg);
            XorBlock<B>(work, keep, reg);
            std::memcpy(reg, encrypt ? work : keep, B);
            std::memcpy(out + whole, work, tail);
        }
        break;
    case kOfb:
        for (size_t off = 0; off < length; off += B) {
            C::Encrypt(*ctx, reg, reg);
            XorBlock<B>(out + off, in + off, reg, length - off < B ? length - off : B);
        }
        break;
    case kCtr:
        for (size_t off = 0; off < length; off += B) {
            C::Encrypt(*ctx, reg, work);
            XorBlock<B>(out + off, in + off, work, length - off < B ? length - off : B);
            IncrementCounter<B>(reg);
        }
        break;
    }

    C::StoreRegister(*ctx, reg);
    SecureWipe(reg, B);
    SecureWipe(work, B);
    SecureWipe(keep, B);
    return 0;
}

}  // namespace mode_engine
