#include "mac/cmac.h"

#include "verimond.h"

int32_t CmacBytes(uint8_t*, int32_t, const uint8_t*, int32_t, const uint8_t*, int32_t, int32_t) {
    return -NOT_SUPPORTED_ERROR;
}
int32_t CmacHexFromBytes(char*, int32_t, const uint8_t*, int32_t, const uint8_t*, int32_t, int32_t) {
    return -NOT_SUPPORTED_ERROR;
}
int32_t CmacHexFromHex(char*, int32_t, const char*, const char*, int32_t) { return -NOT_SUPPORTED_ERROR; }
