// SHA1_, SHA2_ and MD5_ share eleven calls; one table of them serves every
// test that runs over the three families.
#pragma once
#include <cstddef>
#include <cstdint>

#include "verimond.h"

struct DigestFamily {
    const char* prefix;
    int32_t option;  // the same digest through HASH_
    size_t digits;   // of the hex digest
    int32_t (*stringHexHash)(char*, const char*);
    int32_t (*fileHexHash)(char*, const char*, const char*);
    int32_t (*bytesHexHash)(char*, const unsigned char*, int32_t);
    int32_t (*bytesHash)(unsigned char*, const unsigned char*, int32_t);
    int32_t (*init)();
    int32_t (*addString)(int32_t, const char*);
    int32_t (*addBytes)(int32_t, const unsigned char*, int32_t);
    int32_t (*hexDigest)(char*, int32_t);
    int32_t (*reset)(int32_t);
    int32_t (*hmac)(char*, const unsigned char*, int32_t, const unsigned char*, int32_t);
    int32_t (*hmacHex)(char*, const char*, const char*);
};

inline const DigestFamily kDigestFamilies[] = {
    {"SHA1_", OPT_HASH_SHA1, 40, SHA1_StringHexHash, SHA1_FileHexHash, SHA1_BytesHexHash, SHA1_BytesHash, SHA1_Init,
     SHA1_AddString, SHA1_AddBytes, SHA1_HexDigest, SHA1_Reset, SHA1_Hmac, SHA1_HmacHex},
    {"SHA2_", OPT_HASH_SHA256, 64, SHA2_StringHexHash, SHA2_FileHexHash, SHA2_BytesHexHash, SHA2_BytesHash, SHA2_Init,
     SHA2_AddString, SHA2_AddBytes, SHA2_HexDigest, SHA2_Reset, SHA2_Hmac, SHA2_HmacHex},
    {"MD5_", OPT_HASH_MD5, 32, MD5_StringHexHash, MD5_FileHexHash, MD5_BytesHexHash, MD5_BytesHash, MD5_Init,
     MD5_AddString, MD5_AddBytes, MD5_HexDigest, MD5_Reset, MD5_Hmac, MD5_HmacHex},
};
