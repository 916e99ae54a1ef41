/* A small program on the public interface: module information and a digest. */
#include <stdio.h>
#include <string.h>

#include "verimond.h"

int main(void) {
    char text[256];
    const char *message = "abc";
    unsigned char digest[32];
    int32_t n;

    printf("Verimond version %d\n", API_Version());
    API_CompileTime(text, (int32_t)sizeof text - 1);
    printf("Built %s\n", text);
    API_ModuleInfo(text, (int32_t)sizeof text - 1, 0);
    printf("%s\n", text);

    n = HASH_Bytes(digest, (int32_t)sizeof digest, (const unsigned char *)message,
                   (int32_t)strlen(message), OPT_HASH_SHA256);
    if (n < 0) {
        API_ErrorLookup(text, (int32_t)sizeof text - 1, n);
        fprintf(stderr, "HASH_Bytes failed: %s\n", text);
        return 1;
    }
    CNV_HexStrFromBytes(text, (int32_t)sizeof text - 1, digest, n);
    printf("SHA-256(\"%s\") = %s\n", message, text);
    return 0;
}
