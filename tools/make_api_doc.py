#!/usr/bin/env python3
"""Writes docs/API.md, the API reference, from include/verimond.h: every
export with its prototype, the header's comment on it and its result style,
the option numbers, and the error codes with the library's own texts.

usage: make_api_doc.py [--library LIB] [--header H] [--output OUT]
The error texts come from the built library (default: the in-tree build, or
VERIMOND_LIBRARY). Run it again whenever the header changes; the test
api_doc_complete says when that is due.
"""
import argparse
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# The result style of each export, first match wins. Styles: A is 0 or a
# positive code; B is a count or length, or minus a code; a handle is 0 on
# failure with the reason in API_ErrorCode().
STYLES = [
    (r"^API_(Version|ErrorCode)$", "a value; cannot fail"),
    (r"^API_(ErrorLookup|CompileTime|Platform|ModuleInfo)$",
     "the text length (or the length needed); no latch"),
    (r"^API_(ModuleName|PowerUpTests)$", "B"),
    (r"_InitError$", "the code of the thread's last Init of the family (0 after success)"),
    (r"^(AES128|AES192|AES256|DES|TDEA|BLF)_Init(Hex)?$",
     "handle; on failure 0, the reason from the family's InitError"),
    (r"^(HASH|MAC|CIPHER|CIPHER_Stream|GCM)_Init(Hex|Key)?$", "handle"),
    (r"^CIPHER_StreamInit$", "handle"),
    (r"^SHA3_Init$", "handle; 0 for a bad length, nothing latched"),
    (r"^(SHA1|SHA2|MD5)_Init$", "handle; never fails"),
    (r"^AEAD_InitKey$", "handle; 0 with the reason latched, or -BAD_KEY_LEN_ERROR unlatched"),
    (r"^SHA3_(AddBytes|AddString|Reset)$", "A"),
    (r"^SHA3_", "B"),
    (r"^(SHA1|SHA2|MD5|PC1|WIPE|DES_CheckKey)", "A"),
    (r"^(AES128|AES192|AES256|DES|TDEA|BLF)_", "A"),
    (r"^PBE_Kdf2", "A"),
    (r"^PBE_Scrypt", "B"),
    (r"^CIPHER_File(En|De)crypt$",
     "A from the file work (0 or a positive code); minus a code from the argument screening"),
    (r"^CIPHER_Update$", "B, except +BAD_LENGTH_ERROR for a part block in ECB or CBC"),
    (r"^GCM_(Next|Finish)", "B, except +INVALID_HANDLE_ERROR for a bad handle"),
    (r"^RNG_(KeyBytes|KeyHex|NonceData|NonceDataHex|BytesWithPrompt|HexWithPrompt)$", "A"),
    (r"^RNG_Number$", "the number; cannot fail"),
    (r"^RNG_Test$", "0 passed, 1 failed, or minus a code"),
    (r"^RNG_", "B"),
    (r"^CRC_", "the CRC; 0 also stands for a failure, told apart by API_ErrorCode()"),
    (r"^(CNV|HASH|MAC|XOF|PRF|PAD|CIPHER|AEAD|GCM|ZLIB|COMPR)_", "B"),
]

STYLE_TEXT = {"A": "style A", "B": "style B", "handle": "handle"}

INTRO = """\
# Verimond API reference

Generated from `include/verimond.h` by `tools/make_api_doc.py`; edit the
header's comments, not this file, and run the script again.

## Conventions

Every export returns `int32_t` in one of these styles, fixed per function and
given with each below:

- **style A**: 0 on success, a positive error code on failure;
- **style B**: 0 or a positive count or length on success, minus the error
  code on failure;
- **handle**: a context handle (odd, below 2^30) on success, 0 on failure.

After a call, `API_ErrorCode()` reads the thread's latch: the code of its last
failure (always positive), or the count that a count-returning call handed
back; `API_ErrorLookup()` gives the text of a code of either sign. Lengths and
counts are `int32_t`; a negative length is refused.

Output buffers: a null output or a length of 0 or less asks for the size
needed. Text lengths count characters without the terminating NUL, so the
buffer must hold one byte more; text output is always NUL-terminated. Hex
output is upper case from `CNV_`, the cipher families, `PBE_` and `RNG_`, and
lower case from the digests and MACs.

Stateful families keep one context per family per thread: a second Init on a
thread ends the first, and a handle means something only on the thread that
made it. Contexts end with Final, Reset or Destroy, which wipe them.

`direction` arguments: non-zero encrypts, 0 decrypts. Option words are the
`OPT_` numbers below, OR-ed together.
"""


def parse(header):
    """Items of the header in order: ("comment", text), ("blank",),
    ("proto", name, prototype), ("define", name, value)."""
    lines = open(header, encoding="utf-8").read().splitlines()
    items = []
    i = 0
    while i < len(lines):
        line = lines[i].strip()
        if line.startswith("/*"):
            chunk = [lines[i]]
            while "*/" not in lines[i]:
                i += 1
                chunk.append(lines[i])
            body = "\n".join(chunk).strip()[2:-2]
            body = "\n".join(part.strip().lstrip("*").strip() for part in body.splitlines())
            items.append(("comment", body.strip()))
        elif line.startswith("VERIMOND_API"):
            chunk = [line]
            while not lines[i].rstrip().endswith(";"):
                i += 1
                chunk.append(lines[i].strip())
            proto = re.sub(r"\s+", " ", " ".join(chunk).replace("VERIMOND_API ", "", 1))
            proto = proto.replace("( ", "(").replace(" )", ")")
            name = re.match(r"int32_t\s+(\w+)", proto).group(1)
            items.append(("proto", name, proto))
        elif line.startswith("#define"):
            parts = line.split()
            if len(parts) >= 3 and re.fullmatch(r"0x[0-9A-Fa-f]+|\d+", parts[2]):
                items.append(("define", parts[1], parts[2]))
        elif not line:
            items.append(("blank",))
        i += 1
    return items


def declared(header):
    """Export name -> normalised prototype."""
    return {item[1]: item[2] for item in parse(header) if item[0] == "proto"}


def style_of(name):
    for pattern, style in STYLES:
        if re.search(pattern, name):
            return STYLE_TEXT.get(style, style)
    raise SystemExit("no result style known for %s: add it to STYLES in %s" % (name, __file__))


def is_rule(comment):
    return re.fullmatch(r"-+", comment) is not None


def banner(comment):
    m = re.fullmatch(r"-{2,}\s*(.*?)\s*-{2,}", comment)
    return m.group(1) if m else None


def error_table(items, library):
    sys.path.insert(0, os.path.join(ROOT, "python"))
    if library:
        os.environ["VERIMOND_LIBRARY"] = os.path.abspath(library)
    from verimond._native import error_text  # noqa: E402
    rows = ["| Code | Name | Text |", "|---:|---|---|"]
    for item in items:
        if item[0] == "define" and not item[1].startswith("OPT_") and item[1] != "VERIMOND_H":
            text = error_text(int(item[2], 0))
            text = re.sub(r"\s*\(%s\)$" % item[1], "", text)
            rows.append("| %s | `%s` | %s |" % (item[2], item[1], text or "(unknown)"))
    return rows


def render(header, library):
    items = parse(header)
    out = [INTRO]
    out.append("## Error codes\n")
    out.append("`API_ErrorLookup` gives \"TEXT (NAME)\" for each.\n")
    out.extend(error_table(items, library))
    out.append("")

    # Option groups: a comment followed by #define OPT_ lines.
    out.append("## Options\n")
    note = None
    rows = []

    def flush_options():
        if rows:
            out.append("### " + (note.splitlines()[0] if note else "Other options"))
            out.append("")
            rest = " ".join(note.splitlines()[1:]) if note else ""
            if rest:
                out.append(rest + "\n")
            out.append("| Name | Value |")
            out.append("|---|---:|")
            out.extend(rows)
            out.append("")
            rows.clear()

    for item in items:
        if item[0] == "comment" and not is_rule(item[1]) and not banner(item[1]):
            flush_options()
            note = item[1]
        elif item[0] == "define" and item[1].startswith("OPT_"):
            rows.append("| `%s` | %s |" % (item[1], item[2]))
        elif item[0] == "proto":
            break
    flush_options()

    # Functions: big sections between rules, subsections by "---- X ----".
    out.append("## Functions\n")
    # Big sections that declare no function (error codes, options) are
    # covered above.
    with_functions = set()
    section = None
    for index, item in enumerate(items):
        if item[0] == "comment" and index > 0 and items[index - 1][0] == "comment" \
                and is_rule(items[index - 1][1]) and not is_rule(item[1]):
            section = index
        elif item[0] == "proto" and section is not None:
            with_functions.add(section)
    started = False
    pending = []      # comments not yet attached
    last_was_rule = False
    count = 0
    for index, item in enumerate(items):
        kind = item[0]
        if kind == "comment":
            if is_rule(item[1]):
                last_was_rule = True
                continue
            title = banner(item[1])
            if last_was_rule:
                # A big section title sits between two rules.
                pending.clear()
                started = index in with_functions
                if started:
                    out.append("### " + item[1].rstrip("."))
                    out.append("")
                last_was_rule = False
                continue
            if title is not None:
                pending.clear()
                out.append("#### " + title)
                out.append("")
                continue
            if started:
                pending.append(item[1])
            continue
        last_was_rule = False
        if kind == "blank":
            if pending and started:
                # A comment followed by a blank line introduces what follows.
                for text in pending:
                    out.append(paragraph(text))
                    out.append("")
                pending.clear()
            continue
        if kind == "proto" and started:
            name, proto = item[1], item[2]
            count += 1
            out.append("##### `%s`\n" % name)
            out.append("```c\n%s\n```\n" % proto)
            if pending:
                # Of comments in a row, the last is the function's own and
                # the others introduce the group.
                for text in pending[:-1]:
                    out.insert(len(out) - 2, paragraph(text) + "\n")
                out.append(paragraph(pending[-1]))
                out.append("")
                pending.clear()
            out.append("Result: %s.\n" % style_of(name))
    out.append("---\n%d exported functions.\n" % count)
    return "\n".join(out).rstrip() + "\n"


def paragraph(text):
    return " ".join(line.strip() for line in text.splitlines() if line.strip())


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--library")
    parser.add_argument("--header", default=os.path.join(ROOT, "include", "verimond.h"))
    parser.add_argument("--output", default=os.path.join(ROOT, "docs", "API.md"))
    args = parser.parse_args()
    text = render(args.header, args.library)
    os.makedirs(os.path.dirname(args.output), exist_ok=True)
    with open(args.output, "w", encoding="utf-8") as f:
        f.write(text)
    print("wrote", args.output)


if __name__ == "__main__":
    main()
