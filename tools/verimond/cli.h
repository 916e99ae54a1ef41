/* Shared helpers of the verimond command-line tool. The tool uses the public
   interface of the library only. */
#ifndef VERIMOND_CLI_H
#define VERIMOND_CLI_H

#include <stddef.h>
#include <stdint.h>

#include "verimond.h"

/* Exit statuses. */
enum { EXIT_OK = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

/* Largest in-memory input: every length in the library is a signed 32-bit
   value, and some results add a nonce, a tag or padding to it. */
#define CLI_MAX_DATA ((size_t)INT32_MAX - 4096)

/* The subcommand being run, for messages ("verimond hash: ..."). */
extern const char *cli_command;

/* Messages on standard error. cli_fail prints the library's text for code
   (either sign) and returns EXIT_FAILED; cli_usage prints the message and a
   pointer to --help and returns EXIT_USAGE. */
int cli_fail(const char *what, int32_t code);
int cli_failf(const char *fmt, ...) __attribute__((format(printf, 1, 2)));
int cli_usage(const char *fmt, ...) __attribute__((format(printf, 1, 2)));

/* The library's text for a code of either sign, in a static buffer. */
const char *cli_error_text(int32_t code);

/* Case-free comparison that ignores '-', '_' and '/', so "SHA3_256",
   "sha3-256" and "sha3256" are one name. */
int cli_name_equal(const char *a, const char *b);

/* Parses a decimal number into *value; 0 on success, -1 if the text is not
   a number in [min, max]. */
int cli_parse_int(const char *text, long min, long max, long *value);

/* Reports a getopt failure (c is '?' or ':') as a usage error. */
int cli_bad_option(int c, char **argv);

/* Whole input of a file, or of standard input for "-". The buffer is
   allocated (never null, also for an empty input) and holds *length bytes.
   Returns 0, or prints the reason and returns EXIT_FAILED. */
int cli_read_all(const char *name, unsigned char **data, size_t *length);

/* Writes the bytes to a new file, or to standard output for "-".
   Returns 0, or prints the reason and returns EXIT_FAILED. */
int cli_write_all(const char *name, const unsigned char *data, size_t length);

/* Frees a buffer that held secrets, wiping it first. */
void cli_free_secret(unsigned char *data, size_t length);

/* Where a secret comes from: one of text (hex on the command line), a file
   or an environment variable. */
struct cli_secret_source {
    const char *text;
    const char *file;
    const char *env;
};

/* Decodes a hex key from its source into an allocated buffer. Returns 0,
   EXIT_USAGE when no source or more than one was given, or EXIT_FAILED with
   the reason printed. what names the secret in messages ("key"). */
int cli_read_hex_secret(const struct cli_secret_source *source, const char *what,
                        unsigned char **bytes, int32_t *length);

/* A password: from a file (its first line), an environment variable, or
   typed at the terminal without echo. Returns 0 or an exit status. */
int cli_read_password(const struct cli_secret_source *source, char **password);

/* Decodes hex text given on the command line (an IV, a salt). An empty text
   gives an empty buffer. Returns 0 or EXIT_FAILED with the reason printed. */
int cli_decode_hex(const char *text, const char *what, unsigned char **bytes, int32_t *length);

/* Upper-case hex of bytes, allocated; null on a length the library refuses. */
char *cli_hex(const unsigned char *bytes, int32_t length);

/* Stand-ins for "-" in the file-based library calls: standard input is
   copied to a private temporary file, and output for standard output is
   written to one and copied out afterwards. Every temporary file is wiped
   and removed by cli_staging_end. */
struct cli_staging {
    char dir[512];
    char input[544];
    char output[544];
};

/* Sets *path to name, or to a temporary copy of standard input for "-". */
int cli_stage_input(struct cli_staging *staging, const char *name, const char **path);
/* Sets *path to name, or to a temporary file for "-". */
int cli_stage_output(struct cli_staging *staging, const char *name, const char **path);
/* Copies the staged output to standard output, if one was staged. */
int cli_staging_flush(struct cli_staging *staging);
void cli_staging_end(struct cli_staging *staging);

/* Subcommands: argc/argv start at the subcommand's name. */
int cmd_hash(int argc, char **argv);
int cmd_mac(int argc, char **argv);
int cmd_crc(int argc, char **argv);
int cmd_encrypt(int argc, char **argv);
int cmd_decrypt(int argc, char **argv);
int cmd_seal(int argc, char **argv);
int cmd_open(int argc, char **argv);
int cmd_kdf(int argc, char **argv);
int cmd_rand(int argc, char **argv);
int cmd_compress(int argc, char **argv);
int cmd_uncompress(int argc, char **argv);
int cmd_wipe(int argc, char **argv);
int cmd_info(int argc, char **argv);
int cmd_selftest(int argc, char **argv);

/* The run without arguments: the library at work on a sample. */
int cli_demo(void);

#endif
