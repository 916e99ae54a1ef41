// PBE_: password-based key derivation. The PBKDF2 pair is style A (0 or a
// positive code), the scrypt pair style B (0 or minus a code); all four
// return 0 on success, never a length.
#include "frame/frame.h"
#include "mac/pbkdf2.h"
#include "mac/scrypt.h"
#include "verimond.h"

extern "C" {

int32_t PBE_Kdf2(unsigned char* derivedKey, int32_t derivedKeyLength, const unsigned char* password,
                 int32_t passwordLength, const unsigned char* salt, int32_t saltLength, int32_t iterations,
                 int32_t options) {
    EnterCall();
    return LeaveCall(
        Pbkdf2Bytes(derivedKey, derivedKeyLength, password, passwordLength, salt, saltLength, iterations, options));
}

int32_t PBE_Kdf2Hex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                    const char* saltHex, int32_t iterations, int32_t options) {
    EnterCall();
    return LeaveCall(Pbkdf2Hex(derivedKeyHex, hexLength, derivedKeyLength, password, saltHex, iterations, options));
}

int32_t PBE_Scrypt(unsigned char* derivedKey, int32_t derivedKeyLength, const unsigned char* password,
                   int32_t passwordLength, const unsigned char* salt, int32_t saltLength, int32_t costN,
                   int32_t blockSizeR, int32_t parallelP, int32_t options) {
    EnterCall();
    return LeaveCall(
        ScryptBytes(derivedKey, derivedKeyLength, password, passwordLength, salt, saltLength, costN, blockSizeR, parallelP));
}

int32_t PBE_ScryptHex(char* derivedKeyHex, int32_t hexLength, int32_t derivedKeyLength, const char* password,
                      const char* saltHex, int32_t costN, int32_t blockSizeR, int32_t parallelP, int32_t options) {
    EnterCall();
    return LeaveCall(
        ScryptHex(derivedKeyHex, hexLength, derivedKeyLength, password, saltHex, costN, blockSizeR, parallelP));
}

}  // extern "C"
