// SHA-1 blocks with the SHA extensions, for x86-64 (System V).
//
//   void Sha1BlocksShaNi(uint32_t h[5], const uint8_t* data, size_t blocks);
//
// The round instruction keeps A..D in one register (A in the top lane) and
// takes E folded into the top lane of the message words, which run top lane
// first as well. Four rounds make a group; one message vector serves a group.
//
// A block is one chain of twenty round instructions, so the chain is kept
// free of copies: the rounds update A..D in place, and A..D from before each
// group is copied aside, off the chain, for the E of the group after it.

#if defined(__x86_64__)
    .intel_syntax noprefix

// Registers: xmm0 A..D; xmm1 and xmm2 take turns holding A..D from before
// the last group; xmm3..xmm6 the message vectors m0..m3; xmm7 the byte
// order mask; xmm8 A..D at the start of the block; xmm9 E at its start.

// m = W[4g..4g+3] from the four vectors before it (m held group g-4).
.macro SCHEDULE m, n1, n2, n3
    sha1msg1 \m, \n1
    pxor     \m, \n2
    sha1msg2 \m, \n3
.endm

// Group g >= 1: E from A..D of two groups back (in prev) plus the words,
// then four rounds. save takes A..D from before the group.
.macro ROUNDS_WITH m, prev, save, f
    sha1nexte \prev, \m
    movdqa    \save, xmm0
    sha1rnds4 xmm0, \prev, \f
.endm

// Group g, for g = 1..19: message vector g mod 4, round function g / 5,
// and the schedule from group 4 on.
.macro GROUP g
    .if (\g) >= 4
    .if ((\g) & 3) == 0
    SCHEDULE xmm3, xmm4, xmm5, xmm6
    .elseif ((\g) & 3) == 1
    SCHEDULE xmm4, xmm5, xmm6, xmm3
    .elseif ((\g) & 3) == 2
    SCHEDULE xmm5, xmm6, xmm3, xmm4
    .else
    SCHEDULE xmm6, xmm3, xmm4, xmm5
    .endif
    .endif
    .if ((\g) & 3) == 0
    GROUP_ROUNDS \g, xmm3
    .elseif ((\g) & 3) == 1
    GROUP_ROUNDS \g, xmm4
    .elseif ((\g) & 3) == 2
    GROUP_ROUNDS \g, xmm5
    .else
    GROUP_ROUNDS \g, xmm6
    .endif
.endm
.macro GROUP_ROUNDS g, m
    .if (\g) < 5
    GROUP_TURN \g, \m, 0
    .elseif (\g) < 10
    GROUP_TURN \g, \m, 1
    .elseif (\g) < 15
    GROUP_TURN \g, \m, 2
    .else
    GROUP_TURN \g, \m, 3
    .endif
.endm
.macro GROUP_TURN g, m, f
    .if (\g) & 1
    ROUNDS_WITH \m, xmm2, xmm1, \f
    .else
    ROUNDS_WITH \m, xmm1, xmm2, \f
    .endif
.endm

.macro LOAD_WORDS m, offset
    movdqu \m, [rsi + \offset]
    pshufb \m, xmm7
.endm

    .section .rodata
    .balign 16
kByteSwap:
    .quad 0x08090a0b0c0d0e0f, 0x0001020304050607

    .text
    .globl Sha1BlocksShaNi
    .hidden Sha1BlocksShaNi
    .type Sha1BlocksShaNi, @function
    .balign 32
Sha1BlocksShaNi:
    test rdx, rdx
    jz .Lreturn
    movdqu xmm0, [rdi]
    pshufd xmm0, xmm0, 0x1b
    movd   xmm9, dword ptr [rdi + 16]
    pslldq xmm9, 12
    movdqa xmm7, [rip + kByteSwap]
.Lblock:
    LOAD_WORDS xmm3, 0
    LOAD_WORDS xmm4, 16
    LOAD_WORDS xmm5, 32
    LOAD_WORDS xmm6, 48
    movdqa xmm8, xmm0
    // Group 0 takes E as it stands.
    movdqa xmm1, xmm9
    paddd  xmm1, xmm3
    movdqa xmm2, xmm0
    sha1rnds4 xmm0, xmm1, 0
    .set g, 1
    .rept 19
    GROUP g
    .set g, g + 1
    .endr
    // E after the last group is A from before it, turned, plus the old E;
    // that A..D is in xmm1 (group 19 saved it).
    sha1nexte xmm1, xmm9
    movdqa xmm9, xmm1
    paddd  xmm0, xmm8
    add rsi, 64
    dec rdx
    jnz .Lblock

    pshufd xmm0, xmm0, 0x1b
    movdqu [rdi], xmm0
    pextrd dword ptr [rdi + 16], xmm9, 3
.Lreturn:
    ret
    .size Sha1BlocksShaNi, . - Sha1BlocksShaNi

#endif

    .section .note.GNU-stack, "", @progbits
