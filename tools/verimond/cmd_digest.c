/* hash, mac and crc: digests, message authentication codes and CRC-32 of
   files and text. */
#define _GNU_SOURCE
#include <errno.h>
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "cli.h"

struct named_option {
    const char *name;
    int32_t value;
};

static const struct named_option hash_names[] = {
    {"sha256", OPT_HASH_SHA256},
    {"sha1", OPT_HASH_SHA1},
    {"sha224", OPT_HASH_SHA224},
    {"sha384", OPT_HASH_SHA384},
    {"sha512", OPT_HASH_SHA512},
    {"sha3-224", OPT_HASH_SHA3_224},
    {"sha3-256", OPT_HASH_SHA3_256},
    {"sha3-384", OPT_HASH_SHA3_384},
    {"sha3-512", OPT_HASH_SHA3_512},
    {"md5", OPT_HASH_MD5},
    {"md2", OPT_HASH_MD2},
    {"rmd160", OPT_HASH_RMD160},
    {"ripemd160", OPT_HASH_RMD160},
    {"rmd160-sha256", OPT_HASH_RMD160_SHA256},
    {"ascon-hash", OPT_HASH_ASCON_HASH},
    {"ascon-hasha", OPT_HASH_ASCON_HASHA},
    {NULL, 0},
};

static const struct named_option mac_names[] = {
    {"hmac-sha256", OPT_HMAC_SHA256},
    {"hmac-sha1", OPT_HMAC_SHA1},
    {"hmac-sha224", OPT_HMAC_SHA224},
    {"hmac-sha384", OPT_HMAC_SHA384},
    {"hmac-sha512", OPT_HMAC_SHA512},
    {"hmac-sha3-224", OPT_HMAC_SHA3_224},
    {"hmac-sha3-256", OPT_HMAC_SHA3_256},
    {"hmac-sha3-384", OPT_HMAC_SHA3_384},
    {"hmac-sha3-512", OPT_HMAC_SHA3_512},
    {"hmac-md5", OPT_HMAC_MD5},
    {"hmac-rmd160", OPT_HMAC_RMD160},
    {"cmac-aes128", OPT_CMAC_AES128},
    {"cmac-aes192", OPT_CMAC_AES192},
    {"cmac-aes256", OPT_CMAC_AES256},
    {"cmac-tdea", OPT_CMAC_TDEA},
    {"poly1305", OPT_MAC_POLY1305},
    {"kmac128", OPT_KMAC_128},
    {"kmac256", OPT_KMAC_256},
    {NULL, 0},
};

static int find_name(const struct named_option *table, const char *name, int32_t *value) {
    for (; table->name; table++) {
        if (cli_name_equal(table->name, name)) {
            *value = table->value;
            return 1;
        }
    }
    return 0;
}

static void list_names(const struct named_option *table) {
    for (; table->name; table++)
        printf("%s\n", table->name);
}

/* The library's file calls read a directory as an empty file: refuse it here. */
static int check_regular_input(const char *name) {
    struct stat st;
    if (strcmp(name, "-") == 0)
        return 0;
    if (stat(name, &st) != 0)
        return cli_failf("%s: %s", name, strerror(errno));
    if (S_ISDIR(st.st_mode))
        return cli_failf("%s: %s", name, strerror(EISDIR));
    return 0;
}

/* ---- hash ---- */

static const char hash_help[] =
    "Usage: verimond hash [OPTION]... [FILE]...\n"
    "Prints the digest of each FILE (standard input for none or '-') as\n"
    "lower-case hex followed by the file name, or of a text given with -s.\n"
    "\n"
    "  -a, --algorithm NAME  digest to use (default sha256); see --list\n"
    "  -s, --string TEXT     digest TEXT (its bytes, without a line end)\n"
    "  -t, --text-mode       read files as text: CR LF counts as LF and a\n"
    "                        byte 0x1A ends the input\n"
    "  -l, --list            list the digest names\n"
    "  -h, --help            show this help\n"
    "\n"
    "Exit status: 0 success, 1 a file could not be digested, 2 usage error.\n";

int cmd_hash(int argc, char **argv) {
    static const struct option longs[] = {
        {"algorithm", required_argument, 0, 'a'}, {"string", required_argument, 0, 's'},
        {"text-mode", no_argument, 0, 't'},       {"list", no_argument, 0, 'l'},
        {"help", no_argument, 0, 'h'},            {0, 0, 0, 0}};
    const char *algorithm = "sha256", *text = NULL;
    int32_t option = OPT_HASH_SHA256;
    int text_mode = 0, c, status = EXIT_OK;
    char digest[160];

    while ((c = getopt_long(argc, argv, ":a:s:tlh", longs, NULL)) != -1) {
        switch (c) {
        case 'a': algorithm = optarg; break;
        case 's': text = optarg; break;
        case 't': text_mode = 1; break;
        case 'l': list_names(hash_names); return EXIT_OK;
        case 'h': fputs(hash_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (!find_name(hash_names, algorithm, &option))
        return cli_usage("unknown digest '%s' (see --list)", algorithm);
    if (text && optind < argc)
        return cli_usage("give either -s TEXT or files, not both");

    if (text) {
        int32_t n = HASH_HexFromBytes(digest, (int32_t)sizeof digest - 1,
                                      (const unsigned char *)text, (int32_t)strlen(text), option);
        if (n < 0)
            return cli_fail(NULL, n);
        printf("%s\n", digest);
        return EXIT_OK;
    }
    if (text_mode)
        option |= OPT_HASH_TEXT_MODE;
    for (int i = optind; i < argc || i == optind; i++) {
        const char *name = i < argc ? argv[i] : "-";
        struct cli_staging staging = {0};
        const char *path;
        int32_t n;
        if (check_regular_input(name) || cli_stage_input(&staging, name, &path)) {
            cli_staging_end(&staging);
            status = EXIT_FAILED;
            continue;
        }
        n = HASH_HexFromFile(digest, (int32_t)sizeof digest - 1, path, option);
        cli_staging_end(&staging);
        if (n < 0) {
            status = cli_fail(name, n);
            continue;
        }
        printf("%s  %s\n", digest, name);
    }
    return status;
}

/* ---- mac ---- */

static const char mac_help[] =
    "Usage: verimond mac [OPTION]... KEY-OPTION [FILE]...\n"
    "Prints the message authentication code of each FILE (standard input for\n"
    "none or '-') as lower-case hex followed by the file name, or of a text\n"
    "given with -s.\n"
    "\n"
    "  -a, --algorithm NAME  code to compute (default hmac-sha256); see --list\n"
    "  -k, --key HEX         the key in hex (visible to other users of the\n"
    "                        machine: prefer the two forms below)\n"
    "      --key-file FILE   read the hex key from FILE\n"
    "      --key-env NAME    read the hex key from environment variable NAME\n"
    "  -s, --string TEXT     authenticate TEXT (its bytes, without a line end)\n"
    "  -l, --list            list the algorithm names\n"
    "  -h, --help            show this help\n"
    "\n"
    "CMAC needs a key of exactly the cipher's length (16, 24 or 32 bytes for\n"
    "AES, 24 for Triple DES), Poly1305 one of 32 bytes. The key is never printed.\n"
    "\n"
    "Exit status: 0 success, 1 a code could not be computed, 2 usage error.\n";

static int print_mac(const char *label, const unsigned char *data, size_t length,
                     const unsigned char *key, int32_t keyLength, int32_t option) {
    char code[260];
    int32_t n;
    if (length > CLI_MAX_DATA)
        return cli_failf("%s: too large", label ? label : "text");
    n = MAC_HexFromBytes(code, (int32_t)sizeof code - 1, data, (int32_t)length, key, keyLength,
                         option);
    if (n < 0)
        return cli_fail(label, n);
    if (label)
        printf("%s  %s\n", code, label);
    else
        printf("%s\n", code);
    return EXIT_OK;
}

int cmd_mac(int argc, char **argv) {
    enum { KEY_FILE = 1000, KEY_ENV };
    static const struct option longs[] = {
        {"algorithm", required_argument, 0, 'a'}, {"key", required_argument, 0, 'k'},
        {"key-file", required_argument, 0, KEY_FILE}, {"key-env", required_argument, 0, KEY_ENV},
        {"string", required_argument, 0, 's'},    {"list", no_argument, 0, 'l'},
        {"help", no_argument, 0, 'h'},            {0, 0, 0, 0}};
    struct cli_secret_source source = {0};
    const char *algorithm = "hmac-sha256", *text = NULL;
    int32_t option = OPT_HMAC_SHA256, keyLength = 0;
    unsigned char *key = NULL;
    int c, status = EXIT_OK;

    while ((c = getopt_long(argc, argv, ":a:k:s:lh", longs, NULL)) != -1) {
        switch (c) {
        case 'a': algorithm = optarg; break;
        case 'k': source.text = optarg; break;
        case KEY_FILE: source.file = optarg; break;
        case KEY_ENV: source.env = optarg; break;
        case 's': text = optarg; break;
        case 'l': list_names(mac_names); return EXIT_OK;
        case 'h': fputs(mac_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (!find_name(mac_names, algorithm, &option))
        return cli_usage("unknown algorithm '%s' (see --list)", algorithm);
    if (text && optind < argc)
        return cli_usage("give either -s TEXT or files, not both");
    if ((status = cli_read_hex_secret(&source, "key", &key, &keyLength)) != 0)
        return status;

    if (text) {
        status = print_mac(NULL, (const unsigned char *)text, strlen(text), key, keyLength, option);
    } else {
        for (int i = optind; i < argc || i == optind; i++) {
            const char *name = i < argc ? argv[i] : "-";
            unsigned char *data;
            size_t length;
            if (check_regular_input(name) || cli_read_all(name, &data, &length)) {
                status = EXIT_FAILED;
                continue;
            }
            if (print_mac(name, data, length, key, keyLength, option) != EXIT_OK)
                status = EXIT_FAILED;
            free(data);
        }
    }
    cli_free_secret(key, (size_t)keyLength);
    return status;
}

/* ---- crc ---- */

static const char crc_help[] =
    "Usage: verimond crc [OPTION]... [FILE]...\n"
    "Prints the CRC-32 (as zlib computes it) of each FILE (standard input for\n"
    "none or '-') as eight hex digits followed by the file name, or of a text\n"
    "given with -s.\n"
    "\n"
    "  -s, --string TEXT  the CRC of TEXT\n"
    "  -h, --help         show this help\n"
    "\n"
    "Exit status: 0 success, 1 a file could not be read, 2 usage error.\n";

int cmd_crc(int argc, char **argv) {
    static const struct option longs[] = {
        {"string", required_argument, 0, 's'}, {"help", no_argument, 0, 'h'}, {0, 0, 0, 0}};
    const char *text = NULL;
    int c, status = EXIT_OK;

    while ((c = getopt_long(argc, argv, ":s:h", longs, NULL)) != -1) {
        switch (c) {
        case 's': text = optarg; break;
        case 'h': fputs(crc_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (text && optind < argc)
        return cli_usage("give either -s TEXT or files, not both");
    if (text) {
        /* 0 is also the true CRC of the empty text; nothing here can fail. */
        printf("%08x\n", (uint32_t)CRC_String(text, 0));
        return EXIT_OK;
    }
    for (int i = optind; i < argc || i == optind; i++) {
        const char *name = i < argc ? argv[i] : "-";
        uint32_t crc;
        if (check_regular_input(name)) {
            status = EXIT_FAILED;
            continue;
        }
        if (strcmp(name, "-") == 0) {
            unsigned char *data;
            size_t length;
            if (cli_read_all(name, &data, &length)) {
                status = EXIT_FAILED;
                continue;
            }
            crc = (uint32_t)CRC_Bytes(data, (int32_t)length, 0);
            free(data);
        } else {
            crc = (uint32_t)CRC_File(name, 0);
            if (crc == 0) {
                /* 0 is both a failure and the CRC of an empty file. */
                FILE *f = fopen(name, "rb");
                if (!f) {
                    status = cli_fail(name, OPEN_ERROR);
                    continue;
                }
                fclose(f);
            }
        }
        printf("%08x  %s\n", crc, name);
    }
    return status;
}
