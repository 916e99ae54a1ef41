/* The run without arguments: each family of the library at work on one
   sample text, in a short printout. The keys are fixed sample values. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "cli.h"

static const char sample[] = "The quick brown fox jumps over the lazy dog";

static int check(const char *what, int32_t result) {
    if (result < 0) {
        fprintf(stderr, "verimond: %s: %s\n", what, cli_error_text(result));
        return 1;
    }
    return 0;
}

static void row(const char *family, const char *algorithm, const char *result) {
    printf("  %-10s %-20s %s\n", family, algorithm, result);
}

static int digests(const unsigned char *text, int32_t length) {
    static const struct { const char *name; int32_t option; } list[] = {
        {"SHA-256", OPT_HASH_SHA256}, {"SHA3-256", OPT_HASH_SHA3_256}};
    char hex[129];
    for (size_t i = 0; i < sizeof list / sizeof list[0]; i++) {
        int32_t n = HASH_HexFromBytes(hex, (int32_t)sizeof hex - 1, text, length, list[i].option);
        if (check(list[i].name, n))
            return 1;
        row(i == 0 ? "Digest" : "", list[i].name, hex);
    }
    return 0;
}

static int mac(const unsigned char *text, int32_t length) {
    static const unsigned char key[] = "key";
    char hex[129];
    int32_t n = MAC_HexFromBytes(hex, (int32_t)sizeof hex - 1, text, length, key, 3,
                                 OPT_HMAC_SHA256);
    if (check("HMAC-SHA-256", n))
        return 1;
    row("MAC", "HMAC-SHA-256", hex);
    return 0;
}

static int block_cipher(const unsigned char *text, int32_t length) {
    static const unsigned char key[16] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6,
                                          0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c};
    unsigned char iv[16], sealed[128], opened[128];
    char line[160];
    int32_t n, m;
    if (check("IV", -RNG_NonceData(iv, 16)))
        return 1;
    n = CIPHER_EncryptBytes(sealed, (int32_t)sizeof sealed, text, length, key, 16, iv, 16,
                            "aes128/cbc/pkcs5", OPT_PREFIX_IV);
    if (check("AES-128/CBC encryption", n))
        return 1;
    m = CIPHER_DecryptBytes(opened, (int32_t)sizeof opened, sealed, n, key, 16, NULL, 0,
                            "aes128/cbc/pkcs5", OPT_PREFIX_IV);
    if (check("AES-128/CBC decryption", m))
        return 1;
    snprintf(line, sizeof line, "%d bytes -> IV + %d bytes -> %d bytes, %s", (int)length,
             (int)(n - 16), (int)m,
             m == length && memcmp(opened, text, (size_t)m) == 0 ? "identical" : "DIFFERENT");
    row("Encrypt", "AES-128/CBC/PKCS5", line);
    return m == length && memcmp(opened, text, (size_t)m) == 0 ? 0 : 1;
}

static int aead(const unsigned char *text, int32_t length) {
    unsigned char key[32], nonce[12], sealed[128], opened[128];
    char line[160];
    int32_t n, m;
    for (int i = 0; i < 32; i++)
        key[i] = (unsigned char)(0x80 + i);
    if (check("nonce", -RNG_NonceData(nonce, 12)))
        return 1;
    n = AEAD_EncryptWithTag(sealed, (int32_t)sizeof sealed, text, length, key, 32, nonce, 12,
                            NULL, 0, OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV);
    if (check("ChaCha20-Poly1305 sealing", n))
        return 1;
    m = AEAD_DecryptWithTag(opened, (int32_t)sizeof opened, sealed, n, key, 32, NULL, 0, NULL, 0,
                            OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV);
    if (check("ChaCha20-Poly1305 opening", m))
        return 1;
    snprintf(line, sizeof line, "%d bytes -> nonce + %d + tag -> %d bytes, %s", (int)length,
             (int)(n - 28), (int)m,
             m == length && memcmp(opened, text, (size_t)m) == 0 ? "identical" : "DIFFERENT");
    row("Seal", "ChaCha20-Poly1305", line);
    sealed[20] ^= 1;
    m = AEAD_DecryptWithTag(opened, (int32_t)sizeof opened, sealed, n, key, 32, NULL, 0, NULL, 0,
                            OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV);
    snprintf(line, sizeof line, "one bit changed -> %s", cli_error_text(m));
    row("", "", line);
    return m == -AUTH_FAIL_ERROR ? 0 : 1;
}

static int derivation(void) {
    static const unsigned char password[] = "password", salt[] = "salt";
    unsigned char key[16];
    char *hex;
    int32_t r = PBE_Kdf2(key, 16, password, 8, salt, 4, 4096, OPT_HASH_SHA256);
    if (check("PBKDF2", -r) || !(hex = cli_hex(key, 16)))
        return 1;
    row("Derive", "PBKDF2-HMAC-SHA-256", hex);
    free(hex);
    r = PBE_Scrypt(key, 16, password, 8, salt, 4, 1024, 8, 1, 0);
    if (check("scrypt", r) || !(hex = cli_hex(key, 16)))
        return 1;
    row("", "scrypt N=1024", hex);
    free(hex);
    row("", "", "(password \"password\", salt \"salt\"; 4096 iterations; r=8, p=1)");
    return 0;
}

static int compression(void) {
    unsigned char text[sizeof sample * 8], packed[1024], unpacked[sizeof text];
    char line[160];
    int32_t length = 0, n, m;
    for (int i = 0; i < 8; i++) {
        memcpy(text + length, sample, sizeof sample - 1);
        length += (int32_t)sizeof sample - 1;
        text[length++] = '\n';
    }
    n = COMPR_Compress(packed, (int32_t)sizeof packed, text, length, OPT_COMPR_ZLIB);
    if (check("zlib compression", n))
        return 1;
    m = COMPR_Uncompress(unpacked, (int32_t)sizeof unpacked, packed, n, OPT_COMPR_ZLIB);
    if (check("zlib decompression", m))
        return 1;
    snprintf(line, sizeof line, "8 lines, %d bytes -> %d bytes -> %d bytes, %s", (int)length,
             (int)n, (int)m,
             m == length && memcmp(unpacked, text, (size_t)m) == 0 ? "identical" : "DIFFERENT");
    row("Compress", "zlib", line);
    return 0;
}

int cli_demo(void) {
    const unsigned char *text = (const unsigned char *)sample;
    int32_t length = (int32_t)strlen(sample), version = API_Version();
    char built[32], line[64];
    API_CompileTime(built, (int32_t)sizeof built - 1);
    printf("Verimond %d.%d.%d, built %s\n\n", version / 10000, version / 100 % 100,
           version % 100, built);
    printf("Sample text: \"%s\" (%d bytes)\n\n", sample, (int)length);
    if (digests(text, length) || mac(text, length) || block_cipher(text, length) ||
        aead(text, length) || derivation() || compression())
        return EXIT_FAILED;
    snprintf(line, sizeof line, "%08x", (uint32_t)CRC_Bytes(text, length, 0));
    row("CRC", "CRC-32", line);
    if (check("self-tests", API_PowerUpTests(0)))
        return EXIT_FAILED;
    row("Self-test", "power-up tests", "passed");
    printf("\nThe MAC key is the text \"key\"; the cipher keys are fixed samples and the\n"
           "IV and nonce are fresh random values. 'verimond --help' lists the commands.\n");
    return EXIT_OK;
}
