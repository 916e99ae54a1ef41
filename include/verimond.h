/*
 * verimond.h - the public interface of libverimond.
 *
 * Every function returns int32_t. The result follows one of three styles,
 * fixed per function:
 *   style A  0 on success, a positive error code on failure;
 *   style B  0 or a positive length/count on success, minus the code on failure;
 *   handle   a context handle (odd, below 2^30) on success, 0 on failure.
 * The last failure of the calling thread can be read with API_ErrorCode()
 * and explained with API_ErrorLookup().
 *
 * Output buffers: a null output or a length of 0 or less asks for the size
 * needed; text lengths count characters without the terminating NUL (the
 * buffer must hold one byte more); text output is always NUL-terminated.
 *
 * Stateful families keep one context per thread; a handle is meaningful only
 * on the thread that made it.
 */
#ifndef VERIMOND_H
#define VERIMOND_H

#include <stdint.h>

#if defined(VERIMOND_BUILD)
#define VERIMOND_API __attribute__((visibility("default")))
#else
#define VERIMOND_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Error codes (absolute values; style B functions return them negated).     */
/* ------------------------------------------------------------------------ */
#define SUCCESS_NO_ERROR      0
#define OPEN_ERROR            1
#define CREATE_ERROR          2
#define READ_ERROR            3
#define WRITE_ERROR           4
#define MEMORY_ERROR          5
#define BAD_PARAM_ERROR       6
#define BAD_FORMAT_ERROR      7
#define INVALID_DATA_ERROR    8
#define EOF_ERROR             9
#define OUT_OF_RANGE_ERROR    11
#define DUP_ERROR             12
#define NULL_ERROR            14
#define DECRYPT_ERROR         15
#define BAD_FLAG_ERROR        17
#define WIPE_ERROR            18
#define NOT_SUPPORTED_ERROR   19
#define TEST_FAILED_ERROR     23
#define BAD_LENGTH_ERROR      26
#define SHORT_BUF_ERROR       30
#define ZLIB_COMPR_ERROR      31
#define BAD_KEY_LEN_ERROR     33
#define BAD_BLK_LEN_ERROR     34
#define BAD_MODE_ERROR        35
#define BAD_KEY_ERROR         36
#define BAD_IV_ERROR          37
#define BAD_IV_LEN_ERROR      38
#define ENCODING_ERROR        39
#define AUTH_FAIL_ERROR       40
#define MISUSE_ERROR          41
#define WEAK_KEY_ERROR        52
#define INVALID_HANDLE_ERROR  64
#define PRNG_ERR_FILE_OPEN    201
#define PRNG_ERR_FILE_CREATE  202
#define PRNG_ERR_FILE_READ    203
#define PRNG_ERR_FILE_WRITE   204
#define PRNG_ERR_FILE_LOCK    205
#define PRNG_ERR_UNINST       210
#define PRNG_ERR_TOOBIG       211
#define PRNG_ERR_FAILURE      212
#define PRNG_ERR_BADPARAM     213
#define PRNG_ERR_NOTAVAIL     214
#define PRNG_ERR_CATASTROPHIC 299
#define INTERNAL_ERROR        9745
#define MISC_ERROR            9999

/* ------------------------------------------------------------------------ */
/* Option constants.                                                         */
/* ------------------------------------------------------------------------ */

/* Digests: the low four bits choose the algorithm (HASH_, MAC_ HMAC, PBE_). */
#define OPT_HASH_SHA1          0
#define OPT_HASH_MD5           1
#define OPT_HASH_MD2           2
#define OPT_HASH_SHA256        3
#define OPT_HASH_SHA384        4
#define OPT_HASH_SHA512        5
#define OPT_HASH_SHA224        6
#define OPT_HASH_RMD160        7
#define OPT_HASH_RMD160_SHA256 8
#define OPT_HASH_SHA3_224      10
#define OPT_HASH_SHA3_256      11
#define OPT_HASH_SHA3_384      12
#define OPT_HASH_SHA3_512      13
#define OPT_HASH_ASCON_HASH    0xAF
#define OPT_HASH_ASCON_HASHA   0xBF
#define OPT_HASH_TEXT_MODE     0x10000
#define OPT_HASH_DOUBLE        0x20000

/* MACs. */
#define OPT_HMAC_SHA1          0
#define OPT_HMAC_MD5           1
#define OPT_HMAC_SHA256        3
#define OPT_HMAC_SHA384        4
#define OPT_HMAC_SHA512        5
#define OPT_HMAC_SHA224        6
#define OPT_HMAC_RMD160        7
#define OPT_HMAC_SHA3_224      10
#define OPT_HMAC_SHA3_256      11
#define OPT_HMAC_SHA3_384      12
#define OPT_HMAC_SHA3_512      13
#define OPT_CMAC_TDEA          0x100
#define OPT_CMAC_AES128        0x101
#define OPT_CMAC_AES192        0x102
#define OPT_CMAC_AES256        0x103
#define OPT_MAC_POLY1305       0x200
#define OPT_KMAC_128           0x201
#define OPT_KMAC_256           0x202

/* XOF and PRF. */
#define OPT_XOF_SHAKE128       0x203
#define OPT_XOF_SHAKE256       0x204
#define OPT_XOF_ASCON_XOF      0x20A
#define OPT_XOF_ASCON_XOFA     0x20B
#define OPT_XOF_MGF1_SHA1      0x210
#define OPT_XOF_MGF1_SHA256    0x213
#define OPT_XOF_MGF1_SHA384    0x214
#define OPT_XOF_MGF1_SHA512    0x215
#define OPT_XOF_MGF1_SHA224    0x216

/* Block ciphers for the CIPHER_ calls: cipher | mode | padding | flags. */
#define OPT_CIPHER_TDEA        0x10
#define OPT_CIPHER_AES128      0x20
#define OPT_CIPHER_AES192      0x30
#define OPT_CIPHER_AES256      0x40
#define OPT_MODE_ECB           0
#define OPT_MODE_CBC           0x100
#define OPT_MODE_OFB           0x200
#define OPT_MODE_CFB           0x300
#define OPT_MODE_CTR           0x400
#define OPT_PAD_DEFAULT        0
#define OPT_PAD_NONE           0x10000
#define OPT_PAD_PKCS5          0x20000
#define OPT_PAD_ONEANDZEROES   0x30000
#define OPT_PAD_ANSIX923       0x40000
#define OPT_PAD_W3C            0x50000
#define OPT_PREFIX_IV          0x1000
#define OPT_LEAVE_PADDING      0x2000

/* Stream ciphers. */
#define OPT_STREAM_ARCFOUR     1
#define OPT_STREAM_SALSA20     2
#define OPT_STREAM_CHACHA20    3

/* Authenticated encryption. */
#define OPT_AEAD_AES_128_GCM       1
#define OPT_AEAD_AES_256_GCM       2
#define OPT_AEAD_ASCON_128         26
#define OPT_AEAD_ASCON_128A        27
#define OPT_AEAD_CHACHA20_POLY1305 29

/* Random numbers. */
#define OPT_RNG_NO_INTEL_DRBG  0x80000
#define OPT_RNG_NO_PROMPT      0x100000

/* Compression and wiping. */
#define OPT_COMPR_ZLIB         0
#define OPT_COMPR_ZSTD         1
#define OPT_WIPE_FAST          1

/* ------------------------------------------------------------------------ */
/* Module information and errors (API_).                                     */
/* ------------------------------------------------------------------------ */

/* The version as major*10000 + minor*100 + patch: 62201. */
VERIMOND_API int32_t API_Version(void);
/* The latch: the first failure code (always positive) of the thread's last
   entering call, or the length a count-returning call handed back. */
VERIMOND_API int32_t API_ErrorCode(void);
/* "TEXT (NAME)" for a code of either sign; 0 if the code is unknown. A null
   output or length < 1 returns the length needed. */
VERIMOND_API int32_t API_ErrorLookup(char *output, int32_t length, int32_t code);
/* Build date and time, always 20 characters ("Jan  7 2024 16:13:36"). */
VERIMOND_API int32_t API_CompileTime(char *output, int32_t length);
/* options 0: path of the library file; 0x40: the platform text; a few
   diagnostic values return numbers; other options give -BAD_FLAG_ERROR. */
VERIMOND_API int32_t API_ModuleName(char *output, int32_t length, int32_t options);
/* The platform text "Win32", kept for compatibility with older callers. */
VERIMOND_API int32_t API_Platform(char *output, int32_t length);
/* A fixed text describing the build; options are not used. */
VERIMOND_API int32_t API_ModuleInfo(char *output, int32_t length, int32_t options);
/* Runs the load-time self-tests again: 0 if all pass, else -TEST_FAILED_ERROR.
   Touches no latch. */
VERIMOND_API int32_t API_PowerUpTests(int32_t options);

/* ------------------------------------------------------------------------ */
/* Hex and Base64 (CNV_), style B.                                           */
/* ------------------------------------------------------------------------ */

/* Upper-case hex of input; a short buffer is filled with whole pairs. */
VERIMOND_API int32_t CNV_HexStrFromBytes(char *output, int32_t outputLength,
                                         const unsigned char *input, int32_t inputLength);
/* Decodes hex, skipping separators (space, white space, punctuation); letters
   other than a-f give -INVALID_DATA_ERROR. A query returns the exact count. */
VERIMOND_API int32_t CNV_BytesFromHexStr(unsigned char *output, int32_t outputLength,
                                         const char *input);
/* Keeps the hex digits of exactly inputLength bytes of input. */
VERIMOND_API int32_t CNV_HexFilter(char *output, const char *input, int32_t inputLength);
/* Base64 (RFC 4648, no line breaks); a short buffer is filled by whole groups. */
VERIMOND_API int32_t CNV_B64StrFromBytes(char *output, int32_t outputLength,
                                         const unsigned char *input, int32_t inputLength);
/* Decodes Base64; white space is skipped, the text ends at the first '='. */
VERIMOND_API int32_t CNV_BytesFromB64Str(unsigned char *output, int32_t outputLength,
                                         const char *input);
/* Keeps the Base64 characters (and '=') of exactly inputLength bytes of input. */
VERIMOND_API int32_t CNV_B64Filter(char *output, const char *input, int32_t inputLength);

/* ---- Text and path conversion (CNV_Utf8FromWide, CNV_ShortPathName) ---- */

/* UTF-8 of a zero-ended 16-bit text: the byte count without the NUL. A
   surrogate unit gives -ENCODING_ERROR (also in a query); a short output
   -SHORT_BUF_ERROR with nothing written. No frame: nothing is latched. */
VERIMOND_API int32_t CNV_Utf8FromWide(char *output, int32_t outputLength, const uint16_t *wideText);
/* The path in UTF-8 (there are no short names here); the file must exist,
   else -1. A query returns the size WITH the NUL, so outputLength must be at
   least that; the real call returns the count without it. Nothing latched. */
VERIMOND_API int32_t CNV_ShortPathName(char *output, int32_t outputLength, const uint16_t *widePath);

/* ------------------------------------------------------------------------ */
/* Digests (HASH_), style B.                                                 */
/* ------------------------------------------------------------------------ */

/* Digest of a byte string, cut to outputLength; a null output or a length of
   0 or less returns the digest length. */
VERIMOND_API int32_t HASH_Bytes(unsigned char *output, int32_t outputLength,
                                const unsigned char *message, int32_t messageLength,
                                int32_t options);
/* Digest length for the option; flags are refused here. */
VERIMOND_API int32_t HASH_Length(int32_t options);

/* ---- Digests as text, of bits and of files (HASH_Hex..., HASH_File) ---- */

/* Lower-case hex of the digest, cut to whole bytes within outputLength
   characters; a null output or a length of 0 returns twice the digest length.
   A negative outputLength is taken as unbounded: the whole digest is written. */
VERIMOND_API int32_t HASH_HexFromBytes(char *output, int32_t outputLength,
                                       const unsigned char *message, int32_t messageLength,
                                       int32_t options);
/* As HASH_HexFromBytes over a message in hex. An odd length gives
   -INVALID_DATA_ERROR; an even-length text that is not hex is digested as the
   empty message. */
VERIMOND_API int32_t HASH_HexFromHex(char *output, int32_t outputLength, const char *messageHex,
                                     int32_t options);
/* Hex digest of messageBits bits (the last partial byte holds its bits at the
   high-order end). SHA-1, SHA-2 and SHA-3 only, else -BAD_FLAG_ERROR; a null
   message is -BAD_PARAM_ERROR even with 0 bits. */
VERIMOND_API int32_t HASH_HexFromBits(char *output, int32_t outputLength,
                                      const unsigned char *message, int32_t messageBits,
                                      int32_t options);
/* Digest of a file, cut to outputLength; OPT_HASH_TEXT_MODE reads CR LF as LF
   and stops at a byte 0x1A. -OPEN_ERROR if the file cannot be opened (tested
   before the option); read errors end the input silently. */
VERIMOND_API int32_t HASH_File(unsigned char *output, int32_t outputLength, const char *fileName,
                               int32_t options);
/* As HASH_File with lower-case hex output cut as HASH_HexFromBytes. */
VERIMOND_API int32_t HASH_HexFromFile(char *output, int32_t outputLength, const char *fileName,
                                      int32_t options);

/* ---- Digest stream (HASH_Init ... HASH_Reset) ---- */

/* Opens the thread's digest stream (SHA-1, SHA-2, SHA-3 only) and returns its
   handle, or 0 with NOT_SUPPORTED_ERROR latched; any earlier stream ends. */
VERIMOND_API int32_t HASH_Init(int32_t options);
/* 0, or -INVALID_HANDLE_ERROR, or -BAD_PARAM_ERROR (a null data is refused
   even with length 0). */
VERIMOND_API int32_t HASH_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
/* Bytes written (the digest cut to outputLength); ends the stream. A null
   output or a length below 1 is -BAD_PARAM_ERROR, tested before the handle. */
VERIMOND_API int32_t HASH_Final(unsigned char *output, int32_t outputLength, int32_t handle);
/* Digest length of the open stream, or -INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t HASH_DigestLength(int32_t handle);
/* Ends the stream (it does not restart it): 0 or -INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t HASH_Reset(int32_t handle);

/* ---- SHA3_ ---- */

/* Opens the thread's SHA-3 stream for 224, 256, 384 or 512 bits and returns
   its handle; 0 for any other value, with nothing latched. */
VERIMOND_API int32_t SHA3_Init(int32_t hashBitLength);
/* 0, or INVALID_HANDLE_ERROR, or BAD_PARAM_ERROR for a negative length. */
VERIMOND_API int32_t SHA3_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
/* Adds the bytes of a NUL-terminated text: 0 or a positive code. */
VERIMOND_API int32_t SHA3_AddString(int32_t handle, const char *text);
/* Ends the stream and writes lower-case hex cut to whole bytes; returns the
   digits written. A null output returns twice the digest length, and the
   stream is gone all the same. -INVALID_HANDLE_ERROR for a bad handle. */
VERIMOND_API int32_t SHA3_HexDigest(char *output, int32_t outputLength, int32_t handle);
/* Digest length in bytes, or -INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t SHA3_LengthInBytes(int32_t handle);
/* Ends the stream: 0 or INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t SHA3_Reset(int32_t handle);

/* ---- SHA1_, SHA2_, MD5_ (style A) ---- */

/* SHA1_ (SHA-1), SHA2_ (SHA-256 only) and MD5_: 0 or a positive code. Text
   outputs are the whole digest in lower-case hex and a NUL, in a buffer of
   41, 65 or 33 bytes that the caller provides; a null text output is allowed
   and drops the result. Each family has one stream per thread. */
VERIMOND_API int32_t SHA1_StringHexHash(char *digestHex, const char *text);
/* mode "t..." or "T..." reads in text mode, any other in binary: 0,
   OPEN_ERROR or READ_ERROR. */
VERIMOND_API int32_t SHA1_FileHexHash(char *digestHex, const char *fileName, const char *mode);
VERIMOND_API int32_t SHA1_BytesHexHash(char *digestHex, const unsigned char *data, int32_t dataLength);
/* Writes the 20-byte digest. */
VERIMOND_API int32_t SHA1_BytesHash(unsigned char *digest, const unsigned char *data, int32_t dataLength);
/* Opens the stream and returns its handle (never 0); no frame, no latch. */
VERIMOND_API int32_t SHA1_Init(void);
VERIMOND_API int32_t SHA1_AddString(int32_t handle, const char *text);
VERIMOND_API int32_t SHA1_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
/* Ends the stream and writes the hex digest. */
VERIMOND_API int32_t SHA1_HexDigest(char *digestHex, int32_t handle);
/* Ends the stream without a digest; it does not restart it. */
VERIMOND_API int32_t SHA1_Reset(int32_t handle);
/* HMAC-SHA-1 as hex. */
VERIMOND_API int32_t SHA1_Hmac(char *digestHex, const unsigned char *data, int32_t dataLength,
                               const unsigned char *key, int32_t keyLength);
/* HMAC-SHA-1 over hex texts decoded loosely (non-digits skipped, an odd last
   digit dropped); nothing fails, a text without digits is empty. */
VERIMOND_API int32_t SHA1_HmacHex(char *digestHex, const char *dataHex, const char *keyHex);

VERIMOND_API int32_t SHA2_StringHexHash(char *digestHex, const char *text);
VERIMOND_API int32_t SHA2_FileHexHash(char *digestHex, const char *fileName, const char *mode);
VERIMOND_API int32_t SHA2_BytesHexHash(char *digestHex, const unsigned char *data, int32_t dataLength);
/* Writes the 32-byte SHA-256 digest. */
VERIMOND_API int32_t SHA2_BytesHash(unsigned char *digest, const unsigned char *data, int32_t dataLength);
VERIMOND_API int32_t SHA2_Init(void);
VERIMOND_API int32_t SHA2_AddString(int32_t handle, const char *text);
VERIMOND_API int32_t SHA2_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
VERIMOND_API int32_t SHA2_HexDigest(char *digestHex, int32_t handle);
VERIMOND_API int32_t SHA2_Reset(int32_t handle);
VERIMOND_API int32_t SHA2_Hmac(char *digestHex, const unsigned char *data, int32_t dataLength,
                               const unsigned char *key, int32_t keyLength);
VERIMOND_API int32_t SHA2_HmacHex(char *digestHex, const char *dataHex, const char *keyHex);

VERIMOND_API int32_t MD5_StringHexHash(char *digestHex, const char *text);
VERIMOND_API int32_t MD5_FileHexHash(char *digestHex, const char *fileName, const char *mode);
VERIMOND_API int32_t MD5_BytesHexHash(char *digestHex, const unsigned char *data, int32_t dataLength);
/* Writes the 16-byte digest. */
VERIMOND_API int32_t MD5_BytesHash(unsigned char *digest, const unsigned char *data, int32_t dataLength);
VERIMOND_API int32_t MD5_Init(void);
VERIMOND_API int32_t MD5_AddString(int32_t handle, const char *text);
VERIMOND_API int32_t MD5_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
VERIMOND_API int32_t MD5_HexDigest(char *digestHex, int32_t handle);
VERIMOND_API int32_t MD5_Reset(int32_t handle);
VERIMOND_API int32_t MD5_Hmac(char *digestHex, const unsigned char *data, int32_t dataLength,
                              const unsigned char *key, int32_t keyLength);
VERIMOND_API int32_t MD5_HmacHex(char *digestHex, const char *dataHex, const char *keyHex);

/* ------------------------------------------------------------------------ */
/* MACs, XOF, PRF and key derivation.                                        */
/* ------------------------------------------------------------------------ */

/* ---- MAC_ ---- */

/* Options: OPT_HMAC_* (only the low four bits count), OPT_CMAC_* (bit 0x100;
   exact key lengths 24, 16, 24, 32), OPT_MAC_POLY1305 (32-byte key),
   OPT_KMAC_128 and OPT_KMAC_256 (empty custom string). Every result, a length
   too, is left in API_ErrorCode(). */

/* The code, cut to outputLength; a null output or a length of 0 returns the
   code length. KMAC alone is never cut: a short buffer is -SHORT_BUF_ERROR. */
VERIMOND_API int32_t MAC_Bytes(unsigned char *output, int32_t outputLength,
                               const unsigned char *message, int32_t messageLength,
                               const unsigned char *key, int32_t keyLength, int32_t options);
/* Lower-case hex cut to whole bytes; twice the code length with no output.
   A bad HMAC digest number returns -34 with no output, and with one writes
   outputLength/2 zero bytes as hex and returns the digit count. */
VERIMOND_API int32_t MAC_HexFromBytes(char *output, int32_t outputLength,
                                      const unsigned char *message, int32_t messageLength,
                                      const unsigned char *key, int32_t keyLength, int32_t options);
/* As MAC_HexFromBytes over hex texts (even runs of hex digits only, else
   -BAD_FORMAT_ERROR). An empty key text is -BAD_KEY_LEN_ERROR, except for
   KMAC, where it is the empty key. */
VERIMOND_API int32_t MAC_HexFromHex(char *output, int32_t outputLength, const char *messageHex,
                                    const char *keyHex, int32_t options);
/* Opens the thread's MAC stream: HMAC over SHA-1, SHA-2 or SHA-3 only (the
   low twelve bits must name one exactly). Returns a handle, or 0 with
   BAD_PARAM_ERROR (no key or an empty one; an open stream survives) or
   NOT_SUPPORTED_ERROR latched. */
VERIMOND_API int32_t MAC_Init(const unsigned char *key, int32_t keyLength, int32_t options);
/* 0, -INVALID_HANDLE_ERROR, or -BAD_PARAM_ERROR (a null data is refused even
   with length 0). */
VERIMOND_API int32_t MAC_AddBytes(int32_t handle, const unsigned char *data, int32_t dataLength);
/* Bytes written (the code cut to outputLength); ends the stream. A null
   output or a length below 1 is -BAD_PARAM_ERROR, tested before the handle. */
VERIMOND_API int32_t MAC_Final(unsigned char *output, int32_t outputLength, int32_t handle);
/* Code length of the open stream, or -INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t MAC_CodeLength(int32_t handle);
/* Ends the stream (it does not restart it): 0 or -INVALID_HANDLE_ERROR. */
VERIMOND_API int32_t MAC_Reset(int32_t handle);

/* ---- XOF_Bytes, PRF_Bytes ---- */

/* outputLength bytes of OPT_XOF_SHAKE128/256, OPT_XOF_ASCON_XOF/XOFA or
   MGF1 (OPT_XOF_MGF1_*: 0x210 with the digest number of SHA-1 or a SHA-2 in
   the low four bits). Returns outputLength; there is no size query. MGF1
   refuses an outputLength of 0 (-BAD_PARAM_ERROR), SHAKE returns 0. */
VERIMOND_API int32_t XOF_Bytes(unsigned char *output, int32_t outputLength,
                               const unsigned char *message, int32_t messageLength, int32_t options);
/* outputLength bytes of KMAC128/256 (OPT_KMAC_128, OPT_KMAC_256) with key
   and a zero-terminated customString ("" for none), or of SHAKE
   (OPT_XOF_SHAKE128/256), which ignores key and customString. A null message
   is -BAD_PARAM_ERROR even with length 0. */
VERIMOND_API int32_t PRF_Bytes(unsigned char *output, int32_t outputLength,
                               const unsigned char *message, int32_t messageLength,
                               const unsigned char *key, int32_t keyLength,
                               const char *customString, int32_t options);

/* ---- PBE_ ---- */

/* PBKDF2 with HMAC over OPT_HASH_SHA1, _SHA224, _SHA256, _SHA384 or _SHA512
   (low four bits; others give BAD_PARAM_ERROR). Style A: 0 or a POSITIVE
   code. Password and salt must not be empty. The output is zeroed first. */
VERIMOND_API int32_t PBE_Kdf2(unsigned char *derivedKey, int32_t derivedKeyLength,
                              const unsigned char *password, int32_t passwordLength,
                              const unsigned char *salt, int32_t saltLength,
                              int32_t iterations, int32_t options);
/* As PBE_Kdf2 with a text password and a hex salt (both may be empty); the
   key is written in UPPER-case hex and never cut: hexLength below twice
   derivedKeyLength is SHORT_BUF_ERROR. */
VERIMOND_API int32_t PBE_Kdf2Hex(char *derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength,
                                 const char *password, const char *saltHex, int32_t iterations,
                                 int32_t options);
/* scrypt; style B: 0 or a NEGATIVE code. costN a power of two, at least 2;
   out-of-range parameters give -OUT_OF_RANGE_ERROR, work memory that cannot
   be had -MEMORY_ERROR. options is not read. */
VERIMOND_API int32_t PBE_Scrypt(unsigned char *derivedKey, int32_t derivedKeyLength,
                                const unsigned char *password, int32_t passwordLength,
                                const unsigned char *salt, int32_t saltLength,
                                int32_t costN, int32_t blockSizeR, int32_t parallelP, int32_t options);
/* As PBE_Scrypt with a text password and a hex salt; UPPER-case hex output,
   never cut (-SHORT_BUF_ERROR). */
VERIMOND_API int32_t PBE_ScryptHex(char *derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength,
                                   const char *password, const char *saltHex,
                                   int32_t costN, int32_t blockSizeR, int32_t parallelP,
                                   int32_t options);

/* ------------------------------------------------------------------------ */
/* Block ciphers.                                                            */
/* ------------------------------------------------------------------------ */

/* ---- AES128_, AES192_, AES256_ (style A) ---- */

/* The per-cipher families (AES128_ ... BLF_) return 0 or a positive code;
   their Init calls return a handle or 0. direction: non-zero encrypts, 0
   decrypts. modeText: "ECB", "CBC", "CFB", "OFB" or "CTR", case-free, only
   the first three letters read. Nothing pads but the file calls: output is as
   long as the input, which must be whole blocks in ECB and CBC; CFB, OFB and
   CTR take any length, but a part block should end a message, since its
   unused keystream is dropped and the next call starts a new block.
   AES keys are 16, 24 or 32 bytes by family; blocks and IVs 16 bytes. */
/* ECB; output may be input. */
VERIMOND_API int32_t AES128_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                             const unsigned char *key, int32_t direction);
/* A null modeText is NULL_ERROR, an unknown or empty one BAD_MODE_ERROR. */
VERIMOND_API int32_t AES128_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                 const unsigned char *key, int32_t direction, const char *modeText,
                                 const unsigned char *iv);
/* Hex in, upper-case hex out, ECB. No output length: output must hold as many
   characters as inputHex, and a NUL. */
VERIMOND_API int32_t AES128_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t AES128_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                               const char *modeText, const char *ivHex);
/* Data, key and IV in Base64; output must hold the input text and a NUL. */
VERIMOND_API int32_t AES128_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                               const char *modeText, const char *ivB64);
/* File to file in 4096-byte chunks; ECB and CBC encryption always pads (PKCS#5
   unless options name another padding). No output file is left after a
   failure. */
VERIMOND_API int32_t AES128_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                            int32_t direction, const char *modeText, const unsigned char *iv);
/* options: a padding value, OPT_PREFIX_IV (the IV leads the file, not in ECB),
   OPT_LEAVE_PADDING (decryption keeps the padding, as OPT_PAD_NONE does). */
VERIMOND_API int32_t AES128_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                               int32_t direction, const char *modeText, const unsigned char *iv,
                               int32_t options);
VERIMOND_API int32_t AES128_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                               int32_t direction, const char *modeText, const char *ivHex);
/* A handle, or 0 (the reason from ..._InitError); either way it ends the
   thread's earlier context of the family. */
VERIMOND_API int32_t AES128_Init(const unsigned char *key, int32_t direction, const char *modeText,
                            const unsigned char *iv);
/* The key size comes from the text: 16, 24 or 32 bytes under any of the three
   names. InitHex, Update, UpdateHex, Final and InitError are one entry under
   all three names, over the thread's one AES context. */
VERIMOND_API int32_t AES128_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                    const char *ivHex);
/* Processes data in place; each call starts on a block boundary. */
VERIMOND_API int32_t AES128_Update(int32_t handle, unsigned char *data, int32_t length);
/* Rewrites dataHex in place, in upper case; unchanged on failure. */
VERIMOND_API int32_t AES128_UpdateHex(int32_t handle, char *dataHex);
/* Wipes the context; the handle is stale afterwards. */
VERIMOND_API int32_t AES128_Final(int32_t handle);
/* The status of the thread's last Init of the family, failed or not. No frame:
   the latch is left alone. */
VERIMOND_API int32_t AES128_InitError(void);

/* AES192_ and AES256_: as AES128_ with keys of 24 and 32 bytes. */
VERIMOND_API int32_t AES192_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                             const unsigned char *key, int32_t direction);
VERIMOND_API int32_t AES192_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                 const unsigned char *key, int32_t direction, const char *modeText,
                                 const unsigned char *iv);
VERIMOND_API int32_t AES192_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t AES192_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                               const char *modeText, const char *ivHex);
VERIMOND_API int32_t AES192_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                               const char *modeText, const char *ivB64);
VERIMOND_API int32_t AES192_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                            int32_t direction, const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t AES192_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                               int32_t direction, const char *modeText, const unsigned char *iv,
                               int32_t options);
VERIMOND_API int32_t AES192_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                               int32_t direction, const char *modeText, const char *ivHex);
VERIMOND_API int32_t AES192_Init(const unsigned char *key, int32_t direction, const char *modeText,
                            const unsigned char *iv);
VERIMOND_API int32_t AES192_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                    const char *ivHex);
VERIMOND_API int32_t AES192_Update(int32_t handle, unsigned char *data, int32_t length);
VERIMOND_API int32_t AES192_UpdateHex(int32_t handle, char *dataHex);
VERIMOND_API int32_t AES192_Final(int32_t handle);
VERIMOND_API int32_t AES192_InitError(void);
VERIMOND_API int32_t AES256_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                             const unsigned char *key, int32_t direction);
VERIMOND_API int32_t AES256_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                 const unsigned char *key, int32_t direction, const char *modeText,
                                 const unsigned char *iv);
VERIMOND_API int32_t AES256_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t AES256_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                               const char *modeText, const char *ivHex);
VERIMOND_API int32_t AES256_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                               const char *modeText, const char *ivB64);
VERIMOND_API int32_t AES256_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                            int32_t direction, const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t AES256_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                               int32_t direction, const char *modeText, const unsigned char *iv,
                               int32_t options);
VERIMOND_API int32_t AES256_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                               int32_t direction, const char *modeText, const char *ivHex);
VERIMOND_API int32_t AES256_Init(const unsigned char *key, int32_t direction, const char *modeText,
                            const unsigned char *iv);
VERIMOND_API int32_t AES256_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                    const char *ivHex);
VERIMOND_API int32_t AES256_Update(int32_t handle, unsigned char *data, int32_t length);
VERIMOND_API int32_t AES256_UpdateHex(int32_t handle, char *dataHex);
VERIMOND_API int32_t AES256_Final(int32_t handle);
VERIMOND_API int32_t AES256_InitError(void);

/* ---- DES_ ---- */

/* As AES128_ with an 8-byte key and 8-byte blocks and IVs. Differences: the
   Bytes calls report a null modeText as NULL_ERROR and a negative length as
   BAD_PARAM_ERROR, and an unknown mode word with a null IV as BAD_IV_ERROR;
   B64Mode reports a missing argument as NULL_ERROR; InitHex reports a missing
   key, mode or IV in TDEA_InitError (kept for compatibility). Weak keys are
   accepted: test them with DES_CheckKey. */
VERIMOND_API int32_t DES_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                               const unsigned char *key, int32_t direction);
VERIMOND_API int32_t DES_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                   const unsigned char *key, int32_t direction, const char *modeText,
                                   const unsigned char *iv);
VERIMOND_API int32_t DES_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t DES_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                                 const char *modeText, const char *ivHex);
VERIMOND_API int32_t DES_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                                 const char *modeText, const char *ivB64);
VERIMOND_API int32_t DES_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                              int32_t direction, const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t DES_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                                 int32_t direction, const char *modeText, const unsigned char *iv,
                                 int32_t options);
VERIMOND_API int32_t DES_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                                 int32_t direction, const char *modeText, const char *ivHex);
VERIMOND_API int32_t DES_Init(const unsigned char *key, int32_t direction, const char *modeText,
                              const unsigned char *iv);
VERIMOND_API int32_t DES_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                 const char *ivHex);
VERIMOND_API int32_t DES_Update(int32_t handle, unsigned char *data, int32_t length);
VERIMOND_API int32_t DES_UpdateHex(int32_t handle, char *dataHex);
VERIMOND_API int32_t DES_Final(int32_t handle);
VERIMOND_API int32_t DES_InitError(void);
/* 0, BAD_KEY_LEN_ERROR (length not 8, 16 or 24) or WEAK_KEY_ERROR when any
   8-byte part is a weak or semi-weak key, whatever its parity bits. */
VERIMOND_API int32_t DES_CheckKey(const unsigned char *key, int32_t keyLength);
/* The same for up to 48 hex digits; text that does not decode is
   BAD_KEY_LEN_ERROR. */
VERIMOND_API int32_t DES_CheckKeyHex(const char *keyHex);

/* ---- TDEA_ ---- */

/* As AES128_ with a 24-byte key K1 K2 K3 (encrypt-decrypt-encrypt) and 8-byte
   blocks and IVs. B64Mode reports a missing argument as NULL_ERROR; FileHex
   tests the file names first and refuses a missing IV outside ECB as
   BAD_PARAM_ERROR. */
VERIMOND_API int32_t TDEA_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                                const unsigned char *key, int32_t direction);
VERIMOND_API int32_t TDEA_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                    const unsigned char *key, int32_t direction, const char *modeText,
                                    const unsigned char *iv);
VERIMOND_API int32_t TDEA_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t TDEA_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                                  const char *modeText, const char *ivHex);
VERIMOND_API int32_t TDEA_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                                  const char *modeText, const char *ivB64);
VERIMOND_API int32_t TDEA_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                               int32_t direction, const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t TDEA_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                                  int32_t direction, const char *modeText, const unsigned char *iv,
                                  int32_t options);
VERIMOND_API int32_t TDEA_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                                  int32_t direction, const char *modeText, const char *ivHex);
VERIMOND_API int32_t TDEA_Init(const unsigned char *key, int32_t direction, const char *modeText,
                               const unsigned char *iv);
VERIMOND_API int32_t TDEA_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                  const char *ivHex);
VERIMOND_API int32_t TDEA_Update(int32_t handle, unsigned char *data, int32_t length);
VERIMOND_API int32_t TDEA_UpdateHex(int32_t handle, char *dataHex);
VERIMOND_API int32_t TDEA_Final(int32_t handle);
/* Also changed by a DES_InitHex or BLF_InitHex that lacked an argument. */
VERIMOND_API int32_t TDEA_InitError(void);

/* ---- BLF_ ---- */

/* As AES128_ with Blowfish: keys of 0 to 56 bytes (keyLength follows key; a
   length of 0 uses the one byte at key), 8-byte blocks and IVs. As DES_, the
   Bytes calls screen a null modeText (NULL_ERROR) and negative lengths
   (BAD_PARAM_ERROR), and InitHex reports a missing argument in
   TDEA_InitError. Hex and Base64 keys must hold at least one byte. */
VERIMOND_API int32_t BLF_Bytes(unsigned char *output, const unsigned char *input, int32_t length,
                               const unsigned char *key, int32_t keyLength, int32_t direction);
VERIMOND_API int32_t BLF_BytesMode(unsigned char *output, const unsigned char *input, int32_t length,
                                   const unsigned char *key, int32_t keyLength, int32_t direction,
                                   const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t BLF_Hex(char *output, const char *inputHex, const char *keyHex, int32_t direction);
VERIMOND_API int32_t BLF_HexMode(char *output, const char *inputHex, const char *keyHex, int32_t direction,
                                 const char *modeText, const char *ivHex);
VERIMOND_API int32_t BLF_B64Mode(char *output, const char *inputB64, const char *keyB64, int32_t direction,
                                 const char *modeText, const char *ivB64);
VERIMOND_API int32_t BLF_File(const char *outputFile, const char *inputFile, const unsigned char *key,
                              int32_t keyLength, int32_t direction, const char *modeText,
                              const unsigned char *iv);
VERIMOND_API int32_t BLF_FileExt(const char *outputFile, const char *inputFile, const unsigned char *key,
                                 int32_t keyLength, int32_t direction, const char *modeText,
                                 const unsigned char *iv, int32_t options);
VERIMOND_API int32_t BLF_FileHex(const char *outputFile, const char *inputFile, const char *keyHex,
                                 int32_t direction, const char *modeText, const char *ivHex);
/* A negative keyLength is BAD_PARAM_ERROR (in BLF_InitError). */
VERIMOND_API int32_t BLF_Init(const unsigned char *key, int32_t keyLength, int32_t direction,
                              const char *modeText, const unsigned char *iv);
VERIMOND_API int32_t BLF_InitHex(const char *keyHex, int32_t direction, const char *modeText,
                                 const char *ivHex);
VERIMOND_API int32_t BLF_Update(int32_t handle, unsigned char *data, int32_t length);
VERIMOND_API int32_t BLF_UpdateHex(int32_t handle, char *dataHex);
VERIMOND_API int32_t BLF_Final(int32_t handle);
VERIMOND_API int32_t BLF_InitError(void);
/* ECB in place on the live context with a direction of its own, whatever its
   mode and direction; its IV register is untouched. Whole 8-byte blocks. */
VERIMOND_API int32_t BLF_Ecb(int32_t handle, unsigned char *data, int32_t length, int32_t direction);
/* The same on hex text, rewritten in place; the handle is tested after the
   text is decoded. */
VERIMOND_API int32_t BLF_EcbHex(int32_t handle, char *dataHex, int32_t direction);

/* ---- PAD_ ---- */

/* Style B; options: OPT_PAD_PKCS5 (also for 0, OPT_PAD_NONE and unknown
   values), OPT_PAD_ONEANDZEROES, OPT_PAD_ANSIX923, OPT_PAD_W3C (PKCS#5 bytes,
   only the last one checked). blockLength is 8 or 16, else -BAD_BLK_LEN_ERROR.
   Data always gains 1 to blockLength bytes. */

/* The padded length; a null output or outputLength < 1 asks for it without
   looking at the input. input and output may overlap. */
VERIMOND_API int32_t PAD_BytesBlock(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                    int32_t inputLength, int32_t blockLength, int32_t options);
/* The unpadded length (may be 0); -DECRYPT_ERROR for bad padding, told in
   time that does not depend on the bytes. There is no size query. */
VERIMOND_API int32_t PAD_UnpadBytes(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                    int32_t inputLength, int32_t blockLength, int32_t options);
/* Hex text padded; the input keeps its case, the padding is upper case. The
   digits are not checked, an odd length is -BAD_FORMAT_ERROR. */
VERIMOND_API int32_t PAD_HexBlock(char *output, int32_t outputLength, const char *inputHex,
                                  int32_t blockLength, int32_t options);
/* The unpadded text length; outputLength < 1 asks for it. */
VERIMOND_API int32_t PAD_UnpadHex(char *output, int32_t outputLength, const char *inputHex,
                                  int32_t blockLength, int32_t options);

/* ------------------------------------------------------------------------ */
/* Generic cipher interface (CIPHER_), key wrap.                             */
/* ------------------------------------------------------------------------ */

/* ---- CIPHER_ one-shot ---- */

/* Triple DES and AES, named by algorithmText ("aes128/cbc/pkcs5", "tdea-ctr"
   ...) or by the OPT_CIPHER_ | OPT_MODE_ | OPT_PAD_ bits of options, never
   both. ECB and CBC pad (PKCS#5 unless options or the text name another
   padding, OPT_PAD_NONE for none); CFB, OFB and CTR never do. With
   OPT_PREFIX_IV the IV travels as the first block of the ciphertext. Style B:
   a length or minus a code, and the latch keeps the length as well. */

/* The ciphertext length. A null output or outputLength < 1 asks for it,
   after the key and IV length checks but before input and key are looked at.
   output may be input when padding is on. ECB with OPT_PREFIX_IV still copies
   a block from iv: a null iv there is -NULL_ERROR. */
VERIMOND_API int32_t CIPHER_EncryptBytes(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                         int32_t inputLength, const unsigned char *key, int32_t keyLength,
                                         const unsigned char *iv, int32_t ivLength, const char *algorithmText,
                                         int32_t options);
/* The plaintext length. A padded query decrypts in full, so it is exact and
   a wrong key or padding (-DECRYPT_ERROR) shows in it; a buffer as long as
   the plaintext suffices (when the buffer is shorter than the ciphertext, a
   temporary block is used; one above 1 GiB is -MEMORY_ERROR). With
   OPT_PREFIX_IV, iv and ivLength are ignored. */
VERIMOND_API int32_t CIPHER_DecryptBytes(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                         int32_t inputLength, const unsigned char *key, int32_t keyLength,
                                         const unsigned char *iv, int32_t ivLength, const char *algorithmText,
                                         int32_t options);
/* The same entries as CIPHER_EncryptBytes and CIPHER_DecryptBytes. */
VERIMOND_API int32_t CIPHER_EncryptBytes2(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                          int32_t inputLength, const unsigned char *key, int32_t keyLength,
                                          const unsigned char *iv, int32_t ivLength, const char *algorithmText,
                                          int32_t options);
VERIMOND_API int32_t CIPHER_DecryptBytes2(unsigned char *output, int32_t outputLength, const unsigned char *input,
                                          int32_t inputLength, const unsigned char *key, int32_t keyLength,
                                          const unsigned char *iv, int32_t ivLength, const char *algorithmText,
                                          int32_t options);
/* Hex in, upper-case hex out: the number of result characters. A query (null
   outputHex or outputHexLength < 1) gives twice the byte query's result, a
   negative code doubled too (-66 for a wrong key length). Characters past
   the returned length may follow in a larger buffer; nothing is written for
   an empty result. Bad hex is -INVALID_DATA_ERROR. */
VERIMOND_API int32_t CIPHER_EncryptHex(char *outputHex, int32_t outputHexLength, const char *inputHex,
                                       const char *keyHex, const char *ivHex, const char *algorithmText,
                                       int32_t options);
VERIMOND_API int32_t CIPHER_DecryptHex(char *outputHex, int32_t outputHexLength, const char *inputHex,
                                       const char *keyHex, const char *ivHex, const char *algorithmText,
                                       int32_t options);
/* File to file: 0, a negative code from the selection or the key and IV
   length checks, or a positive code of the file routine (see AES128_File).
   ECB and CBC encryption always pad, OPT_PAD_NONE too; decryption with
   OPT_PAD_NONE or OPT_LEAVE_PADDING keeps the padding. One file named twice,
   under any path, is DUP_ERROR. */
VERIMOND_API int32_t CIPHER_FileEncrypt(const char *outputFile, const char *inputFile, const unsigned char *key,
                                        int32_t keyLength, const unsigned char *iv, int32_t ivLength,
                                        const char *algorithmText, int32_t options);
VERIMOND_API int32_t CIPHER_FileDecrypt(const char *outputFile, const char *inputFile, const unsigned char *key,
                                        int32_t keyLength, const unsigned char *iv, int32_t ivLength,
                                        const char *algorithmText, int32_t options);

/* ---- CIPHER_ stateful ---- */

/* One context per thread, no padding and no IV prefix; the IV carries over
   between calls as in the per-cipher families. */

/* A handle, or 0 with the reason in API_ErrorCode(); either way the earlier
   context has ended. The set-up itself is not checked: a null key or IV with
   the right length still gives a handle. */
VERIMOND_API int32_t CIPHER_Init(int32_t direction, const char *algorithmText, const unsigned char *key,
                                 int32_t keyLength, const unsigned char *iv, int32_t ivLength, int32_t options);
/* As CIPHER_Init; a missing key text or text that is not hex fails without
   ending the earlier context. */
VERIMOND_API int32_t CIPHER_InitHex(int32_t direction, const char *algorithmText, const char *keyHex,
                                    const char *ivHex, int32_t options);
/* 0 or minus a code, but +BAD_LENGTH_ERROR (26) for data that is not whole
   blocks in ECB or CBC, which leaves the context as it was: test for
   non-zero. output may be input. A negative inputLength is -BAD_PARAM_ERROR,
   a null input with data -NULL_ERROR. */
VERIMOND_API int32_t CIPHER_Update(int32_t handle, unsigned char *output, int32_t outputLength,
                                   const unsigned char *input, int32_t inputLength);
/* As CIPHER_Update in upper-case hex. An empty input gives 0 and an empty
   text whatever the handle. An odd number of digits ends the process. */
VERIMOND_API int32_t CIPHER_UpdateHex(int32_t handle, char *outputHex, int32_t outputHexLength,
                                      const char *inputHex);
/* 0, or -INVALID_HANDLE_ERROR; wipes the context. */
VERIMOND_API int32_t CIPHER_Final(int32_t handle);

/* ---- CIPHER_KeyWrap, CIPHER_KeyUnwrap ---- */

/* options: only the cipher bits count. OPT_CIPHER_AES128/192/256: AES Key Wrap
   (RFC 3394) of 16 bytes or more in steps of 8, KEK of 16/24/32 bytes.
   OPT_CIPHER_TDEA: Triple-DES Key Wrap (RFC 3217) of a 24-byte key into 40
   bytes under a 24-byte KEK, different at each call; parity bits are kept.
   Style B; the latch is set only on failure. */

/* The wrapped length; a null output or outputLength 0 asks for it. Null data
   or kek (outside a query) is -NULL_ERROR. */
VERIMOND_API int32_t CIPHER_KeyWrap(unsigned char *output, int32_t outputLength, const unsigned char *data,
                                    int32_t dataLength, const unsigned char *kek, int32_t kekLength,
                                    int32_t options);
/* The key length; outputLength < 1 asks for it. A wrapped key that fails its
   integrity check gives -1 (not a code: API_ErrorCode() then reads 1) and an
   output zeroed over outputLength bytes. */
VERIMOND_API int32_t CIPHER_KeyUnwrap(unsigned char *output, int32_t outputLength, const unsigned char *data,
                                      int32_t dataLength, const unsigned char *kek, int32_t kekLength,
                                      int32_t options);

/* ------------------------------------------------------------------------ */
/* Stream ciphers.                                                           */
/* ------------------------------------------------------------------------ */

/* ---- CIPHER_Stream... ---- */

/* Stream options: OPT_STREAM_ARCFOUR (key 1+ bytes, no IV), OPT_STREAM_SALSA20
   (key 16/32, IV exactly 8, always from block 0), OPT_STREAM_CHACHA20 (key
   16/32, IV 8, 12 or 16; counter is the first block number, unused with a
   16-byte IV). Only the low four bits of options count. Every call works both
   ways; out holds inlen bytes and may equal input. */

/* 0 or a negative code; ARCFOUR gives +6 for a bad length or absent key, and
   a Salsa20 IV that is absent or not 8 bytes gives -51. */
VERIMOND_API int32_t CIPHER_StreamBytes(unsigned char *out, const unsigned char *input, int32_t inlen,
                                        const unsigned char *key, int32_t keylen,
                                        const unsigned char *iv, int32_t ivlen, uint32_t counter,
                                        int32_t options);
/* 0 or a negative code (not a length): upper-case hex of the result, cut at
   whole bytes to outHexLen characters; there is no size query. */
VERIMOND_API int32_t CIPHER_StreamHex(char *outHex, int32_t outHexLen, const char *inputHex,
                                      const char *keyHex, const char *ivHex, uint32_t counter,
                                      int32_t options);
/* 0 or a negative code. The output file holds the bare cipher stream; uses
   (and so ends) the thread's CIPHER_StreamInit context. */
VERIMOND_API int32_t CIPHER_StreamFile(const char *outFile, const char *inFile,
                                       const unsigned char *key, int32_t keylen,
                                       const unsigned char *iv, int32_t ivlen, uint32_t counter,
                                       int32_t options);
/* A handle, or 0 with the reason in API_ErrorCode(). One stream per thread. */
VERIMOND_API int32_t CIPHER_StreamInit(const unsigned char *key, int32_t keylen,
                                       const unsigned char *iv, int32_t ivlen, uint32_t counter,
                                       int32_t options);
/* 0 or a negative code; the output does not depend on how the message is cut.
   Absent buffers are reported (-NULL_ERROR) before a bad handle. */
VERIMOND_API int32_t CIPHER_StreamUpdate(int32_t handle, unsigned char *out,
                                         const unsigned char *input, int32_t inlen);
/* 0 or -INVALID_HANDLE_ERROR; wipes the context. */
VERIMOND_API int32_t CIPHER_StreamFinal(int32_t handle);

/* ---- PC1_ ---- */

/* ARCFOUR under its own name (style A): 0 or a positive code. */
VERIMOND_API int32_t PC1_Bytes(unsigned char *out, const unsigned char *input, int32_t inlen,
                               const unsigned char *key, int32_t keylen);
/* 0, or OPEN_ERROR, CREATE_ERROR, WRITE_ERROR, BAD_PARAM_ERROR (key length
   below 1). */
VERIMOND_API int32_t PC1_File(const char *outFile, const char *inFile, const unsigned char *key,
                              int32_t keylen);
/* 0 or a positive code; upper-case hex cut to outHexLen characters. */
VERIMOND_API int32_t PC1_Hex(char *outHex, int32_t outHexLen, const char *inputHex, const char *keyHex);

/* ------------------------------------------------------------------------ */
/* Authenticated encryption.                                                 */
/* ------------------------------------------------------------------------ */

/* ---- AEAD_ ---- */

/* Algorithms by the low byte of options: OPT_AEAD_AES_128_GCM,
   OPT_AEAD_AES_256_GCM, OPT_AEAD_CHACHA20_POLY1305 (12-byte nonce, 16-byte
   tag), OPT_AEAD_ASCON_128 and _128A (16-byte key and nonce; WithTag calls
   only). */

/* 0 or a negative code. Writes the ciphertext and 16 tag bytes; the tag
   buffer (at least 16) is zeroed first, also when the call fails. */
VERIMOND_API int32_t AEAD_Encrypt(unsigned char *out, int32_t outlen, unsigned char *tag, int32_t taglen,
                                  const unsigned char *input, int32_t inlen,
                                  const unsigned char *key, int32_t keylen,
                                  const unsigned char *nonce, int32_t noncelen,
                                  const unsigned char *aad, int32_t aadlen, int32_t options);
/* 0 or a negative code; a tag of 4 to 16 bytes. After -AUTH_FAIL_ERROR out is
   untouched for AES-GCM but holds the unauthenticated plaintext for
   ChaCha20-Poly1305. No out (or, for AES-GCM, outlen 0) verifies only. */
VERIMOND_API int32_t AEAD_Decrypt(unsigned char *out, int32_t outlen,
                                  const unsigned char *input, int32_t inlen,
                                  const unsigned char *key, int32_t keylen,
                                  const unsigned char *nonce, int32_t noncelen,
                                  const unsigned char *aad, int32_t aadlen,
                                  const unsigned char *tag, int32_t taglen, int32_t options);
/* Bytes written (or needed, with no out or outlen 0): [nonce with
   OPT_PREFIX_IV] ciphertext tag(16). Negative code on failure. */
VERIMOND_API int32_t AEAD_EncryptWithTag(unsigned char *out, int32_t outlen,
                                         const unsigned char *input, int32_t inlen,
                                         const unsigned char *key, int32_t keylen,
                                         const unsigned char *nonce, int32_t noncelen,
                                         const unsigned char *aad, int32_t aadlen, int32_t options);
/* Plaintext bytes (or needed), or a negative code. After -AUTH_FAIL_ERROR the
   plaintext length of out is zero for Ascon, untouched for AES-GCM, and holds
   unauthenticated plaintext for ChaCha20-Poly1305. With outlen 0 the call is
   a size query and checks no tag: to authenticate an empty plaintext, pass
   outlen 1 or more. */
VERIMOND_API int32_t AEAD_DecryptWithTag(unsigned char *out, int32_t outlen,
                                         const unsigned char *input, int32_t inlen,
                                         const unsigned char *key, int32_t keylen,
                                         const unsigned char *nonce, int32_t noncelen,
                                         const unsigned char *aad, int32_t aadlen, int32_t options);
/* A handle, or 0 with the reason latched; a key of the wrong length for
   AES-GCM or ChaCha20-Poly1305 returns -BAD_KEY_LEN_ERROR itself, unlatched.
   One context per thread; the key survives each Finish. */
VERIMOND_API int32_t AEAD_InitKey(const unsigned char *key, int32_t keylen, int32_t options);
/* The calls below give 0 or a negative code; -MISUSE_ERROR out of sequence:
   SetNonce, AddAAD*, StartEncrypt|StartDecrypt, Update*, Finish... */
VERIMOND_API int32_t AEAD_SetNonce(int32_t handle, const unsigned char *nonce, int32_t noncelen);
VERIMOND_API int32_t AEAD_AddAAD(int32_t handle, const unsigned char *aad, int32_t aadlen);
VERIMOND_API int32_t AEAD_StartEncrypt(int32_t handle);
/* The expected tag, 4 bytes or more; only its first 16 count. */
VERIMOND_API int32_t AEAD_StartDecrypt(int32_t handle, const unsigned char *tag, int32_t taglen);
/* While decrypting, an absent out only authenticates the input. */
VERIMOND_API int32_t AEAD_Update(int32_t handle, unsigned char *out, int32_t outlen,
                                 const unsigned char *input, int32_t inlen);
/* Writes 16 tag bytes (taglen at least 16). */
VERIMOND_API int32_t AEAD_FinishEncrypt(int32_t handle, unsigned char *tag, int32_t taglen);
/* -AUTH_FAIL_ERROR on a bad tag; the plaintext already handed out by Update
   is not recalled. */
VERIMOND_API int32_t AEAD_FinishDecrypt(int32_t handle);
VERIMOND_API int32_t AEAD_Destroy(int32_t handle);

/* ---- GCM_ ---- */

/* AES-GCM with 16, 24 or 32-byte keys, IVs of any non-zero length and tags of
   4 to 16 bytes. options is reserved. */

/* 0 or a negative code; writes min(taglen, 16) tag bytes. */
VERIMOND_API int32_t GCM_Encrypt(unsigned char *out, int32_t outlen, unsigned char *tag, int32_t taglen,
                                 const unsigned char *input, int32_t inlen,
                                 const unsigned char *key, int32_t keylen,
                                 const unsigned char *iv, int32_t ivlen,
                                 const unsigned char *aad, int32_t aadlen, int32_t options);
/* 0 or a negative code. The tag is checked before anything is written, so out
   is untouched on -AUTH_FAIL_ERROR; no out verifies only. A taglen of 0
   compares nothing and succeeds. */
VERIMOND_API int32_t GCM_Decrypt(unsigned char *out, int32_t outlen,
                                 const unsigned char *input, int32_t inlen,
                                 const unsigned char *key, int32_t keylen,
                                 const unsigned char *iv, int32_t ivlen,
                                 const unsigned char *aad, int32_t aadlen,
                                 const unsigned char *tag, int32_t taglen, int32_t options);
/* A key handle for any number of messages, or 0 with the reason latched. */
VERIMOND_API int32_t GCM_InitKey(const unsigned char *key, int32_t keylen, int32_t options);
/* As GCM_Encrypt under the handle's key; a bad handle gives +64 (positive). */
VERIMOND_API int32_t GCM_NextEncrypt(int32_t handle, unsigned char *out, int32_t outlen,
                                     unsigned char *tag, int32_t taglen,
                                     const unsigned char *input, int32_t inlen,
                                     const unsigned char *iv, int32_t ivlen,
                                     const unsigned char *aad, int32_t aadlen);
/* As GCM_Decrypt under the handle's key, but out is required; a bad handle
   gives +64. */
VERIMOND_API int32_t GCM_NextDecrypt(int32_t handle, unsigned char *out, int32_t outlen,
                                     const unsigned char *input, int32_t inlen,
                                     const unsigned char *iv, int32_t ivlen,
                                     const unsigned char *aad, int32_t aadlen,
                                     const unsigned char *tag, int32_t taglen);
/* 0, or +64 for a bad handle; wipes the key. */
VERIMOND_API int32_t GCM_FinishKey(int32_t handle);

/* ------------------------------------------------------------------------ */
/* Random numbers (RNG_).                                                    */
/* ------------------------------------------------------------------------ */

/* Each thread has its own generator, set up by its first call. A failed
   generator ends the process (status 1) after a report: no call ever returns
   output from it. Requests are limited to 65536 bytes (PRNG_ERR_TOOBIG). */

/* length random bytes, with seed as additional input (null with seedLength
   0 for none). Style A: 0, BAD_PARAM_ERROR or PRNG_ERR_TOOBIG. */
VERIMOND_API int32_t RNG_KeyBytes(unsigned char *output, int32_t length,
                                  const unsigned char *seed, int32_t seedLength);
/* count random bytes as upper-case hex, cut to outputLength characters. Style
   A: 0 (not the length); a null output is NULL_ERROR, not a size query. */
VERIMOND_API int32_t RNG_KeyHex(char *output, int32_t outputLength, int32_t count,
                                const unsigned char *seed, int32_t seedLength);
/* As RNG_KeyBytes without a seed and with a lighter stir. Style A. */
VERIMOND_API int32_t RNG_NonceData(unsigned char *output, int32_t length);
/* As RNG_KeyHex without a seed and with a lighter stir. Style A. */
VERIMOND_API int32_t RNG_NonceDataHex(char *output, int32_t outputLength, int32_t count);
/* A number from lower to upper inclusive; lower when upper is not above it.
   Sets no error code: the result is always a number. */
VERIMOND_API int32_t RNG_Number(int32_t lower, int32_t upper);
/* As RNG_KeyBytes, with entropy typed by the user on the console folded in;
   options 1/2/3 ask for 128/192/256 bits, else 112. Pauses 500 ms first. The
   prompt ends early at the end of standard input. Style A. */
VERIMOND_API int32_t RNG_BytesWithPrompt(unsigned char *output, int32_t length,
                                         const char *prompt, int32_t options);
/* The hex form of RNG_BytesWithPrompt, with RNG_KeyHex's rules. Style A. */
VERIMOND_API int32_t RNG_HexWithPrompt(char *output, int32_t outputLength, int32_t count,
                                       const char *prompt, int32_t options);
/* Sets up the thread's generator. With a seed file name: updates the file
   (creating it if missing), 0 or -PRNG_ERR_...; without: which hardware
   instructions are used (1 RDRAND, 2 RDSEED, 3 both) or -PRNG_ERR_NOTAVAIL,
   the normal answer where there are none. OPT_RNG_NO_INTEL_DRBG switches the
   instructions off for the whole process. */
VERIMOND_API int32_t RNG_Initialize(const char *seedFile, int32_t options);
/* Creates or replaces a 128-byte seed file, prompting the user for entropy
   first (options as RNG_BytesWithPrompt). Style B: 0 or a negative code. */
VERIMOND_API int32_t RNG_MakeSeedFile(const char *seedFile, const char *prompt, int32_t options);
/* Reseeds from an existing seed file and rewrites its first 128 bytes.
   Style B: 0, -PRNG_ERR_FILE_OPEN for a missing file, -PRNG_ERR_FILE_LOCK
   when another holder keeps it locked (ten tries, a second apart). */
VERIMOND_API int32_t RNG_UpdateSeedFile(const char *seedFile, int32_t options);
/* Health check, then the FIPS 140-2 statistical tests on 20000 fresh bits,
   with a report when a file name is given: 0 passed, 1 failed (the error
   code then reads 1), -PRNG_ERR_FILE_CREATE, -PRNG_ERR_CATASTROPHIC. */
VERIMOND_API int32_t RNG_Test(const char *resultFile);
/* Answers an HMAC_DRBG SHA-512 validation record given as hex texts (null or
   "" for empty): instantiate, reseed, two generates; lower-case hex of the
   second. Option 0x10000 generates before the reseed; with no reseed texts
   the reseed is left out. Style B: the hex length, a query for a null output,
   -BAD_PARAM_ERROR for returnedBits < 1, -PRNG_ERR_TOOBIG above 524288. */
VERIMOND_API int32_t RNG_TestDRBGVS(char *output, int32_t outputLength, int32_t returnedBits,
                                    const char *entropy, const char *nonce,
                                    const char *personalisation, const char *additional1,
                                    const char *reseedEntropy, const char *reseedAdditional,
                                    const char *additional2, int32_t options);

/* ------------------------------------------------------------------------ */
/* Utilities.                                                                */
/* ------------------------------------------------------------------------ */

/* ---- ZLIB_, COMPR_ ---- */

/* zlib stream (RFC 1950) of input: its length. A null output or a length of
   0 asks for the exact size, which costs a full compression. Only failures
   are latched. */
VERIMOND_API int32_t ZLIB_Deflate(unsigned char *output, int32_t outputLength,
                                  const unsigned char *input, int32_t inputLength);
/* Restores a zlib stream: the byte count. Corrupt or truncated input gives
   -INVALID_DATA_ERROR, a short output -SHORT_BUF_ERROR. Only failures latched. */
VERIMOND_API int32_t ZLIB_Inflate(unsigned char *output, int32_t outputLength,
                                  const unsigned char *input, int32_t inputLength);
/* options OPT_COMPR_ZLIB or OPT_COMPR_ZSTD (low four bits, others give
   -BAD_FLAG_ERROR): the compressed length. Every result is latched, the
   length too. A query costs the whole work. */
VERIMOND_API int32_t COMPR_Compress(unsigned char *output, int32_t outputLength,
                                    const unsigned char *input, int32_t inputLength,
                                    int32_t options);
/* The restored length. Zstandard frames must store their content size
   (else -INVALID_DATA_ERROR); a header that is not one gives
   -BAD_FORMAT_ERROR. Every result is latched. */
VERIMOND_API int32_t COMPR_Uncompress(unsigned char *output, int32_t outputLength,
                                      const unsigned char *input, int32_t inputLength,
                                      int32_t options);

/* ---- CRC_ ---- */

/* CRC-32 (zlib's) of the bytes, as a signed value. A result of 0 also sets
   BAD_PARAM_ERROR in the latch, whether a failure or a true CRC of 0 (empty
   data). options are not used. */
VERIMOND_API int32_t CRC_Bytes(const unsigned char *data, int32_t length, int32_t options);
/* CRC-32 of the text up to its NUL; 0 latches BAD_PARAM_ERROR as above. */
VERIMOND_API int32_t CRC_String(const char *text, int32_t options);
/* CRC-32 of the file's bytes; 0 (unopenable, unreadable or empty file)
   latches OPEN_ERROR. */
VERIMOND_API int32_t CRC_File(const char *fileName, int32_t options);

/* ---- WIPE_ ---- */

/* Zeroes length bytes in place: 0, NULL_ERROR, or BAD_PARAM_ERROR for a
   length of 0 or less. */
VERIMOND_API int32_t WIPE_Data(unsigned char *data, int32_t length);
/* Overwrites the file (nine passes, each committed to disk, two verified;
   OPT_WIPE_FAST: zeros and a check), truncates and removes it: 0,
   NULL_ERROR, OPEN_ERROR (file untouched) or WIPE_ERROR. */
VERIMOND_API int32_t WIPE_File(const char *fileName, int32_t options);

#ifdef __cplusplus
}
#endif

#endif /* VERIMOND_H */
