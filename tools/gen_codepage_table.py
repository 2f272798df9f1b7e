#!/usr/bin/env python3
"""Generate source_utilities/ind/KORXCodePage.cpp, the table behind MapPageCodeToUnicodeRune.

Row 0 holds the printable ASCII codes 32 .. 127. Rows 1 .. 15 hold the upper halves
(0xA0 .. 0xFF) of ISO 8859-1 .. ISO 8859-15, read byte by byte from the C library's iconv(3)
(glibc); a byte iconv refuses is unassigned (0xFFFF). ISO 8859-12 does not exist: row 12 is all
0xFFFF. A few positions then take the library's own values (DEPARTURES below).

Usage, from anywhere:
    python3 tools/gen_codepage_table.py            # rewrite the committed source
    python3 tools/gen_codepage_table.py --check    # exit 1 if the committed source differs
    python3 tools/gen_codepage_table.py -o FILE    # write elsewhere

Standard library only. Fails (exit status 1, message on standard error) when iconv(3) is not
available or does not know one of the charsets of rows 1 .. 15.
"""

import argparse
import ctypes
import ctypes.util
import errno
import os
import sys

UNASSIGNED = 0xFFFF
ROW_LENGTH = 96
ROW_COUNT = 16
MISSING_PART = 12  # there is no ISO 8859-12

REPO_ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUTPUT = os.path.join("source_utilities", "ind", "KORXCodePage.cpp")
COMMAND = "python3 tools/gen_codepage_table.py"

ROW_NAMES = {
    0: "printable ASCII, codes 0x20 .. 0x7F (page ignored)",
    1: "ISO 8859-1, Latin-1, Western European",
    2: "ISO 8859-2, Latin-2, Central European",
    3: "ISO 8859-3, Latin-3, South European",
    4: "ISO 8859-4, Latin-4, North European",
    5: "ISO 8859-5, Cyrillic",
    6: "ISO 8859-6, Arabic",
    7: "ISO 8859-7, Greek",
    8: "ISO 8859-8, Hebrew",
    9: "ISO 8859-9, Latin-5, Turkish",
    10: "ISO 8859-10, Latin-6, Nordic",
    11: "ISO 8859-11, Thai",
    12: "no ISO 8859-12 exists: nothing is mapped",
    13: "ISO 8859-13, Latin-7, Baltic Rim",
    14: "ISO 8859-14, Latin-8, Celtic",
    15: "ISO 8859-15, Latin-9, Western European with the euro sign",
}

# (row, code) -> value, replacing what iconv gives. Readers of existing files rely on these.
DEPARTURES = {
    (7, 0xB4): 0x00B4,  # acute accent rather than GREEK TONOS
    (7, 0xB7): 0x0387,  # GREEK ANO TELEIA rather than the middle dot
    (8, 0xAF): 0x203E,  # overline rather than the macron
    (8, 0xB7): 0x2022,  # bullet rather than the middle dot
    (8, 0xFD): UNASSIGNED,  # the LEFT-TO-RIGHT MARK is not mapped
    (8, 0xFE): UNASSIGNED,  # the RIGHT-TO-LEFT MARK is not mapped
    (11, 0xA0): UNASSIGNED,  # the no-break space is not mapped
}


def fail(message):
    sys.stderr.write("gen_codepage_table: error: %s\n" % message)
    sys.exit(1)


class Iconv:
    """The C library's iconv(3), one byte at a time, to UTF-32LE."""

    def __init__(self):
        name = ctypes.util.find_library("c") or "libc.so.6"
        try:
            libc = ctypes.CDLL(name, use_errno=True)
            self._open = libc.iconv_open
            self._convert = libc.iconv
            self._close = libc.iconv_close
        except (OSError, AttributeError) as exc:
            fail("iconv(3) is not available from the C library (%s): %s" % (name, exc))
        self._open.restype = ctypes.c_void_p
        self._open.argtypes = [ctypes.c_char_p, ctypes.c_char_p]
        self._convert.restype = ctypes.c_size_t
        self._convert.argtypes = [
            ctypes.c_void_p,
            ctypes.POINTER(ctypes.c_void_p),
            ctypes.POINTER(ctypes.c_size_t),
            ctypes.POINTER(ctypes.c_void_p),
            ctypes.POINTER(ctypes.c_size_t),
        ]
        self._close.restype = ctypes.c_int
        self._close.argtypes = [ctypes.c_void_p]

    def upper_half(self, charset):
        """Code points of bytes 0xA0 .. 0xFF of charset; UNASSIGNED where iconv refuses."""
        handle = self._open(b"UTF-32LE", charset.encode("ascii"))
        if handle is None or handle == ctypes.c_void_p(-1).value:
            fail("iconv does not know the charset %s" % charset)
        try:
            return [self._rune(handle, charset, code) for code in range(0xA0, 0x100)]
        finally:
            self._close(handle)

    def _rune(self, handle, charset, code):
        source = ctypes.create_string_buffer(bytes([code]), 1)
        target = ctypes.create_string_buffer(16)
        in_ptr = ctypes.c_void_p(ctypes.addressof(source))
        in_left = ctypes.c_size_t(1)
        out_ptr = ctypes.c_void_p(ctypes.addressof(target))
        out_left = ctypes.c_size_t(len(target))
        self._convert(handle, None, None, None, None)  # initial shift state
        result = self._convert(
            handle,
            ctypes.byref(in_ptr),
            ctypes.byref(in_left),
            ctypes.byref(out_ptr),
            ctypes.byref(out_left),
        )
        if result == ctypes.c_size_t(-1).value:
            err = ctypes.get_errno()
            if err in (errno.EILSEQ, errno.EINVAL):
                return UNASSIGNED
            fail("iconv failed on byte 0x%02X of %s: %s" % (code, charset, os.strerror(err)))
        written = target.raw[: len(target) - out_left.value]
        if len(written) != 4:
            fail("byte 0x%02X of %s gives %d code points" % (code, charset, len(written) // 4))
        rune = int.from_bytes(written, "little")
        if rune > 0xFFFF:
            fail("byte 0x%02X of %s gives U+%X, outside 16 bits" % (code, charset, rune))
        return rune


def build_rows():
    rows = [[UNASSIGNED] * ROW_LENGTH for _ in range(ROW_COUNT)]
    rows[0] = list(range(0x20, 0x7F)) + [UNASSIGNED]
    converter = Iconv()
    for row in range(1, ROW_COUNT):
        if row != MISSING_PART:
            rows[row] = converter.upper_half("ISO-8859-%d" % row)
    for (row, code), value in sorted(DEPARTURES.items()):
        rows[row][code - 0xA0] = value
    return rows


def render(rows):
    out = []
    emit = out.append
    emit("// KORXCodePage.cpp")
    emit("//")
    emit("// GENERATED FILE, do not edit. Regenerate from the repository root with:")
    emit("//     %s" % COMMAND)
    emit("//")
    emit("// The table maps a byte of a single-byte code page to a Unicode code point. Row 0 holds")
    emit("// codes 0x20 .. 0x7F; row n (1 .. 15) holds codes 0xA0 .. 0xFF of ISO 8859-n as the C")
    emit("// library's iconv maps them, 0xFFFF where iconv maps nothing. There is no ISO 8859-12:")
    emit("// row 12 is all 0xFFFF. These positions deliberately keep the library's own values, which")
    emit("// readers of existing files rely on:")
    for (row, code), value in sorted(DEPARTURES.items()):
        shown = "unassigned (0xFFFF)" if value == UNASSIGNED else "U+%04X" % value
        emit("//     row %d, 0x%02X: %s" % (row, code, shown))
    emit("")
    emit("#include <korx/KORXString.h>")
    emit("")
    emit("#include <cstdint>")
    emit("")
    emit("namespace {")
    emit("")
    emit("constexpr int kRowLength = %d;" % ROW_LENGTH)
    emit("constexpr int kPageCount = %d;" % ROW_COUNT)
    emit("constexpr int kUnmappable = 0x%04X;" % UNASSIGNED)
    emit("")
    emit("// clang-format off")
    emit("const uint16_t kRows[kPageCount][kRowLength] = {")
    for index, row in enumerate(rows):
        first_code = 0x20 if index == 0 else 0xA0
        emit("    // Row %d: %s" % (index, ROW_NAMES[index]))
        emit("    {")
        for start in range(0, ROW_LENGTH, 8):
            values = ", ".join("0x%04X" % value for value in row[start : start + 8])
            emit("        %s, // 0x%02X" % (values, first_code + start))
        emit("    },")
    emit("};")
    emit("// clang-format on")
    emit("")
    emit("}  // namespace")
    emit("")
    emit("int MapPageCodeToUnicodeRune(int page, int code) {")
    emit("    // Printable ASCII is the same on every page: the page is not even looked at.")
    emit("    if (code >= 32 && code <= 127)")
    emit("        return kRows[0][code - 32];")
    emit("    if (code < 160 || code > 255)")
    emit("        return -1;")
    emit("    // Pages other than 0 .. 15 have no row: nothing maps, and the table is never read")
    emit("    // outside its rows.")
    emit("    if (page < 0 || page >= kPageCount)")
    emit("        return kUnmappable;")
    emit("    // Page 0 has no upper half of its own: code 160 + i reads row 0 at i, so 0xA0 gives")
    emit("    // U+0020 and 0xFF gives 0xFFFF. Callers get exactly that; keep it.")
    emit("    return kRows[page][code - 160];")
    emit("}")
    return "\n".join(out) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", help="file to write (default: the committed source)")
    parser.add_argument(
        "--check", action="store_true", help="compare with the committed source, write nothing"
    )
    args = parser.parse_args()

    text = render(build_rows())
    target = args.output or os.path.join(REPO_ROOT, OUTPUT)
    if args.check:
        try:
            with open(target, encoding="utf-8", newline="") as current:
                same = current.read() == text
        except FileNotFoundError:
            same = False
        if not same:
            sys.stderr.write("gen_codepage_table: %s is out of date; run %s\n" % (target, COMMAND))
            return 1
        return 0
    with open(target, "w", encoding="utf-8", newline="\n") as output:
        output.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
