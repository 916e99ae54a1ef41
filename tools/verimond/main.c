/* verimond: a command-line tool over the library's public interface. */
#include <stdio.h>
#include <string.h>

#include "cli.h"

static const struct {
    const char *name;
    int (*run)(int argc, char **argv);
    const char *summary;
} commands[] = {
    {"hash", cmd_hash, "digests of files and text (SHA-2, SHA-3, ...)"},
    {"mac", cmd_mac, "HMAC, CMAC, Poly1305 and KMAC of files and text"},
    {"encrypt", cmd_encrypt, "encrypt a file with AES or Triple DES"},
    {"decrypt", cmd_decrypt, "decrypt a file made by encrypt"},
    {"seal", cmd_seal, "authenticated encryption of a file (AES-GCM, ChaCha20-Poly1305, Ascon)"},
    {"open", cmd_open, "check and decrypt a file made by seal"},
    {"kdf", cmd_kdf, "derive a key from a password (PBKDF2, scrypt)"},
    {"rand", cmd_rand, "random bytes and numbers, seed files"},
    {"compress", cmd_compress, "compress a file (zlib, Zstandard)"},
    {"uncompress", cmd_uncompress, "restore a compressed file"},
    {"crc", cmd_crc, "CRC-32 of files and text"},
    {"wipe", cmd_wipe, "overwrite and remove files"},
    {"info", cmd_info, "the library's version and build"},
    {"selftest", cmd_selftest, "run the library's self-tests"},
};

static void print_help(void) {
    printf("Usage: verimond COMMAND [OPTION]... [ARGUMENT]...\n"
           "A command-line tool over the Verimond cryptographic library. Without a\n"
           "command it shows the library at work on a sample text.\n\n"
           "Commands:\n");
    for (size_t i = 0; i < sizeof commands / sizeof commands[0]; i++)
        printf("  %-11s %s\n", commands[i].name, commands[i].summary);
    printf("\n"
           "'verimond COMMAND --help' describes a command. A file named '-' is\n"
           "standard input or output. Keys are given in hex with --key, or better\n"
           "with --key-file or --key-env, which keep them out of the process list;\n"
           "keys and passwords are never printed.\n\n"
           "Exit status: 0 success, 1 the operation failed (the library's reason is\n"
           "printed on standard error), 2 usage error.\n");
}

int main(int argc, char **argv) {
    const char *name;
    if (argc < 2)
        return cli_demo();
    name = argv[1];
    if (strcmp(name, "--help") == 0 || strcmp(name, "-h") == 0 || strcmp(name, "help") == 0) {
        print_help();
        return EXIT_OK;
    }
    if (strcmp(name, "--version") == 0) {
        int32_t v = API_Version();
        printf("verimond %d.%d.%d\n", v / 10000, v / 100 % 100, v % 100);
        return EXIT_OK;
    }
    for (size_t i = 0; i < sizeof commands / sizeof commands[0]; i++) {
        if (strcmp(name, commands[i].name) == 0) {
            cli_command = commands[i].name;
            return commands[i].run(argc - 1, argv + 1);
        }
    }
    return cli_usage("unknown command '%s'", name);
}
