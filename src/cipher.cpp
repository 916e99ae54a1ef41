// CIPHER_ block-cipher calls for Triple DES and AES: one-shot, stateful and
// key wrap. Style B; the file calls hand on positive codes of the file
// routine, CIPHER_Update a positive BAD_LENGTH_ERROR from the engine.
#include "block/keywrap.h"
#include "cipher/cipher_oneshot.h"
#include "cipher/cipher_stateful.h"
#include "frame/frame.h"
#include "verimond.h"

extern "C" {

int32_t CIPHER_EncryptBytes(unsigned char* output, int32_t outputLength, const unsigned char* input,
                            int32_t inputLength, const unsigned char* key, int32_t keyLength,
                            const unsigned char* iv, int32_t ivLength, const char* algorithmText, int32_t options) {
    EnterCall();
    StirEntropy(0);
    // Every result goes to the latch, a length as well as a failure.
    return LeaveCall(CipherEncryptBytes(output, outputLength, input, inputLength, key, keyLength, iv, ivLength,
                                        algorithmText, options));
}

int32_t CIPHER_DecryptBytes(unsigned char* output, int32_t outputLength, const unsigned char* input,
                            int32_t inputLength, const unsigned char* key, int32_t keyLength,
                            const unsigned char* iv, int32_t ivLength, const char* algorithmText, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(CipherDecryptBytes(output, outputLength, input, inputLength, key, keyLength, iv, ivLength,
                                        algorithmText, options));
}

// The same entries under a second name.
int32_t CIPHER_EncryptBytes2(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                             const unsigned char*, int32_t, const char*, int32_t)
    __attribute__((alias("CIPHER_EncryptBytes")));
int32_t CIPHER_DecryptBytes2(unsigned char*, int32_t, const unsigned char*, int32_t, const unsigned char*, int32_t,
                             const unsigned char*, int32_t, const char*, int32_t)
    __attribute__((alias("CIPHER_DecryptBytes")));

int32_t CIPHER_EncryptHex(char* outputHex, int32_t outputHexLength, const char* inputHex, const char* keyHex,
                          const char* ivHex, const char* algorithmText, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(CipherHexCore(1, outputHex, outputHexLength, inputHex, keyHex, ivHex, algorithmText, options));
}

int32_t CIPHER_DecryptHex(char* outputHex, int32_t outputHexLength, const char* inputHex, const char* keyHex,
                          const char* ivHex, const char* algorithmText, int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(CipherHexCore(0, outputHex, outputHexLength, inputHex, keyHex, ivHex, algorithmText, options));
}

int32_t CIPHER_FileEncrypt(const char* outputFile, const char* inputFile, const unsigned char* key,
                           int32_t keyLength, const unsigned char* iv, int32_t ivLength, const char* algorithmText,
                           int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(
        CipherFileEncrypt(outputFile, inputFile, key, keyLength, iv, ivLength, algorithmText, options));
}

int32_t CIPHER_FileDecrypt(const char* outputFile, const char* inputFile, const unsigned char* key,
                           int32_t keyLength, const unsigned char* iv, int32_t ivLength, const char* algorithmText,
                           int32_t options) {
    EnterCall();
    StirEntropy(0);
    return LeaveCall(
        CipherFileDecrypt(outputFile, inputFile, key, keyLength, iv, ivLength, algorithmText, options));
}

int32_t CIPHER_Init(int32_t direction, const char* algorithmText, const unsigned char* key, int32_t keyLength,
                    const unsigned char* iv, int32_t ivLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    int32_t reason = 0;
    const int32_t handle = CipherInit(direction, algorithmText, key, keyLength, iv, ivLength, options, &reason);
    // Only a failure reaches the latch.
    if (handle == 0) LeaveCall(reason);
    return handle;
}

int32_t CIPHER_InitHex(int32_t direction, const char* algorithmText, const char* keyHex, const char* ivHex,
                       int32_t options) {
    EnterCall();
    StirEntropy(0);
    int32_t reason = 0;
    const int32_t handle = CipherInitHex(direction, algorithmText, keyHex, ivHex, options, &reason);
    if (handle == 0) LeaveCall(reason);
    return handle;
}

int32_t CIPHER_Update(int32_t handle, unsigned char* output, int32_t outputLength, const unsigned char* input,
                      int32_t inputLength) {
    EnterCall();
    return LeaveCall(CipherUpdate(handle, output, outputLength, input, inputLength));
}

int32_t CIPHER_UpdateHex(int32_t handle, char* outputHex, int32_t outputHexLength, const char* inputHex) {
    EnterCall();
    return LeaveCall(CipherUpdateHex(handle, outputHex, outputHexLength, inputHex));
}

int32_t CIPHER_Final(int32_t handle) {
    EnterCall();
    return LeaveCall(CipherFinal(handle));
}

int32_t CIPHER_KeyWrap(unsigned char* output, int32_t outputLength, const unsigned char* data, int32_t dataLength,
                       const unsigned char* kek, int32_t kekLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    // Failures only: after a success the latch reads 0.
    return LeaveOnFailure(KeyWrap(output, outputLength, data, dataLength, kek, kekLength, options));
}

int32_t CIPHER_KeyUnwrap(unsigned char* output, int32_t outputLength, const unsigned char* data,
                         int32_t dataLength, const unsigned char* kek, int32_t kekLength, int32_t options) {
    EnterCall();
    StirEntropy(0);
    // A failed integrity check is -1, which the latch shows as 1.
    return LeaveOnFailure(KeyUnwrap(output, outputLength, data, dataLength, kek, kekLength, options));
}

}  // extern "C"
