#!/usr/bin/env python3
"""Checks the page checksums of an output database, as docs/file-format.md describes them.

    python3 docs/examples/check_pages.py PATH

Prints one line per page that does not match its checksum and exits with 1 when there is one;
prints "no checksums" for a file of an earlier release, whose pages carry none. Needs the
xxhash module (Debian: python3-xxhash).
"""
import sys

import xxhash


def damaged_pages(path):
    """The numbers (from 1) of the pages whose last 8 bytes are not their checksum, or None for
    a file whose pages carry no checksums."""
    with open(path, "rb") as f:
        data = f.read()
    page_size = int.from_bytes(data[16:18], "big")
    page_size = 65536 if page_size == 1 else page_size
    if data[20] != 8:  # bytes reserved at the end of each page
        return None
    bad = []
    for number in range(1, len(data) // page_size + 1):
        page = data[(number - 1) * page_size:number * page_size]
        stored = int.from_bytes(page[-8:], "little")
        if xxhash.xxh3_64_intdigest(page[:-8], seed=number) != stored:
            bad.append(number)
    return bad


if __name__ == "__main__":
    bad = damaged_pages(sys.argv[1])
    if bad is None:
        print("no checksums")
    for number in bad or []:
        print(f"page {number} does not match its checksum")
    sys.exit(1 if bad else 0)
