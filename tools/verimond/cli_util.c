/* Messages, input and output, secrets and temporary files of the tool. */
#define _GNU_SOURCE
#include <ctype.h>
#include <errno.h>
#include <fcntl.h>
#include <getopt.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "cli.h"

const char *cli_command = "";

static void print_prefix(void) {
    if (*cli_command)
        fprintf(stderr, "verimond %s: ", cli_command);
    else
        fputs("verimond: ", stderr);
}

const char *cli_error_text(int32_t code) {
    static char text[160];
    if (API_ErrorLookup(text, (int32_t)sizeof text - 1, code) <= 0)
        snprintf(text, sizeof text, "unknown error code %ld", (long)(code < 0 ? -(long)code : code));
    return text;
}

int cli_fail(const char *what, int32_t code) {
    print_prefix();
    if (what)
        fprintf(stderr, "%s: ", what);
    fprintf(stderr, "%s\n", cli_error_text(code));
    return EXIT_FAILED;
}

int cli_failf(const char *fmt, ...) {
    va_list args;
    print_prefix();
    va_start(args, fmt);
    vfprintf(stderr, fmt, args);
    va_end(args);
    fputc('\n', stderr);
    return EXIT_FAILED;
}

int cli_usage(const char *fmt, ...) {
    va_list args;
    print_prefix();
    va_start(args, fmt);
    vfprintf(stderr, fmt, args);
    va_end(args);
    if (*cli_command)
        fprintf(stderr, "\nTry 'verimond %s --help'.\n", cli_command);
    else
        fputs("\nTry 'verimond --help'.\n", stderr);
    return EXIT_USAGE;
}

int cli_bad_option(int c, char **argv) {
    const char *word = argv[optind - 1];
    if (c == ':')
        return cli_usage("option '%s' needs a value", word);
    if (optopt && word[0] == '-' && word[1] != '-')
        return cli_usage("unknown option '-%c'", optopt);
    return cli_usage("unknown option '%s'", word);
}

static int normal_char(int c) {
    return c == '-' || c == '_' || c == '/' ? 0 : tolower((unsigned char)c);
}

int cli_name_equal(const char *a, const char *b) {
    for (;;) {
        while (*a && !normal_char(*a))
            a++;
        while (*b && !normal_char(*b))
            b++;
        if (!*a || !*b)
            return !*a && !*b;
        if (normal_char(*a) != normal_char(*b))
            return 0;
        a++;
        b++;
    }
}

int cli_parse_int(const char *text, long min, long max, long *value) {
    char *end;
    long v;
    if (!text || !*text || isspace((unsigned char)*text))
        return -1;
    errno = 0;
    v = strtol(text, &end, 10);
    if (errno || *end || v < min || v > max)
        return -1;
    *value = v;
    return 0;
}

static int read_stream(FILE *f, unsigned char **data, size_t *length) {
    size_t size = 0, room = 65536;
    unsigned char *buffer = malloc(room);
    if (!buffer)
        return ENOMEM;
    for (;;) {
        size_t got;
        if (size == room) {
            unsigned char *bigger;
            if (room >= CLI_MAX_DATA) {
                free(buffer);
                return EFBIG;
            }
            room = room * 2 > CLI_MAX_DATA ? CLI_MAX_DATA : room * 2;
            bigger = realloc(buffer, room);
            if (!bigger) {
                free(buffer);
                return ENOMEM;
            }
            buffer = bigger;
        }
        got = fread(buffer + size, 1, room - size, f);
        size += got;
        if (got == 0) {
            if (ferror(f)) {
                int e = errno ? errno : EIO;
                free(buffer);
                return e;
            }
            break;
        }
    }
    *data = buffer;
    *length = size;
    return 0;
}

int cli_read_all(const char *name, unsigned char **data, size_t *length) {
    int err;
    if (strcmp(name, "-") == 0) {
        err = read_stream(stdin, data, length);
    } else {
        FILE *f = fopen(name, "rb");
        if (!f)
            return cli_failf("%s: %s", name, strerror(errno));
        err = read_stream(f, data, length);
        fclose(f);
    }
    if (err == EFBIG)
        return cli_failf("%s: larger than the %zu bytes this command can hold",
                         strcmp(name, "-") ? name : "standard input", CLI_MAX_DATA);
    if (err)
        return cli_failf("%s: %s", strcmp(name, "-") ? name : "standard input", strerror(err));
    return 0;
}

int cli_write_all(const char *name, const unsigned char *data, size_t length) {
    FILE *f = strcmp(name, "-") == 0 ? stdout : fopen(name, "wb");
    int ok;
    if (!f)
        return cli_failf("%s: %s", name, strerror(errno));
    ok = fwrite(data, 1, length, f) == length;
    ok = fflush(f) == 0 && ok;
    if (f != stdout)
        ok = fclose(f) == 0 && ok;
    if (!ok) {
        int e = errno;
        if (f != stdout)
            remove(name);
        return cli_failf("%s: %s", f == stdout ? "standard output" : name, strerror(e ? e : EIO));
    }
    return 0;
}

void cli_free_secret(unsigned char *data, size_t length) {
    if (data && length > 0)
        WIPE_Data(data, (int32_t)(length > INT32_MAX ? INT32_MAX : length));
    free(data);
}

static int decode_hex_text(const char *text, const char *what, unsigned char **bytes,
                           int32_t *length) {
    int32_t n = CNV_BytesFromHexStr(NULL, 0, text);
    unsigned char *out;
    if (n < 0)
        return cli_fail(what, n);
    out = malloc((size_t)n + 1);
    if (!out)
        return cli_failf("%s: out of memory", what);
    if (n > 0) {
        int32_t got = CNV_BytesFromHexStr(out, n, text);
        if (got < 0) {
            free(out);
            return cli_fail(what, got);
        }
        n = got;
    }
    *bytes = out;
    *length = n;
    return 0;
}

int cli_decode_hex(const char *text, const char *what, unsigned char **bytes, int32_t *length) {
    return decode_hex_text(text, what, bytes, length);
}

static int count_sources(const struct cli_secret_source *s) {
    return (s->text != NULL) + (s->file != NULL) + (s->env != NULL);
}

int cli_read_hex_secret(const struct cli_secret_source *source, const char *what,
                        unsigned char **bytes, int32_t *length) {
    int n = count_sources(source);
    if (n == 0)
        return cli_usage("no %s given: use --%s, --%s-file or --%s-env", what, what, what, what);
    if (n > 1)
        return cli_usage("give the %s in one way only", what);
    if (source->text)
        return decode_hex_text(source->text, what, bytes, length);
    if (source->env) {
        const char *value = getenv(source->env);
        if (!value)
            return cli_failf("%s: environment variable %s is not set", what, source->env);
        return decode_hex_text(value, what, bytes, length);
    }
    {
        unsigned char *text;
        size_t size;
        int rc = cli_read_all(source->file, &text, &size);
        if (rc)
            return rc;
        if (memchr(text, 0, size)) {
            cli_free_secret(text, size);
            return cli_failf("%s: %s holds binary data, not hex", what, source->file);
        }
        {
            unsigned char *terminated = realloc(text, size + 1);
            if (!terminated) {
                cli_free_secret(text, size);
                return cli_failf("%s: out of memory", what);
            }
            text = terminated;
        }
        text[size] = 0;
        rc = decode_hex_text((const char *)text, what, bytes, length);
        cli_free_secret(text, size + 1);
        return rc;
    }
}

/* One line from f into an allocated text without its line end. */
static char *read_line(FILE *f) {
    size_t room = 128, size = 0;
    char *line = malloc(room);
    int c;
    if (!line)
        return NULL;
    while ((c = fgetc(f)) != EOF && c != '\n') {
        if (size + 1 == room) {
            char *bigger = malloc(room * 2);
            if (!bigger) {
                cli_free_secret((unsigned char *)line, room);
                return NULL;
            }
            memcpy(bigger, line, size);
            cli_free_secret((unsigned char *)line, room);
            line = bigger;
            room *= 2;
        }
        line[size++] = (char)c;
    }
    if (size > 0 && line[size - 1] == '\r')
        size--;
    line[size] = 0;
    return line;
}

static char *prompt_password(void) {
    FILE *tty = fopen("/dev/tty", "r+");
    struct termios saved, quiet;
    int echo_off = 0;
    char *line;
    if (!tty)
        return read_line(stdin);
    fputs("Password: ", tty);
    fflush(tty);
    if (tcgetattr(fileno(tty), &saved) == 0) {
        quiet = saved;
        quiet.c_lflag &= ~(tcflag_t)ECHO;
        echo_off = tcsetattr(fileno(tty), TCSAFLUSH, &quiet) == 0;
    }
    line = read_line(tty);
    if (echo_off)
        tcsetattr(fileno(tty), TCSAFLUSH, &saved);
    fputc('\n', tty);
    fclose(tty);
    return line;
}

int cli_read_password(const struct cli_secret_source *source, char **password) {
    char *line = NULL;
    if (count_sources(source) > 1)
        return cli_usage("give the password in one way only");
    if (source->env) {
        const char *value = getenv(source->env);
        if (!value)
            return cli_failf("password: environment variable %s is not set", source->env);
        line = strdup(value);
    } else if (source->file) {
        FILE *f = strcmp(source->file, "-") == 0 ? stdin : fopen(source->file, "r");
        if (!f)
            return cli_failf("%s: %s", source->file, strerror(errno));
        line = read_line(f);
        if (f != stdin)
            fclose(f);
    } else {
        line = prompt_password();
    }
    if (!line)
        return cli_failf("password: out of memory");
    *password = line;
    return 0;
}

char *cli_hex(const unsigned char *bytes, int32_t length) {
    char *text;
    if (length < 0 || length > INT32_MAX / 2 - 1)
        return NULL;
    text = malloc((size_t)length * 2 + 1);
    if (!text)
        return NULL;
    text[0] = 0;
    if (length > 0 && CNV_HexStrFromBytes(text, length * 2, bytes, length) < 0) {
        free(text);
        return NULL;
    }
    return text;
}

static int make_staging_dir(struct cli_staging *staging) {
    const char *base = getenv("TMPDIR");
    if (staging->dir[0])
        return 0;
    if (!base || !*base || strlen(base) > 400)
        base = "/tmp";
    snprintf(staging->dir, sizeof staging->dir, "%s/verimond.XXXXXX", base);
    if (!mkdtemp(staging->dir)) {
        int e = errno;
        staging->dir[0] = 0;
        return cli_failf("cannot make a temporary directory in %s: %s", base, strerror(e));
    }
    return 0;
}

int cli_stage_input(struct cli_staging *staging, const char *name, const char **path) {
    int fd, rc;
    unsigned char buffer[65536];
    ssize_t got;
    if (strcmp(name, "-") != 0) {
        *path = name;
        return 0;
    }
    if ((rc = make_staging_dir(staging)) != 0)
        return rc;
    snprintf(staging->input, sizeof staging->input, "%s/input", staging->dir);
    fd = open(staging->input, O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (fd < 0)
        return cli_failf("%s: %s", staging->input, strerror(errno));
    while ((got = read(STDIN_FILENO, buffer, sizeof buffer)) != 0) {
        ssize_t done = 0;
        if (got < 0) {
            if (errno == EINTR)
                continue;
            rc = cli_failf("standard input: %s", strerror(errno));
            break;
        }
        while (done < got) {
            ssize_t put = write(fd, buffer + done, (size_t)(got - done));
            if (put < 0 && errno == EINTR)
                continue;
            if (put < 0) {
                rc = cli_failf("%s: %s", staging->input, strerror(errno));
                break;
            }
            done += put;
        }
        if (rc)
            break;
    }
    WIPE_Data(buffer, (int32_t)sizeof buffer);
    if (close(fd) != 0 && !rc)
        rc = cli_failf("%s: %s", staging->input, strerror(errno));
    *path = staging->input;
    return rc;
}

int cli_stage_output(struct cli_staging *staging, const char *name, const char **path) {
    int rc;
    if (strcmp(name, "-") != 0) {
        *path = name;
        return 0;
    }
    if ((rc = make_staging_dir(staging)) != 0)
        return rc;
    snprintf(staging->output, sizeof staging->output, "%s/output", staging->dir);
    *path = staging->output;
    return 0;
}

int cli_staging_flush(struct cli_staging *staging) {
    FILE *f;
    unsigned char buffer[65536];
    size_t got;
    int rc = 0;
    if (!staging->output[0])
        return 0;
    f = fopen(staging->output, "rb");
    if (!f)
        return cli_failf("%s: %s", staging->output, strerror(errno));
    while ((got = fread(buffer, 1, sizeof buffer, f)) > 0) {
        if (fwrite(buffer, 1, got, stdout) != got) {
            rc = cli_failf("standard output: %s", strerror(errno));
            break;
        }
    }
    if (!rc && ferror(f))
        rc = cli_failf("%s: read error", staging->output);
    fclose(f);
    WIPE_Data(buffer, (int32_t)sizeof buffer);
    if (!rc && fflush(stdout) != 0)
        rc = cli_failf("standard output: %s", strerror(errno));
    return rc;
}

static void remove_staged(const char *path) {
    struct stat st;
    if (!path[0] || stat(path, &st) != 0)
        return;
    /* Staged files may hold plaintext: overwrite before removing. */
    if (WIPE_File(path, OPT_WIPE_FAST) != 0)
        unlink(path);
}

void cli_staging_end(struct cli_staging *staging) {
    if (!staging->dir[0])
        return;
    remove_staged(staging->input);
    remove_staged(staging->output);
    rmdir(staging->dir);
    staging->dir[0] = 0;
}
