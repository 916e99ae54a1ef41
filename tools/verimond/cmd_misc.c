/* kdf, rand, compress, uncompress, wipe, info and selftest. */
#define _GNU_SOURCE
#include <errno.h>
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "cli.h"

/* ---- kdf ---- */

static const char kdf_help[] =
    "Usage: verimond kdf [OPTION]... --salt HEX\n"
    "Derives a key from a password and prints it in hex.\n"
    "\n"
    "  -a, --algorithm NAME   pbkdf2 (default) or scrypt\n"
    "  -s, --salt HEX         the salt (PBKDF2 needs one byte at least)\n"
    "  -l, --length N         bytes to derive, 1 to 4096 (default 32)\n"
    "PBKDF2:\n"
    "  -i, --iterations N     iterations (default 100000)\n"
    "      --hash NAME        sha1, sha224, sha256 (default), sha384, sha512\n"
    "scrypt:\n"
    "  -N, --cost N           CPU and memory cost, a power of two (default 16384)\n"
    "  -r, --block-size N     block size (default 8)\n"
    "  -p, --parallel N       parallelism (default 1)\n"
    "The password:\n"
    "      --password-file FILE  the first line of FILE ('-': standard input)\n"
    "      --password-env NAME   the value of environment variable NAME\n"
    "  Without either, the password is asked for at the terminal, without\n"
    "  echo. It is never taken from the command line, nor printed.\n"
    "  -h, --help             show this help\n"
    "\n"
    "Exit status: 0 success, 1 derivation failed, 2 usage error.\n";

int cmd_kdf(int argc, char **argv) {
    enum { HASH = 1000, PASSWORD_FILE, PASSWORD_ENV };
    static const struct option longs[] = {
        {"algorithm", required_argument, 0, 'a'},
        {"salt", required_argument, 0, 's'},
        {"length", required_argument, 0, 'l'},
        {"iterations", required_argument, 0, 'i'},
        {"hash", required_argument, 0, HASH},
        {"cost", required_argument, 0, 'N'},
        {"block-size", required_argument, 0, 'r'},
        {"parallel", required_argument, 0, 'p'},
        {"password-file", required_argument, 0, PASSWORD_FILE},
        {"password-env", required_argument, 0, PASSWORD_ENV},
        {"help", no_argument, 0, 'h'},
        {0, 0, 0, 0}};
    static const struct { const char *name; int32_t option; } prfs[] = {
        {"sha256", OPT_HASH_SHA256}, {"sha1", OPT_HASH_SHA1}, {"sha224", OPT_HASH_SHA224},
        {"sha384", OPT_HASH_SHA384}, {"sha512", OPT_HASH_SHA512}};
    struct cli_secret_source source = {0};
    const char *algorithm = "pbkdf2", *saltText = NULL, *hash = "sha256";
    long length = 32, iterations = 100000, cost = 16384, blockSize = 8, parallel = 1;
    int32_t prf = -1, saltLength = 0, result;
    unsigned char *salt = NULL, *key = NULL;
    char *password = NULL, *hex;
    int scrypt, c, status;

    while ((c = getopt_long(argc, argv, ":a:s:l:i:N:r:p:h", longs, NULL)) != -1) {
        long *target = NULL, max = INT32_MAX;
        switch (c) {
        case 'a': algorithm = optarg; break;
        case 's': saltText = optarg; break;
        case 'l': target = &length; max = 4096; break;
        case 'i': target = &iterations; break;
        case 'N': target = &cost; break;
        case 'r': target = &blockSize; break;
        case 'p': target = &parallel; break;
        case HASH: hash = optarg; break;
        case PASSWORD_FILE: source.file = optarg; break;
        case PASSWORD_ENV: source.env = optarg; break;
        case 'h': fputs(kdf_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
        if (target && cli_parse_int(optarg, 1, max, target) != 0)
            return cli_usage("'%s' is not a number from 1 to %ld", optarg, max);
    }
    if (optind < argc)
        return cli_usage("unexpected argument '%s'", argv[optind]);
    if (cli_name_equal(algorithm, "pbkdf2"))
        scrypt = 0;
    else if (cli_name_equal(algorithm, "scrypt"))
        scrypt = 1;
    else
        return cli_usage("unknown algorithm '%s' (pbkdf2 or scrypt)", algorithm);
    for (size_t i = 0; i < sizeof prfs / sizeof prfs[0]; i++) {
        if (cli_name_equal(prfs[i].name, hash))
            prf = prfs[i].option;
    }
    if (prf < 0)
        return cli_usage("unknown hash '%s' (sha1, sha224, sha256, sha384 or sha512)", hash);
    if (!saltText)
        return cli_usage("no salt given: use --salt HEX");
    if ((status = cli_decode_hex(saltText, "salt", &salt, &saltLength)) != 0)
        return status;
    if ((status = cli_read_password(&source, &password)) != 0)
        goto done;
    key = malloc((size_t)length);
    if (!key) {
        status = cli_failf("out of memory");
        goto done;
    }
    if (scrypt)
        result = PBE_Scrypt(key, (int32_t)length, (const unsigned char *)password,
                            (int32_t)strlen(password), salt, saltLength, (int32_t)cost,
                            (int32_t)blockSize, (int32_t)parallel, 0);
    else
        result = PBE_Kdf2(key, (int32_t)length, (const unsigned char *)password,
                          (int32_t)strlen(password), salt, saltLength, (int32_t)iterations, prf);
    if (result != 0) {
        status = cli_fail(NULL, result);
        goto done;
    }
    hex = cli_hex(key, (int32_t)length);
    if (!hex) {
        status = cli_failf("out of memory");
        goto done;
    }
    printf("%s\n", hex);
    cli_free_secret((unsigned char *)hex, strlen(hex));
    status = EXIT_OK;

done:
    if (password)
        cli_free_secret((unsigned char *)password, strlen(password));
    cli_free_secret(key, key ? (size_t)length : 0);
    free(salt);
    return status;
}

/* ---- rand ---- */

static const char rand_help[] =
    "Usage: verimond rand [OPTION]...\n"
    "Prints random bytes from the library's generator as upper-case hex.\n"
    "\n"
    "  -n, --bytes N            how many bytes (default 32)\n"
    "  -o, --output FILE        write the raw bytes to FILE ('-': standard\n"
    "                           output) instead of hex\n"
    "      --range LOW:HIGH     print one number from LOW to HIGH instead\n"
    "      --seed-file FILE     reseed from FILE first and rewrite it with\n"
    "                           fresh output after (FILE is made if missing)\n"
    "      --new-seed-file FILE make a new 128-byte seed file, mixing in keys\n"
    "                           typed at the terminal, and print nothing else\n"
    "  -h, --help               show this help\n"
    "\n"
    "Exit status: 0 success, 1 the generator or a file failed, 2 usage error.\n";

static int parse_range(const char *text, int32_t *low, int32_t *high) {
    char first[32];
    const char *colon = strchr(text, ':');
    long a, b;
    if (!colon || (size_t)(colon - text) >= sizeof first)
        return -1;
    memcpy(first, text, (size_t)(colon - text));
    first[colon - text] = 0;
    if (cli_parse_int(first, INT32_MIN, INT32_MAX, &a) || cli_parse_int(colon + 1, INT32_MIN, INT32_MAX, &b) || a > b)
        return -1;
    *low = (int32_t)a;
    *high = (int32_t)b;
    return 0;
}

int cmd_rand(int argc, char **argv) {
    enum { RANGE = 1000, SEED_FILE, NEW_SEED_FILE };
    static const struct option longs[] = {
        {"bytes", required_argument, 0, 'n'},
        {"output", required_argument, 0, 'o'},
        {"range", required_argument, 0, RANGE},
        {"seed-file", required_argument, 0, SEED_FILE},
        {"new-seed-file", required_argument, 0, NEW_SEED_FILE},
        {"help", no_argument, 0, 'h'},
        {0, 0, 0, 0}};
    const char *output = NULL, *range = NULL, *seedFile = NULL, *newSeedFile = NULL;
    long count = 32;
    int32_t low = 0, high = 0, result;
    unsigned char *bytes;
    int c, status = EXIT_OK;

    while ((c = getopt_long(argc, argv, ":n:o:h", longs, NULL)) != -1) {
        switch (c) {
        case 'n':
            if (cli_parse_int(optarg, 0, 1L << 30, &count) != 0)
                return cli_usage("'%s' is not a byte count", optarg);
            break;
        case 'o': output = optarg; break;
        case RANGE: range = optarg; break;
        case SEED_FILE: seedFile = optarg; break;
        case NEW_SEED_FILE: newSeedFile = optarg; break;
        case 'h': fputs(rand_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (optind < argc)
        return cli_usage("unexpected argument '%s'", argv[optind]);
    if (range && parse_range(range, &low, &high) != 0)
        return cli_usage("--range wants LOW:HIGH with LOW not above HIGH");
    if (newSeedFile) {
        if (range || output || seedFile)
            return cli_usage("--new-seed-file goes alone");
        result = RNG_MakeSeedFile(newSeedFile, NULL, 0);
        return result == 0 ? EXIT_OK : cli_fail(newSeedFile, result);
    }
    if (seedFile && (result = RNG_Initialize(seedFile, 0)) != 0)
        return cli_fail(seedFile, result);

    if (range) {
        printf("%ld\n", (long)RNG_Number(low, high));
    } else {
        /* One request of the generator gives at most 65536 bytes. */
        bytes = malloc(65536);
        if (!bytes)
            return cli_failf("out of memory");
        for (long done = 0; done < count && status == EXIT_OK;) {
            int32_t chunk = (int32_t)(count - done > 65536 ? 65536 : count - done);
            if ((result = RNG_KeyBytes(bytes, chunk, NULL, 0)) != 0) {
                status = cli_fail(NULL, result);
            } else if (output) {
                FILE *f = strcmp(output, "-") == 0 ? stdout : fopen(output, done ? "ab" : "wb");
                if (!f || fwrite(bytes, 1, (size_t)chunk, f) != (size_t)chunk || fflush(f) != 0)
                    status = cli_failf("%s: %s", output, strerror(errno));
                if (f && f != stdout)
                    fclose(f);
            } else {
                char *hex = cli_hex(bytes, chunk);
                if (!hex)
                    status = cli_failf("out of memory");
                else
                    fputs(hex, stdout);
                free(hex);
            }
            done += chunk;
        }
        if (status == EXIT_OK && output && count == 0 && strcmp(output, "-") != 0) {
            FILE *f = fopen(output, "wb");
            if (!f)
                status = cli_failf("%s: %s", output, strerror(errno));
            else
                fclose(f);
        }
        if (!output)
            putchar('\n');
        cli_free_secret(bytes, 65536);
    }
    if (status == EXIT_OK && seedFile && (result = RNG_UpdateSeedFile(seedFile, 0)) != 0)
        status = cli_fail(seedFile, result);
    return status;
}

/* ---- compress, uncompress ---- */

static const char compress_help[] =
    "Usage: verimond compress [OPTION]... INPUT OUTPUT\n"
    "Compresses the file INPUT to OUTPUT ('-' for standard input or output)\n"
    "in the zlib format (RFC 1950) or as a Zstandard frame.\n"
    "\n"
    "  -f, --format NAME  zlib (default) or zstd\n"
    "  -h, --help         show this help\n"
    "\n"
    "The whole input is held in memory.\n"
    "Exit status: 0 success, 1 compression failed, 2 usage error.\n";

static const char uncompress_help[] =
    "Usage: verimond uncompress [OPTION]... INPUT OUTPUT\n"
    "Restores the file INPUT, compressed by 'verimond compress' or any zlib or\n"
    "Zstandard tool, to OUTPUT ('-' for standard input or output).\n"
    "\n"
    "  -f, --format NAME  zlib or zstd; by default a Zstandard frame is known\n"
    "                     by its magic number and anything else read as zlib\n"
    "  -h, --help         show this help\n"
    "\n"
    "Zstandard frames must store their content size. The whole input is held\n"
    "in memory.\n"
    "Exit status: 0 success, 1 the data could not be restored, 2 usage error.\n";

static int compress_file(int argc, char **argv, int compressing) {
    static const struct option longs[] = {
        {"format", required_argument, 0, 'f'}, {"help", no_argument, 0, 'h'}, {0, 0, 0, 0}};
    const char *format = NULL;
    int32_t option = -1, result;
    unsigned char *input = NULL, *output = NULL;
    size_t length = 0, room;
    int c, status;

    while ((c = getopt_long(argc, argv, ":f:h", longs, NULL)) != -1) {
        switch (c) {
        case 'f': format = optarg; break;
        case 'h': fputs(compressing ? compress_help : uncompress_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (argc - optind != 2)
        return cli_usage("expected INPUT and OUTPUT");
    if (format) {
        if (cli_name_equal(format, "zlib"))
            option = OPT_COMPR_ZLIB;
        else if (cli_name_equal(format, "zstd"))
            option = OPT_COMPR_ZSTD;
        else
            return cli_usage("unknown format '%s' (zlib or zstd)", format);
    }
    if ((status = cli_read_all(argv[optind], &input, &length)) != 0)
        return status;
    if (length > CLI_MAX_DATA / 2) {
        free(input);
        return cli_failf("%s: too large", argv[optind]);
    }
    if (compressing) {
        if (option < 0)
            option = OPT_COMPR_ZLIB;
        /* Above the bound of either format; the exact size is asked for
           only if this does not suffice. */
        room = length + length / 128 + 1024;
        output = malloc(room);
        result = output ? COMPR_Compress(output, (int32_t)room, input, (int32_t)length, option) : -MEMORY_ERROR;
        if (result == -SHORT_BUF_ERROR) {
            result = COMPR_Compress(NULL, 0, input, (int32_t)length, option);
            free(output);
            room = result > 0 ? (size_t)result : 1;
            output = malloc(room);
            if (result >= 0)
                result = output ? COMPR_Compress(output, (int32_t)room, input, (int32_t)length, option) : -MEMORY_ERROR;
        }
    } else {
        if (option < 0)
            option = length >= 4 && input[0] == 0x28 && input[1] == 0xB5 && input[2] == 0x2F &&
                             input[3] == 0xFD
                         ? OPT_COMPR_ZSTD
                         : OPT_COMPR_ZLIB;
        result = COMPR_Uncompress(NULL, 0, input, (int32_t)length, option);
        room = result > 0 ? (size_t)result : 1;
        output = malloc(room);
        if (result > 0)
            result = output ? COMPR_Uncompress(output, (int32_t)room, input, (int32_t)length, option) : -MEMORY_ERROR;
    }
    if (result < 0)
        status = cli_fail(strcmp(argv[optind], "-") ? argv[optind] : NULL, result);
    else
        status = cli_write_all(argv[optind + 1], output, (size_t)result);
    free(input);
    free(output);
    return status;
}

int cmd_compress(int argc, char **argv) { return compress_file(argc, argv, 1); }
int cmd_uncompress(int argc, char **argv) { return compress_file(argc, argv, 0); }

/* ---- wipe ---- */

static const char wipe_help[] =
    "Usage: verimond wipe [OPTION]... FILE...\n"
    "Overwrites each FILE with a series of patterns (each pass committed to\n"
    "the disk, two of them read back), truncates it and removes it.\n"
    "\n"
    "  -f, --fast  one pass of zeros, read back\n"
    "  -h, --help  show this help\n"
    "\n"
    "On file systems that copy on write or journal data, and on flash\n"
    "storage, old blocks may survive any overwriting.\n"
    "Exit status: 0 success, 1 a file could not be wiped, 2 usage error.\n";

int cmd_wipe(int argc, char **argv) {
    static const struct option longs[] = {
        {"fast", no_argument, 0, 'f'}, {"help", no_argument, 0, 'h'}, {0, 0, 0, 0}};
    int32_t options = 0;
    int c, status = EXIT_OK;

    while ((c = getopt_long(argc, argv, ":fh", longs, NULL)) != -1) {
        switch (c) {
        case 'f': options = OPT_WIPE_FAST; break;
        case 'h': fputs(wipe_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (optind == argc)
        return cli_usage("no FILE given");
    for (int i = optind; i < argc; i++) {
        struct stat st;
        int32_t result;
        if (stat(argv[i], &st) != 0) {
            status = cli_failf("%s: %s", argv[i], strerror(errno));
            continue;
        }
        if (!S_ISREG(st.st_mode)) {
            status = cli_failf("%s: not a regular file", argv[i]);
            continue;
        }
        if ((result = WIPE_File(argv[i], options)) != 0)
            status = cli_fail(argv[i], result);
    }
    return status;
}

/* ---- info, selftest ---- */

static const char info_help[] =
    "Usage: verimond info\n"
    "Prints the library's version, build time, file, platform text and\n"
    "description.\n";

int cmd_info(int argc, char **argv) {
    char text[1024];
    int32_t version = API_Version();
    if (argc > 1 && (strcmp(argv[1], "--help") == 0 || strcmp(argv[1], "-h") == 0)) {
        fputs(info_help, stdout);
        return EXIT_OK;
    }
    if (argc > 1)
        return cli_usage("unexpected argument '%s'", argv[1]);
    printf("Version:   %d.%d.%d\n", version / 10000, version / 100 % 100, version % 100);
    API_CompileTime(text, (int32_t)sizeof text - 1);
    printf("Built:     %s\n", text);
    if (API_ModuleName(text, (int32_t)sizeof text - 1, 0) > 0)
        printf("Library:   %s\n", text);
    API_Platform(text, (int32_t)sizeof text - 1);
    printf("Platform:  %s\n", text);
    API_ModuleInfo(text, (int32_t)sizeof text - 1, 0);
    printf("Module:    %s\n", text);
    return EXIT_OK;
}

static const char selftest_help[] =
    "Usage: verimond selftest [OPTION]...\n"
    "Runs the library's load-time self-tests again: the known-answer tests of\n"
    "its digests, MACs and ciphers and the health check of its generator.\n"
    "\n"
    "      --rng[=REPORT]  also run the statistical tests of the generator on\n"
    "                      20000 fresh bits, writing a report to REPORT\n"
    "  -h, --help          show this help\n"
    "\n"
    "Exit status: 0 all passed, 1 a test failed, 2 usage error.\n";

int cmd_selftest(int argc, char **argv) {
    enum { RNG = 1000 };
    static const struct option longs[] = {
        {"rng", optional_argument, 0, RNG}, {"help", no_argument, 0, 'h'}, {0, 0, 0, 0}};
    const char *report = NULL;
    int rng = 0, c;
    int32_t result;

    while ((c = getopt_long(argc, argv, ":h", longs, NULL)) != -1) {
        switch (c) {
        case RNG: rng = 1; report = optarg; break;
        case 'h': fputs(selftest_help, stdout); return EXIT_OK;
        default: return cli_bad_option(c, argv);
        }
    }
    if (optind < argc)
        return cli_usage("unexpected argument '%s'", argv[optind]);
    result = API_PowerUpTests(0);
    if (result != 0)
        return cli_fail("power-up tests", result);
    printf("Power-up tests: passed\n");
    if (rng) {
        result = RNG_Test(report);
        if (result == 1)
            return cli_failf("generator statistical tests: failed");
        if (result != 0)
            return cli_fail("generator statistical tests", result);
        printf("Generator statistical tests: passed\n");
    }
    return EXIT_OK;
}
