// The body of Keccak-f[1600], written once and compiled twice: plainly, and
// with BMI in the target, where each "~b & c" of chi is one ANDN. The state
// sits in 50 locals and each loop turn runs two rounds, from A into E and
// back, so no lane is copied between rounds. No timing depends on the data.
#pragma once
#include <cstdint>

#include "util/bytes.h"

inline constexpr uint64_t kKeccakRoundConstants[24] = {
    0x0000000000000001ull, 0x0000000000008082ull, 0x800000000000808aull, 0x8000000080008000ull,
    0x000000000000808bull, 0x0000000080000001ull, 0x8000000080008081ull, 0x8000000000008009ull,
    0x000000000000008aull, 0x0000000000000088ull, 0x0000000080008009ull, 0x000000008000000aull,
    0x000000008000808bull, 0x800000000000008bull, 0x8000000000008089ull, 0x8000000000008003ull,
    0x8000000000008002ull, 0x8000000000000080ull, 0x000000000000800aull, 0x800000008000000aull,
    0x8000000080008081ull, 0x8000000000008080ull, 0x0000000080000001ull, 0x8000000080008008ull,
};

// Theta, rho and pi, chi and iota of one round, from the lanes of A into
// those of E. C holds the column parities of A; those of E are gathered into
// N as chi makes its lanes, while they are at hand. Row names b g k m s are
// y = 0..4, column names a e i o u x = 0..4.
#define KECCAK_ROUND(A, E, rc, C, N)                                                               \
    do {                                                                                           \
        uint64_t da = C##u ^ Rotl64(C##e, 1), de = C##a ^ Rotl64(C##i, 1);                         \
        uint64_t di = C##e ^ Rotl64(C##o, 1);                                                      \
        uint64_t dO = C##i ^ Rotl64(C##u, 1), du = C##o ^ Rotl64(C##a, 1);                         \
        uint64_t b0 = A##ba ^ da, b1 = Rotl64(A##ge ^ de, 44), b2 = Rotl64(A##ki ^ di, 43);        \
        uint64_t b3 = Rotl64(A##mo ^ dO, 21), b4 = Rotl64(A##su ^ du, 14);                         \
        E##ba = b0 ^ (~b1 & b2) ^ (rc); N##a = E##ba;                                              \
        E##be = b1 ^ (~b2 & b3); N##e = E##be;                                                     \
        E##bi = b2 ^ (~b3 & b4); N##i = E##bi;                                                     \
        E##bo = b3 ^ (~b4 & b0); N##o = E##bo;                                                     \
        E##bu = b4 ^ (~b0 & b1); N##u = E##bu;                                                     \
        b0 = Rotl64(A##bo ^ dO, 28), b1 = Rotl64(A##gu ^ du, 20), b2 = Rotl64(A##ka ^ da, 3);      \
        b3 = Rotl64(A##me ^ de, 45), b4 = Rotl64(A##si ^ di, 61);                                  \
        E##ga = b0 ^ (~b1 & b2); N##a ^= E##ga;                                                    \
        E##ge = b1 ^ (~b2 & b3); N##e ^= E##ge;                                                    \
        E##gi = b2 ^ (~b3 & b4); N##i ^= E##gi;                                                    \
        E##go = b3 ^ (~b4 & b0); N##o ^= E##go;                                                    \
        E##gu = b4 ^ (~b0 & b1); N##u ^= E##gu;                                                    \
        b0 = Rotl64(A##be ^ de, 1), b1 = Rotl64(A##gi ^ di, 6), b2 = Rotl64(A##ko ^ dO, 25);       \
        b3 = Rotl64(A##mu ^ du, 8), b4 = Rotl64(A##sa ^ da, 18);                                   \
        E##ka = b0 ^ (~b1 & b2); N##a ^= E##ka;                                                    \
        E##ke = b1 ^ (~b2 & b3); N##e ^= E##ke;                                                    \
        E##ki = b2 ^ (~b3 & b4); N##i ^= E##ki;                                                    \
        E##ko = b3 ^ (~b4 & b0); N##o ^= E##ko;                                                    \
        E##ku = b4 ^ (~b0 & b1); N##u ^= E##ku;                                                    \
        b0 = Rotl64(A##bu ^ du, 27), b1 = Rotl64(A##ga ^ da, 36), b2 = Rotl64(A##ke ^ de, 10);     \
        b3 = Rotl64(A##mi ^ di, 15), b4 = Rotl64(A##so ^ dO, 56);                                  \
        E##ma = b0 ^ (~b1 & b2); N##a ^= E##ma;                                                    \
        E##me = b1 ^ (~b2 & b3); N##e ^= E##me;                                                    \
        E##mi = b2 ^ (~b3 & b4); N##i ^= E##mi;                                                    \
        E##mo = b3 ^ (~b4 & b0); N##o ^= E##mo;                                                    \
        E##mu = b4 ^ (~b0 & b1); N##u ^= E##mu;                                                    \
        b0 = Rotl64(A##bi ^ di, 62), b1 = Rotl64(A##go ^ dO, 55), b2 = Rotl64(A##ku ^ du, 39);     \
        b3 = Rotl64(A##ma ^ da, 41), b4 = Rotl64(A##se ^ de, 2);                                   \
        E##sa = b0 ^ (~b1 & b2); N##a ^= E##sa;                                                    \
        E##se = b1 ^ (~b2 & b3); N##e ^= E##se;                                                    \
        E##si = b2 ^ (~b3 & b4); N##i ^= E##si;                                                    \
        E##so = b3 ^ (~b4 & b0); N##o ^= E##so;                                                    \
        E##su = b4 ^ (~b0 & b1); N##u ^= E##su;                                                    \
    } while (0)


// The permutation over s[25] as a function body.
#define KECCAK_F1600_BODY(s)                                                                          \
    {                                                                                                 \
        uint64_t Aba = s[0], Abe = s[1], Abi = s[2], Abo = s[3], Abu = s[4];                          \
        uint64_t Aga = s[5], Age = s[6], Agi = s[7], Ago = s[8], Agu = s[9];                          \
        uint64_t Aka = s[10], Ake = s[11], Aki = s[12], Ako = s[13], Aku = s[14];                     \
        uint64_t Ama = s[15], Ame = s[16], Ami = s[17], Amo = s[18], Amu = s[19];                     \
        uint64_t Asa = s[20], Ase = s[21], Asi = s[22], Aso = s[23], Asu = s[24];                     \
        uint64_t Eba, Ebe, Ebi, Ebo, Ebu, Ega, Ege, Egi, Ego, Egu, Eka, Eke, Eki, Eko, Eku;           \
        uint64_t Ema, Eme, Emi, Emo, Emu, Esa, Ese, Esi, Eso, Esu;                                    \
        uint64_t Ca = Aba ^ Aga ^ Aka ^ Ama ^ Asa, Ce = Abe ^ Age ^ Ake ^ Ame ^ Ase;                  \
        uint64_t Ci = Abi ^ Agi ^ Aki ^ Ami ^ Asi, Co = Abo ^ Ago ^ Ako ^ Amo ^ Aso;                  \
        uint64_t Cu = Abu ^ Agu ^ Aku ^ Amu ^ Asu;                                                    \
        uint64_t Na, Ne, Ni, No, Nu;                                                                  \
        _Pragma("GCC unroll 12") for (int round = 0; round < 24; round += 2) {                        \
            KECCAK_ROUND(A, E, kKeccakRoundConstants[round], C, N);                                   \
            KECCAK_ROUND(E, A, kKeccakRoundConstants[round + 1], N, C);                               \
        }                                                                                             \
        s[0] = Aba, s[1] = Abe, s[2] = Abi, s[3] = Abo, s[4] = Abu;                                   \
        s[5] = Aga, s[6] = Age, s[7] = Agi, s[8] = Ago, s[9] = Agu;                                   \
        s[10] = Aka, s[11] = Ake, s[12] = Aki, s[13] = Ako, s[14] = Aku;                              \
        s[15] = Ama, s[16] = Ame, s[17] = Ami, s[18] = Amo, s[19] = Amu;                              \
        s[20] = Asa, s[21] = Ase, s[22] = Asi, s[23] = Aso, s[24] = Asu;                              \
    }
