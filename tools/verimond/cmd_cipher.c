/* encrypt and decrypt (block ciphers over files) and seal and open
   (authenticated encryption). */
#define _GNU_SOURCE
#include <ctype.h>
#include <errno.h>
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "cli.h"

/* The cipher's block size and whether the mode is ECB, read from an
   algorithm text such as "AES-128/CBC/PKCS5". The library parses the text
   itself; the tool only needs these two facts to make or expect an IV.
   Returns 0, or -1 if the text names no cipher it knows. */
static int algorithm_shape(const char *text, int32_t *blockSize, int *ecb) {
    static const struct { const char *name; int32_t block; } ciphers[] = {
        {"aes128", 16}, {"aes192", 16}, {"aes256", 16},
        {"tdea", 8},    {"3des", 8},    {"desede3", 8}, {"desede", 8}};
    char kept[65];
    size_t n = 0;
    for (const char *p = text; *p && n < sizeof kept - 1; p++) {
        if (isalnum((unsigned char)*p) && !((unsigned char)*p & 0x80))
            kept[n++] = (char)tolower((unsigned char)*p);
    }
    kept[n] = 0;
    for (size_t i = 0; i < sizeof ciphers / sizeof ciphers[0]; i++) {
        size_t len = strlen(ciphers[i].name);
        if (strncmp(kept, ciphers[i].name, len) == 0) {
            *blockSize = ciphers[i].block;
            *ecb = kept[len] == 0 || strncmp(kept + len, "ecb", 3) == 0;
            return 0;
        }
    }
    return -1;
}

static int same_file(const char *a, const char *b) {
    struct stat sa, sb;
    if (strcmp(a, "-") == 0 || strcmp(b, "-") == 0)
        return 0;
    if (stat(a, &sa) != 0 || stat(b, &sb) != 0)
        return 0;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

enum { OPT_KEY_FILE = 1000, OPT_KEY_ENV, OPT_IV, OPT_PREFIX, OPT_AAD, OPT_AAD_FILE };

/* ---- encrypt, decrypt ---- */

static const char encrypt_help[] =
    "Usage: verimond encrypt [OPTION]... KEY-OPTION INPUT OUTPUT\n"
    "Encrypts the file INPUT to OUTPUT ('-' for standard input or output)\n"
    "with a block cipher named by an algorithm text such as aes128/cbc/pkcs5:\n"
    "  cipher   aes128, aes192, aes256 (keys of 16, 24, 32 bytes) or tdea\n"
    "           (Triple DES, 24 bytes)\n"
    "  mode     ecb, cbc, ofb, cfb or ctr\n"
    "  padding  pkcs5, oneandzeroes, ansix923 or w3c; ECB and CBC always pad\n"
    "           (pkcs5 by default), the other modes never do\n"
    "\n"
    "  -a, --algorithm TEXT  cipher, mode and padding (default aes256/cbc/pkcs5)\n"
    "  -k, --key HEX         the key in hex (visible to other users of the\n"
    "                        machine: prefer the two forms below)\n"
    "      --key-file FILE   read the hex key from FILE\n"
    "      --key-env NAME    read the hex key from environment variable NAME\n"
    "      --iv HEX          use this IV; OUTPUT then holds the ciphertext alone\n"
    "      --prefix-iv       with --iv, write the IV in front of the ciphertext\n"
    "  -h, --help            show this help\n"
    "\n"
    "Without --iv a random IV is made and written in front of the ciphertext,\n"
    "where 'verimond decrypt' finds it. ECB takes no IV. The key is never\n"
    "printed. No OUTPUT file is left behind when encryption fails.\n"
    "\n"
    "Exit status: 0 success, 1 encryption failed, 2 usage error.\n";

static const char decrypt_help[] =
    "Usage: verimond decrypt [OPTION]... KEY-OPTION INPUT OUTPUT\n"
    "Decrypts the file INPUT, made by 'verimond encrypt' or any program with\n"
    "the same layout (an optional IV, then the ciphertext), to OUTPUT ('-' for\n"
    "standard input or output). See 'verimond encrypt --help' for the\n"
    "algorithm text.\n"
    "\n"
    "  -a, --algorithm TEXT  cipher, mode and padding (default aes256/cbc/pkcs5)\n"
    "  -k, --key HEX         the key in hex (visible to other users of the\n"
    "                        machine: prefer the two forms below)\n"
    "      --key-file FILE   read the hex key from FILE\n"
    "      --key-env NAME    read the hex key from environment variable NAME\n"
    "      --iv HEX          the IV, for input that does not start with one;\n"
    "                        without it the IV is read from the front of INPUT\n"
    "  -h, --help            show this help\n"
    "\n"
    "Decryption proves nothing about the data: a wrong key usually shows as a\n"
    "padding error, but not always. Use 'seal' and 'open' for authenticated\n"
    "encryption. No OUTPUT file is left behind when decryption fails.\n"
    "\n"
    "Exit status: 0 success, 1 decryption failed, 2 usage error.\n";

static int crypt_file(int argc, char **argv, int encrypting) {
    static const struct option longs[] = {
        {"algorithm", required_argument, 0, 'a'},
        {"key", required_argument, 0, 'k'},
        {"key-file", required_argument, 0, OPT_KEY_FILE},
        {"key-env", required_argument, 0, OPT_KEY_ENV},
        {"iv", required_argument, 0, OPT_IV},
        {"prefix-iv", no_argument, 0, OPT_PREFIX},
        {"help", no_argument, 0, 'h'},
        {0, 0, 0, 0}};
    struct cli_secret_source source = {0};
    struct cli_staging staging = {0};
    const char *algorithm = "aes256/cbc/pkcs5", *ivText = NULL, *input, *output;
    const char *inPath = NULL, *outPath = NULL;
    unsigned char *key = NULL, *iv = NULL;
    int32_t keyLength = 0, ivLength = 0, blockSize, options = 0, result;
    int ecb, prefix = 0, c, status;

    while ((c = getopt_long(argc, argv, ":a:k:h", longs, NULL)) != -1) {
        switch (c) {
        case 'a': algorithm = optarg; break;
        case 'k': source.text = optarg; break;
        case OPT_KEY_FILE: source.file = optarg; break;
        case OPT_KEY_ENV: source.env = optarg; break;
        case OPT_IV: ivText = optarg; break;
        case OPT_PREFIX:
            if (!encrypting)
                return cli_usage("unknown option '--prefix-iv'");
            prefix = 1;
            break;
        case 'h': fputs(encrypting ? encrypt_help : decrypt_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (argc - optind != 2)
        return cli_usage("expected INPUT and OUTPUT");
    input = argv[optind];
    output = argv[optind + 1];
    if (algorithm_shape(algorithm, &blockSize, &ecb) != 0)
        return cli_usage("unknown algorithm '%s' (expected e.g. aes128/cbc/pkcs5)", algorithm);
    if (ecb && (ivText || prefix))
        return cli_usage("ECB takes no IV");
    if (prefix && !ivText)
        return cli_usage("--prefix-iv goes with --iv (without --iv the IV is always written)");
    if (same_file(input, output))
        return cli_usage("INPUT and OUTPUT are the same file");
    if ((status = cli_read_hex_secret(&source, "key", &key, &keyLength)) != 0)
        return status;

    if (ivText) {
        if ((status = cli_decode_hex(ivText, "IV", &iv, &ivLength)) != 0)
            goto done;
        if (prefix)
            options |= OPT_PREFIX_IV;
    } else if (!ecb) {
        /* The IV travels in front of the ciphertext. */
        options |= OPT_PREFIX_IV;
        if (encrypting) {
            ivLength = blockSize;
            iv = malloc((size_t)blockSize);
            if (!iv) {
                status = cli_failf("out of memory");
                goto done;
            }
            if ((result = RNG_NonceData(iv, ivLength)) != 0) {
                status = cli_fail("IV", result);
                goto done;
            }
        }
    }

    if ((status = cli_stage_input(&staging, input, &inPath)) != 0 ||
        (status = cli_stage_output(&staging, output, &outPath)) != 0)
        goto done;
    if (encrypting)
        result = CIPHER_FileEncrypt(outPath, inPath, key, keyLength, iv, ivLength, algorithm,
                                    options);
    else
        result = CIPHER_FileDecrypt(outPath, inPath, key, keyLength, iv, ivLength, algorithm,
                                    options);
    /* The library leaves no output file behind a failure; a file that
       existed before a refused call is the user's and stays. */
    if (result != 0)
        status = cli_fail(strcmp(input, "-") ? input : NULL, result);
    else
        status = cli_staging_flush(&staging);

done:
    cli_staging_end(&staging);
    cli_free_secret(key, (size_t)keyLength);
    free(iv);
    return status;
}

int cmd_encrypt(int argc, char **argv) { return crypt_file(argc, argv, 1); }
int cmd_decrypt(int argc, char **argv) { return crypt_file(argc, argv, 0); }

/* ---- seal, open ---- */

static const struct {
    const char *name;
    int32_t option;
    int32_t nonceLength;
} aead_names[] = {
    {"chacha20-poly1305", OPT_AEAD_CHACHA20_POLY1305, 12},
    {"aes128-gcm", OPT_AEAD_AES_128_GCM, 12},
    {"aes256-gcm", OPT_AEAD_AES_256_GCM, 12},
    {"ascon128", OPT_AEAD_ASCON_128, 16},
    {"ascon128a", OPT_AEAD_ASCON_128A, 16},
};

static const char seal_help[] =
    "Usage: verimond seal [OPTION]... KEY-OPTION INPUT OUTPUT\n"
    "Encrypts and authenticates the file INPUT to OUTPUT ('-' for standard\n"
    "input or output). OUTPUT holds a fresh random nonce (12 bytes, 16 for\n"
    "Ascon), the ciphertext and a 16-byte tag; 'verimond open' reverses it.\n"
    "\n"
    "  -a, --algorithm NAME  chacha20-poly1305 (default, 32-byte key),\n"
    "                        aes128-gcm (16), aes256-gcm (32), ascon128 (16)\n"
    "                        or ascon128a (16)\n"
    "  -k, --key HEX         the key in hex (visible to other users of the\n"
    "                        machine: prefer the two forms below)\n"
    "      --key-file FILE   read the hex key from FILE\n"
    "      --key-env NAME    read the hex key from environment variable NAME\n"
    "      --aad TEXT        associated data: authenticated, not stored in\n"
    "                        OUTPUT; 'open' must be given the same\n"
    "      --aad-file FILE   associated data from a file\n"
    "  -h, --help            show this help\n"
    "\n"
    "The whole input is held in memory. The key is never printed.\n"
    "\n"
    "Exit status: 0 success, 1 sealing failed, 2 usage error.\n";

static const char open_help[] =
    "Usage: verimond open [OPTION]... KEY-OPTION INPUT OUTPUT\n"
    "Checks and decrypts INPUT made by 'verimond seal' to OUTPUT ('-' for\n"
    "standard input or output). Nothing is written unless the data, the key\n"
    "and the associated data are all authentic.\n"
    "\n"
    "  -a, --algorithm NAME  as for seal (default chacha20-poly1305)\n"
    "  -k, --key HEX         the key in hex (visible to other users of the\n"
    "                        machine: prefer the two forms below)\n"
    "      --key-file FILE   read the hex key from FILE\n"
    "      --key-env NAME    read the hex key from environment variable NAME\n"
    "      --aad TEXT        the associated data given to seal\n"
    "      --aad-file FILE   associated data from a file\n"
    "  -h, --help            show this help\n"
    "\n"
    "Exit status: 0 success, 1 authentication or decryption failed, 2 usage\n"
    "error.\n";

static int aead_file(int argc, char **argv, int sealing) {
    static const struct option longs[] = {
        {"algorithm", required_argument, 0, 'a'},
        {"key", required_argument, 0, 'k'},
        {"key-file", required_argument, 0, OPT_KEY_FILE},
        {"key-env", required_argument, 0, OPT_KEY_ENV},
        {"aad", required_argument, 0, OPT_AAD},
        {"aad-file", required_argument, 0, OPT_AAD_FILE},
        {"help", no_argument, 0, 'h'},
        {0, 0, 0, 0}};
    struct cli_secret_source source = {0};
    const char *algorithm = "chacha20-poly1305", *aadText = NULL, *aadFile = NULL;
    unsigned char *key = NULL, *data = NULL, *result = NULL, *aad = NULL;
    unsigned char nonce[16];
    size_t dataLength = 0, aadLength = 0;
    int32_t keyLength = 0, option = -1, nonceLength = 0, need = 0, got;
    int c, status;

    while ((c = getopt_long(argc, argv, ":a:k:h", longs, NULL)) != -1) {
        switch (c) {
        case 'a': algorithm = optarg; break;
        case 'k': source.text = optarg; break;
        case OPT_KEY_FILE: source.file = optarg; break;
        case OPT_KEY_ENV: source.env = optarg; break;
        case OPT_AAD: aadText = optarg; break;
        case OPT_AAD_FILE: aadFile = optarg; break;
        case 'h': fputs(sealing ? seal_help : open_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (argc - optind != 2)
        return cli_usage("expected INPUT and OUTPUT");
    for (size_t i = 0; i < sizeof aead_names / sizeof aead_names[0]; i++) {
        if (cli_name_equal(aead_names[i].name, algorithm)) {
            option = aead_names[i].option;
            nonceLength = aead_names[i].nonceLength;
        }
    }
    if (option < 0)
        return cli_usage("unknown algorithm '%s' (chacha20-poly1305, aes128-gcm, aes256-gcm, "
                         "ascon128 or ascon128a)", algorithm);
    if (aadText && aadFile)
        return cli_usage("give the associated data in one way only");
    if (aadFile && strcmp(aadFile, "-") == 0 && strcmp(argv[optind], "-") == 0)
        return cli_usage("standard input cannot hold both the data and the associated data");
    if ((status = cli_read_hex_secret(&source, "key", &key, &keyLength)) != 0)
        return status;

    if (aadFile) {
        if ((status = cli_read_all(aadFile, &aad, &aadLength)) != 0)
            goto done;
    } else if (aadText) {
        aadLength = strlen(aadText);
        aad = (unsigned char *)strdup(aadText);
        if (!aad) {
            status = cli_failf("out of memory");
            goto done;
        }
    }
    if ((status = cli_read_all(argv[optind], &data, &dataLength)) != 0)
        goto done;
    if (dataLength > CLI_MAX_DATA - 64 || aadLength > CLI_MAX_DATA) {
        status = cli_failf("%s: too large", argv[optind]);
        goto done;
    }

    if (sealing) {
        if ((got = RNG_NonceData(nonce, nonceLength)) != 0) {
            status = cli_fail("nonce", got);
            goto done;
        }
        need = AEAD_EncryptWithTag(NULL, 0, data, (int32_t)dataLength, key, keyLength, nonce,
                                   nonceLength, aad, (int32_t)aadLength, option | OPT_PREFIX_IV);
    } else {
        need = AEAD_DecryptWithTag(NULL, 0, data, (int32_t)dataLength, key, keyLength, NULL, 0,
                                   aad, (int32_t)aadLength, option | OPT_PREFIX_IV);
    }
    if (need < 0) {
        status = cli_fail(strcmp(argv[optind], "-") ? argv[optind] : NULL, need);
        goto done;
    }
    result = malloc((size_t)need + 1);
    if (!result) {
        status = cli_failf("out of memory");
        goto done;
    }
    if (sealing)
        got = AEAD_EncryptWithTag(result, need, data, (int32_t)dataLength, key, keyLength, nonce,
                                  nonceLength, aad, (int32_t)aadLength, option | OPT_PREFIX_IV);
    else
        /* An output length of 0 would be a size query, which checks
           nothing: an empty plaintext must be authenticated all the same. */
        got = AEAD_DecryptWithTag(result, need + 1, data, (int32_t)dataLength, key, keyLength,
                                  NULL, 0, aad, (int32_t)aadLength, option | OPT_PREFIX_IV);
    if (got < 0) {
        /* Some algorithms leave unauthenticated plaintext behind: it is
           wiped and never written out. */
        status = cli_fail(strcmp(argv[optind], "-") ? argv[optind] : NULL, got);
        goto done;
    }
    status = cli_write_all(argv[optind + 1], result, (size_t)got);

done:
    cli_free_secret(result, result ? (size_t)need + 1 : 0);
    cli_free_secret(data, dataLength);
    cli_free_secret(key, (size_t)keyLength);
    free(aad);
    return status;
}

int cmd_seal(int argc, char **argv) { return aead_file(argc, argv, 1); }
int cmd_open(int argc, char **argv) { return aead_file(argc, argv, 0); }
