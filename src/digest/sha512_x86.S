// SHA-512 blocks with AVX2 and BMI2, for x86-64 (System V).
//
//   void Sha512BlocksAvx2(uint64_t h[8], const uint8_t* data, size_t blocks);
//
// Blocks go in pairs. The message schedule of a pair is computed with both
// blocks side by side, one per 128-bit lane of each YMM register, so it costs
// what the schedule of one block costs. Each schedule step makes words 2j and
// 2j+1 of both blocks, adds the round constants and stores them as row j of a
// table on the stack; the rounds read their word from the table with the
// addition that takes it into h.
//
// The rounds are in general registers. They are bound by the four integer
// ALUs; the vector work is spread thinly over them so that it runs beside
// them without holding up their dispatch:
//   - the first pair computes its own rows 8..39 inside its first block's
//     rounds (rows 0..7 are the message itself);
//   - after that, the second block of each pair loads the next pair and
//     computes its rows 0..19; the first block of the next pair computes
//     rows 20..39, each some rounds ahead of its use.
// One table serves both: a row of the next pair is stored only after the
// second block has read its own words from that row. After the last pair,
// that work is done on the last pair's own data again and thrown away,
// which keeps reads inside the caller's buffer without a second copy of the
// code. A last odd block pairs with itself and runs alone.
//
// The table is left on the stack as the portable core leaves its schedule:
// whoever owns the data wipes what is secret.

#if defined(__x86_64__)
    .intel_syntax noprefix

// Stack frame, 32-byte aligned: the table, then the arguments.
#define TABLE 0
#define STATE_PTR 1280
#define DATA_PTR 1288
#define BLOCKS_LEFT 1296
#define FRAME 1312
// The entry of round t of the block in lane `lane`: rows of 32 bytes, two
// words of each block.
#define WK(t, lane) qword ptr [rsp + TABLE + ((t) >> 1) * 32 + ((t) & 1) * 8 + (lane) * 16]

// One round. a..h name this round's working variables; the caller turns the
// names instead of moving values; its word is read from the table.
// bc holds b^c, left by the round before as its a^b; this round leaves a^b
// in ab and uses bc up for Maj. r12..r15 are scratch. The order of the
// instructions was chosen by timing: it lets the two long chains (through
// e and through a) overlap.
.macro RND a, b, c, d, e, f, g, h, t, lane, ab, bc
    rorx  r12, \e, 18
    add   \h, WK(\t, \lane)
    rorx  r13, \e, 14
    mov   r14, \f
    xor   r13, r12
    xor   r14, \g
    rorx  r12, \a, 34
    and   r14, \e
    rorx  r15, \e, 41
    xor   r13, r15              // Sigma1(e)
    xor   r14, \g               // Ch(e, f, g)
    mov   \ab, \a
    rorx  r15, \a, 28
    add   \h, r14
    xor   \ab, \b
    xor   r15, r12
    rorx  r12, \a, 39
    add   \h, r13               // T1
    and   \bc, \ab
    xor   r15, r12              // Sigma0(a)
    xor   \bc, \b               // Maj(a, b, c)
    add   \d, \h
    add   r15, \bc
    add   \h, r15
.endm

// Round t of the block in lane `lane` (0 or 1) of the table.
.macro ROUND t, lane
    .if ((\t) & 7) == 0
    RND rax, rbx, rcx, rdx, r8, r9, r10, r11, \t, \lane, rsi, rdi
    .elseif ((\t) & 7) == 1
    RND r11, rax, rbx, rcx, rdx, r8, r9, r10, \t, \lane, rdi, rsi
    .elseif ((\t) & 7) == 2
    RND r10, r11, rax, rbx, rcx, rdx, r8, r9, \t, \lane, rsi, rdi
    .elseif ((\t) & 7) == 3
    RND r9, r10, r11, rax, rbx, rcx, rdx, r8, \t, \lane, rdi, rsi
    .elseif ((\t) & 7) == 4
    RND r8, r9, r10, r11, rax, rbx, rcx, rdx, \t, \lane, rsi, rdi
    .elseif ((\t) & 7) == 5
    RND rdx, r8, r9, r10, r11, rax, rbx, rcx, \t, \lane, rdi, rsi
    .elseif ((\t) & 7) == 6
    RND rcx, rdx, r8, r9, r10, r11, rax, rbx, \t, \lane, rsi, rdi
    .else
    RND rbx, rcx, rdx, r8, r9, r10, r11, rax, \t, \lane, rdi, rsi
    .endif
.endm

// Schedule step j >= 8: w, which held words 2j-16 and 2j-15, becomes words
// 2j and 2j+1 by W[t] = s1(W[t-2]) + W[t-7] + s0(W[t-15]) + W[t-16].
// The window registers hold words 2k, 2k+1 for the last eight steps k:
// x15 those of step j-7, x3 of j-3, x4 of j-4, prev of j-1.
.macro STEP_REGS j, w, x15, x3, x4, prev
    vpalignr ymm8, \x15, \w, 8      // W[t-15]
    vpsrlq   ymm9, ymm8, 1          // s0 = x>>1 ^ (x ^ x>>1)>>7 ^ (x ^ x<<7)<<56
    vpxor    ymm10, ymm8, ymm9
    vpsrlq   ymm10, ymm10, 7
    vpxor    ymm9, ymm9, ymm10
    vpsllq   ymm10, ymm8, 7
    vpxor    ymm10, ymm10, ymm8
    vpsllq   ymm10, ymm10, 56
    vpxor    ymm9, ymm9, ymm10
    vpalignr ymm11, \x3, \x4, 8     // W[t-7]
    vpaddq   \w, \w, ymm9
    vpaddq   \w, \w, ymm11
    vpsrlq   ymm12, \prev, 19       // s1 = ror19 ^ ror61 ^ x>>6
    vpsllq   ymm13, \prev, 45
    vpsrlq   ymm14, \prev, 61
    vpxor    ymm12, ymm12, ymm13
    vpsllq   ymm13, \prev, 3
    vpxor    ymm12, ymm12, ymm14
    vpsrlq   ymm14, \prev, 6
    vpxor    ymm13, ymm13, ymm14
    vpxor    ymm12, ymm12, ymm13
    vpaddq   \w, \w, ymm12
    vpaddq   ymm14, \w, [rip + kPairConstants + 32 * (\j)]
    vmovdqa  [rsp + TABLE + 32 * (\j)], ymm14
.endm

// Step j with its window registers, which turn with j.
.macro STEP j
    .if ((\j) & 7) == 0
    STEP_REGS \j, ymm0, ymm1, ymm5, ymm4, ymm7
    .elseif ((\j) & 7) == 1
    STEP_REGS \j, ymm1, ymm2, ymm6, ymm5, ymm0
    .elseif ((\j) & 7) == 2
    STEP_REGS \j, ymm2, ymm3, ymm7, ymm6, ymm1
    .elseif ((\j) & 7) == 3
    STEP_REGS \j, ymm3, ymm4, ymm0, ymm7, ymm2
    .elseif ((\j) & 7) == 4
    STEP_REGS \j, ymm4, ymm5, ymm1, ymm0, ymm3
    .elseif ((\j) & 7) == 5
    STEP_REGS \j, ymm5, ymm6, ymm2, ymm1, ymm4
    .elseif ((\j) & 7) == 6
    STEP_REGS \j, ymm6, ymm7, ymm3, ymm2, ymm5
    .else
    STEP_REGS \j, ymm7, ymm0, ymm4, ymm3, ymm6
    .endif
.endm

// The message words of a pair into the window: the first block from r12,
// the second from r13, big-endian words made native.
.macro LOAD_WORDS k, y, x
    vmovdqu     \x, [r12 + 16 * (\k)]
    vinserti128 \y, \y, [r13 + 16 * (\k)], 1
    vpshufb     \y, \y, ymm15
.endm
.macro LOAD_PAIR
    vmovdqa ymm15, [rip + kByteSwap]
    LOAD_WORDS 0, ymm0, xmm0
    LOAD_WORDS 1, ymm1, xmm1
    LOAD_WORDS 2, ymm2, xmm2
    LOAD_WORDS 3, ymm3, xmm3
    LOAD_WORDS 4, ymm4, xmm4
    LOAD_WORDS 5, ymm5, xmm5
    LOAD_WORDS 6, ymm6, xmm6
    LOAD_WORDS 7, ymm7, xmm7
.endm

// Rows 0..7 come straight from the window.
.macro ROW_REGS j, y
    vpaddq  ymm14, \y, [rip + kPairConstants + 32 * (\j)]
    vmovdqa [rsp + TABLE + 32 * (\j)], ymm14
.endm
.macro ROW j
    .if (\j) == 0
    ROW_REGS 0, ymm0
    .elseif (\j) == 1
    ROW_REGS 1, ymm1
    .elseif (\j) == 2
    ROW_REGS 2, ymm2
    .elseif (\j) == 3
    ROW_REGS 3, ymm3
    .elseif (\j) == 4
    ROW_REGS 4, ymm4
    .elseif (\j) == 5
    ROW_REGS 5, ymm5
    .elseif (\j) == 6
    ROW_REGS 6, ymm6
    .else
    ROW_REGS 7, ymm7
    .endif
.endm

// The chaining words take the block's result; the sums stay in registers.
.macro ADD_STATE
    mov r14, [rsp + STATE_PTR]
    add rax, [r14]
    add rbx, [r14 + 8]
    add rcx, [r14 + 16]
    add rdx, [r14 + 24]
    add r8, [r14 + 32]
    add r9, [r14 + 40]
    add r10, [r14 + 48]
    add r11, [r14 + 56]
    mov [r14], rax
    mov [r14 + 8], rbx
    mov [r14 + 16], rcx
    mov [r14 + 24], rdx
    mov [r14 + 32], r8
    mov [r14 + 40], r9
    mov [r14 + 48], r10
    mov [r14 + 56], r11
.endm

// Before round 0: b^c, which round 0 expects in rdi.
.macro FIRST_BC
    mov rdi, rbx
    xor rdi, rcx
.endm

    .section .rodata
    .balign 64
// The round constants, words 2j and 2j+1 in each lane of row j.
kPairConstants:
    .quad 0x428a2f98d728ae22, 0x7137449123ef65cd, 0x428a2f98d728ae22, 0x7137449123ef65cd
    .quad 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc
    .quad 0x3956c25bf348b538, 0x59f111f1b605d019, 0x3956c25bf348b538, 0x59f111f1b605d019
    .quad 0x923f82a4af194f9b, 0xab1c5ed5da6d8118, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118
    .quad 0xd807aa98a3030242, 0x12835b0145706fbe, 0xd807aa98a3030242, 0x12835b0145706fbe
    .quad 0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2, 0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2
    .quad 0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x72be5d74f27b896f, 0x80deb1fe3b1696b1
    .quad 0x9bdc06a725c71235, 0xc19bf174cf692694, 0x9bdc06a725c71235, 0xc19bf174cf692694
    .quad 0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0xe49b69c19ef14ad2, 0xefbe4786384f25e3
    .quad 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65
    .quad 0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x2de92c6f592b0275, 0x4a7484aa6ea6e483
    .quad 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5
    .quad 0x983e5152ee66dfab, 0xa831c66d2db43210, 0x983e5152ee66dfab, 0xa831c66d2db43210
    .quad 0xb00327c898fb213f, 0xbf597fc7beef0ee4, 0xb00327c898fb213f, 0xbf597fc7beef0ee4
    .quad 0xc6e00bf33da88fc2, 0xd5a79147930aa725, 0xc6e00bf33da88fc2, 0xd5a79147930aa725
    .quad 0x06ca6351e003826f, 0x142929670a0e6e70, 0x06ca6351e003826f, 0x142929670a0e6e70
    .quad 0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x27b70a8546d22ffc, 0x2e1b21385c26c926
    .quad 0x4d2c6dfc5ac42aed, 0x53380d139d95b3df, 0x4d2c6dfc5ac42aed, 0x53380d139d95b3df
    .quad 0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x650a73548baf63de, 0x766a0abb3c77b2a8
    .quad 0x81c2c92e47edaee6, 0x92722c851482353b, 0x81c2c92e47edaee6, 0x92722c851482353b
    .quad 0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xa2bfe8a14cf10364, 0xa81a664bbc423001
    .quad 0xc24b8b70d0f89791, 0xc76c51a30654be30, 0xc24b8b70d0f89791, 0xc76c51a30654be30
    .quad 0xd192e819d6ef5218, 0xd69906245565a910, 0xd192e819d6ef5218, 0xd69906245565a910
    .quad 0xf40e35855771202a, 0x106aa07032bbd1b8, 0xf40e35855771202a, 0x106aa07032bbd1b8
    .quad 0x19a4c116b8d2d0c8, 0x1e376c085141ab53, 0x19a4c116b8d2d0c8, 0x1e376c085141ab53
    .quad 0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8, 0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8
    .quad 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb
    .quad 0x5b9cca4f7763e373, 0x682e6ff3d6b2b8a3, 0x5b9cca4f7763e373, 0x682e6ff3d6b2b8a3
    .quad 0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x748f82ee5defb2fc, 0x78a5636f43172f60
    .quad 0x84c87814a1f0ab72, 0x8cc702081a6439ec, 0x84c87814a1f0ab72, 0x8cc702081a6439ec
    .quad 0x90befffa23631e28, 0xa4506cebde82bde9, 0x90befffa23631e28, 0xa4506cebde82bde9
    .quad 0xbef9a3f7b2c67915, 0xc67178f2e372532b, 0xbef9a3f7b2c67915, 0xc67178f2e372532b
    .quad 0xca273eceea26619c, 0xd186b8c721c0c207, 0xca273eceea26619c, 0xd186b8c721c0c207
    .quad 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178
    .quad 0x06f067aa72176fba, 0x0a637dc5a2c898a6, 0x06f067aa72176fba, 0x0a637dc5a2c898a6
    .quad 0x113f9804bef90dae, 0x1b710b35131c471b, 0x113f9804bef90dae, 0x1b710b35131c471b
    .quad 0x28db77f523047d84, 0x32caab7b40c72493, 0x28db77f523047d84, 0x32caab7b40c72493
    .quad 0x3c9ebe0a15c9bebc, 0x431d67c49c100d4c, 0x3c9ebe0a15c9bebc, 0x431d67c49c100d4c
    .quad 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a
    .quad 0x5fcb6fab3ad6faec, 0x6c44198c4a475817, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817
kByteSwap:
    .quad 0x0001020304050607, 0x08090a0b0c0d0e0f, 0x0001020304050607, 0x08090a0b0c0d0e0f

    .text
    .globl Sha512BlocksAvx2
    .hidden Sha512BlocksAvx2
    .type Sha512BlocksAvx2, @function
    .balign 64
Sha512BlocksAvx2:
    test rdx, rdx
    jz .Lreturn
    push rbx
    push rbp
    push r12
    push r13
    push r14
    push r15
    mov rbp, rsp
    sub rsp, FRAME
    and rsp, -32
    mov [rsp + STATE_PTR], rdi
    mov [rsp + DATA_PTR], rsi
    mov [rsp + BLOCKS_LEFT], rdx

    // The first pair: its message rows now, the rest inside its first block.
    mov r12, rsi
    lea r13, [rsi + 128]
    cmp rdx, 1
    cmove r13, r12
    LOAD_PAIR
    ROW 0
    ROW 1
    ROW 2
    ROW 3
    ROW 4
    ROW 5
    ROW 6
    ROW 7
    mov rax, [rdi]
    mov rbx, [rdi + 8]
    mov rcx, [rdi + 16]
    mov rdx, [rdi + 24]
    mov r8, [rdi + 32]
    mov r9, [rdi + 40]
    mov r10, [rdi + 48]
    mov r11, [rdi + 56]
    FIRST_BC
    // Step j after round 2j-15: sixteen rounds ahead of its first reader.
    .set t, 0
    .set j, 8
    .rept 80
    ROUND t, 0
    .if (t & 1) && (j < 40)
    STEP j
    .set j, j + 1
    .endif
    .set t, t + 1
    .endr
    jmp .Lsecond

    // The first block of a later pair, whose rows 0..19 are in the table:
    // steps 20..39, one every third round from round 2.
.Lfirst:
    FIRST_BC
    .set t, 0
    .set j, 20
    .rept 80
    ROUND t, 0
    .if ((t % 3) == 2) && (j < 40)
    STEP j
    .set j, j + 1
    .endif
    .set t, t + 1
    .endr

.Lsecond:
    ADD_STATE
    mov r14, [rsp + BLOCKS_LEFT]
    cmp r14, 1
    je .Ldone
    sub r14, 2
    mov [rsp + BLOCKS_LEFT], r14
    // The next pair into the window (this pair again if there is none).
    mov r12, [rsp + DATA_PTR]
    lea r13, [r12 + 256]
    test r14, r14
    cmovnz r12, r13
    mov [rsp + DATA_PTR], r12
    lea r13, [r12 + 128]
    cmp r14, 1
    cmove r13, r12
    LOAD_PAIR
    // The second block: row j of the next pair goes in once round 2j+1 has
    // read row j of this one; steps 8..19 follow, one every fifth round.
    FIRST_BC
    .set t, 0
    .set j, 8
    .rept 80
    ROUND t, 1
    .if (t & 1) && (t < 16)
    ROW (t >> 1)
    .endif
    .if (t >= 17) && (((t - 17) % 5) == 0) && (j < 20)
    STEP j
    .set j, j + 1
    .endif
    .set t, t + 1
    .endr
    ADD_STATE
    cmp qword ptr [rsp + BLOCKS_LEFT], 0
    jne .Lfirst

.Ldone:
    vzeroupper
    mov rsp, rbp
    pop r15
    pop r14
    pop r13
    pop r12
    pop rbp
    pop rbx
.Lreturn:
    ret
    .size Sha512BlocksAvx2, . - Sha512BlocksAvx2

#endif

    .section .note.GNU-stack, "", @progbits
