"""Loading of libverimond, the argument types of its exports, and the error
type that every wrapper raises.

The library is looked for in this order: the file named by the environment
variable VERIMOND_LIBRARY; the in-tree build (build/libverimond.so.6 beside
the python directory); the system's loader (libverimond.so.6).
"""
import ctypes
import os

__all__ = ["VerimondError", "error_text", "lib", "library_path"]

# Argument codes: p a pointer (bytes, None or a ctypes buffer), i int32_t,
# u uint32_t. Every export returns int32_t.
SIGNATURES = {
    "AEAD_AddAAD": "ipi", "AEAD_Decrypt": "pipipipipipii", "AEAD_DecryptWithTag": "pipipipipii",
    "AEAD_Destroy": "i", "AEAD_Encrypt": "pipipipipipii", "AEAD_EncryptWithTag": "pipipipipii",
    "AEAD_FinishDecrypt": "i", "AEAD_FinishEncrypt": "ipi", "AEAD_InitKey": "pii",
    "AEAD_SetNonce": "ipi", "AEAD_StartDecrypt": "ipi", "AEAD_StartEncrypt": "i",
    "AEAD_Update": "ipipi",
    "AES128_B64Mode": "pppipp", "AES128_Bytes": "ppipi", "AES128_BytesMode": "ppipipp",
    "AES128_File": "pppipp", "AES128_FileExt": "pppippi", "AES128_FileHex": "pppipp",
    "AES128_Final": "i", "AES128_Hex": "pppi", "AES128_HexMode": "pppipp", "AES128_Init": "pipp",
    "AES128_InitError": "", "AES128_InitHex": "pipp", "AES128_Update": "ipi",
    "AES128_UpdateHex": "ip",
    "AES192_B64Mode": "pppipp", "AES192_Bytes": "ppipi", "AES192_BytesMode": "ppipipp",
    "AES192_File": "pppipp", "AES192_FileExt": "pppippi", "AES192_FileHex": "pppipp",
    "AES192_Final": "i", "AES192_Hex": "pppi", "AES192_HexMode": "pppipp", "AES192_Init": "pipp",
    "AES192_InitError": "", "AES192_InitHex": "pipp", "AES192_Update": "ipi",
    "AES192_UpdateHex": "ip",
    "AES256_B64Mode": "pppipp", "AES256_Bytes": "ppipi", "AES256_BytesMode": "ppipipp",
    "AES256_File": "pppipp", "AES256_FileExt": "pppippi", "AES256_FileHex": "pppipp",
    "AES256_Final": "i", "AES256_Hex": "pppi", "AES256_HexMode": "pppipp", "AES256_Init": "pipp",
    "AES256_InitError": "", "AES256_InitHex": "pipp", "AES256_Update": "ipi",
    "AES256_UpdateHex": "ip",
    "API_CompileTime": "pi", "API_ErrorCode": "", "API_ErrorLookup": "pii",
    "API_ModuleInfo": "pii", "API_ModuleName": "pii", "API_Platform": "pi",
    "API_PowerUpTests": "i", "API_Version": "",
    "BLF_B64Mode": "pppipp", "BLF_Bytes": "ppipii", "BLF_BytesMode": "ppipiipp",
    "BLF_Ecb": "ipii", "BLF_EcbHex": "ipi", "BLF_File": "pppiipp", "BLF_FileExt": "pppiippi",
    "BLF_FileHex": "pppipp", "BLF_Final": "i", "BLF_Hex": "pppi", "BLF_HexMode": "pppipp",
    "BLF_Init": "piipp", "BLF_InitError": "", "BLF_InitHex": "pipp", "BLF_Update": "ipi",
    "BLF_UpdateHex": "ip",
    "CIPHER_DecryptBytes": "pipipipipi", "CIPHER_DecryptBytes2": "pipipipipi",
    "CIPHER_DecryptHex": "pippppi", "CIPHER_EncryptBytes": "pipipipipi",
    "CIPHER_EncryptBytes2": "pipipipipi", "CIPHER_EncryptHex": "pippppi",
    "CIPHER_FileDecrypt": "pppipipi", "CIPHER_FileEncrypt": "pppipipi", "CIPHER_Final": "i",
    "CIPHER_Init": "ippipii", "CIPHER_InitHex": "ipppi", "CIPHER_KeyUnwrap": "pipipii",
    "CIPHER_KeyWrap": "pipipii", "CIPHER_StreamBytes": "ppipipiui",
    "CIPHER_StreamFile": "pppipiui", "CIPHER_StreamFinal": "i", "CIPHER_StreamHex": "pipppui",
    "CIPHER_StreamInit": "pipiui", "CIPHER_StreamUpdate": "ippi", "CIPHER_Update": "ipipi",
    "CIPHER_UpdateHex": "ipip",
    "CNV_B64Filter": "ppi", "CNV_B64StrFromBytes": "pipi", "CNV_BytesFromB64Str": "pip",
    "CNV_BytesFromHexStr": "pip", "CNV_HexFilter": "ppi", "CNV_HexStrFromBytes": "pipi",
    "CNV_ShortPathName": "pip", "CNV_Utf8FromWide": "pip",
    "COMPR_Compress": "pipii", "COMPR_Uncompress": "pipii",
    "CRC_Bytes": "pii", "CRC_File": "pi", "CRC_String": "pi",
    "DES_B64Mode": "pppipp", "DES_Bytes": "ppipi", "DES_BytesMode": "ppipipp",
    "DES_CheckKey": "pi", "DES_CheckKeyHex": "p", "DES_File": "pppipp", "DES_FileExt": "pppippi",
    "DES_FileHex": "pppipp", "DES_Final": "i", "DES_Hex": "pppi", "DES_HexMode": "pppipp",
    "DES_Init": "pipp", "DES_InitError": "", "DES_InitHex": "pipp", "DES_Update": "ipi",
    "DES_UpdateHex": "ip",
    "GCM_Decrypt": "pipipipipipii", "GCM_Encrypt": "pipipipipipii", "GCM_FinishKey": "i",
    "GCM_InitKey": "pii", "GCM_NextDecrypt": "ipipipipipi", "GCM_NextEncrypt": "ipipipipipi",
    "HASH_AddBytes": "ipi", "HASH_Bytes": "pipii", "HASH_DigestLength": "i", "HASH_File": "pipi",
    "HASH_Final": "pii", "HASH_HexFromBits": "pipii", "HASH_HexFromBytes": "pipii",
    "HASH_HexFromFile": "pipi", "HASH_HexFromHex": "pipi", "HASH_Init": "i", "HASH_Length": "i",
    "HASH_Reset": "i",
    "MAC_AddBytes": "ipi", "MAC_Bytes": "pipipii", "MAC_CodeLength": "i", "MAC_Final": "pii",
    "MAC_HexFromBytes": "pipipii", "MAC_HexFromHex": "pippi", "MAC_Init": "pii", "MAC_Reset": "i",
    "MD5_AddBytes": "ipi", "MD5_AddString": "ip", "MD5_BytesHash": "ppi",
    "MD5_BytesHexHash": "ppi", "MD5_FileHexHash": "ppp", "MD5_HexDigest": "pi",
    "MD5_Hmac": "ppipi", "MD5_HmacHex": "ppp", "MD5_Init": "", "MD5_Reset": "i",
    "MD5_StringHexHash": "pp",
    "PAD_BytesBlock": "pipiii", "PAD_HexBlock": "pipii", "PAD_UnpadBytes": "pipiii",
    "PAD_UnpadHex": "pipii",
    "PBE_Kdf2": "pipipiii", "PBE_Kdf2Hex": "piippii", "PBE_Scrypt": "pipipiiiii",
    "PBE_ScryptHex": "piippiiii",
    "PC1_Bytes": "ppipi", "PC1_File": "pppi", "PC1_Hex": "pipp",
    "PRF_Bytes": "pipipipi",
    "RNG_BytesWithPrompt": "pipi", "RNG_HexWithPrompt": "piipi", "RNG_Initialize": "pi",
    "RNG_KeyBytes": "pipi", "RNG_KeyHex": "piipi", "RNG_MakeSeedFile": "ppi",
    "RNG_NonceData": "pi", "RNG_NonceDataHex": "pii", "RNG_Number": "ii", "RNG_Test": "p",
    "RNG_TestDRBGVS": "piipppppppi", "RNG_UpdateSeedFile": "pi",
    "SHA1_AddBytes": "ipi", "SHA1_AddString": "ip", "SHA1_BytesHash": "ppi",
    "SHA1_BytesHexHash": "ppi", "SHA1_FileHexHash": "ppp", "SHA1_HexDigest": "pi",
    "SHA1_Hmac": "ppipi", "SHA1_HmacHex": "ppp", "SHA1_Init": "", "SHA1_Reset": "i",
    "SHA1_StringHexHash": "pp",
    "SHA2_AddBytes": "ipi", "SHA2_AddString": "ip", "SHA2_BytesHash": "ppi",
    "SHA2_BytesHexHash": "ppi", "SHA2_FileHexHash": "ppp", "SHA2_HexDigest": "pi",
    "SHA2_Hmac": "ppipi", "SHA2_HmacHex": "ppp", "SHA2_Init": "", "SHA2_Reset": "i",
    "SHA2_StringHexHash": "pp",
    "SHA3_AddBytes": "ipi", "SHA3_AddString": "ip", "SHA3_HexDigest": "pii", "SHA3_Init": "i",
    "SHA3_LengthInBytes": "i", "SHA3_Reset": "i",
    "TDEA_B64Mode": "pppipp", "TDEA_Bytes": "ppipi", "TDEA_BytesMode": "ppipipp",
    "TDEA_File": "pppipp", "TDEA_FileExt": "pppippi", "TDEA_FileHex": "pppipp", "TDEA_Final": "i",
    "TDEA_Hex": "pppi", "TDEA_HexMode": "pppipp", "TDEA_Init": "pipp", "TDEA_InitError": "",
    "TDEA_InitHex": "pipp", "TDEA_Update": "ipi", "TDEA_UpdateHex": "ip",
    "WIPE_Data": "pi", "WIPE_File": "pi",
    "XOF_Bytes": "pipii",
    "ZLIB_Deflate": "pipi", "ZLIB_Inflate": "pipi",
}

_CODES = {"p": ctypes.c_char_p, "i": ctypes.c_int32, "u": ctypes.c_uint32}
_SONAME = "libverimond.so.6"


def _candidates():
    named = os.environ.get("VERIMOND_LIBRARY")
    if named:
        return [named]
    here = os.path.dirname(os.path.abspath(__file__))
    in_tree = os.path.normpath(os.path.join(here, "..", "..", "build", _SONAME))
    found = [in_tree] if os.path.exists(in_tree) else []
    return found + [_SONAME, "libverimond.so"]


class _Library:
    """The loaded library; exports are bound with their types on first use."""

    def __init__(self):
        self._cdll = None
        self.path = None

    def _load(self):
        errors = []
        for candidate in _candidates():
            try:
                self._cdll = ctypes.CDLL(candidate)
                self.path = candidate
                return
            except OSError as e:
                errors.append(str(e))
        raise OSError("libverimond could not be loaded (set VERIMOND_LIBRARY): "
                      + "; ".join(errors))

    def __getattr__(self, name):
        if name not in SIGNATURES:
            raise AttributeError(name)
        if self._cdll is None:
            self._load()
        function = getattr(self._cdll, name)
        function.restype = ctypes.c_int32
        function.argtypes = [_CODES[c] for c in SIGNATURES[name]]
        setattr(self, name, function)
        return function


lib = _Library()


def library_path():
    """The file the library was loaded from (loading it if need be)."""
    lib.API_Version()
    return lib.path


def error_text(code):
    """The library's text for a code of either sign, as "TEXT (NAME)"; an
    empty string for a code the library does not know."""
    buffer = ctypes.create_string_buffer(256)
    n = lib.API_ErrorLookup(buffer, 255, code)
    return buffer.value.decode("ascii", "replace") if n > 0 else ""


class VerimondError(Exception):
    """A failure reported by the library.

    code is the library's error code (always positive), text its message
    ("Invalid key length (BAD_KEY_LEN_ERROR)") and function the export that
    reported it.
    """

    def __init__(self, code, function=None):
        self.code = abs(int(code))
        self.text = error_text(self.code) or "unknown error code %d" % self.code
        self.function = function
        super().__init__("%s: %s" % (function, self.text) if function else self.text)
