/* A first program: the SHA-256 digest of a text, then the text sealed and
   opened again with ChaCha20-Poly1305 under a fresh random key.
   Build: cc first.c $(pkg-config --cflags --libs verimond) -o first */
#include <stdio.h>
#include <string.h>

#include <verimond.h>

static int report(const char *call, int32_t code) {
    char text[128];
    API_ErrorLookup(text, (int32_t)sizeof text - 1, code);
    fprintf(stderr, "%s: %s\n", call, text);
    return 1;
}

int main(void) {
    const char *message = "hello, world";
    const int32_t length = (int32_t)strlen(message);
    unsigned char key[32], nonce[12], sealed[64], opened[64];
    char digest[65];
    int32_t n, m;

    /* Style B: a length, or minus an error code. */
    n = HASH_HexFromBytes(digest, 64, (const unsigned char *)message, length, OPT_HASH_SHA256);
    if (n < 0)
        return report("HASH_HexFromBytes", n);
    printf("SHA-256: %s\n", digest);

    /* Style A: 0, or a positive error code. */
    if ((n = RNG_KeyBytes(key, 32, NULL, 0)) != 0 || (n = RNG_NonceData(nonce, 12)) != 0)
        return report("RNG", n);

    /* The output holds the nonce (OPT_PREFIX_IV), the ciphertext and a 16-byte tag. */
    n = AEAD_EncryptWithTag(sealed, (int32_t)sizeof sealed, (const unsigned char *)message, length,
                            key, 32, nonce, 12, NULL, 0,
                            OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV);
    if (n < 0)
        return report("AEAD_EncryptWithTag", n);
    m = AEAD_DecryptWithTag(opened, (int32_t)sizeof opened, sealed, n, key, 32, NULL, 0, NULL, 0,
                            OPT_AEAD_CHACHA20_POLY1305 | OPT_PREFIX_IV);
    WIPE_Data(key, 32);
    if (m < 0)
        return report("AEAD_DecryptWithTag", m);
    printf("sealed %d bytes, opened: %.*s\n", (int)n, (int)m, (const char *)opened);
    return 0;
}
