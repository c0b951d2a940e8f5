"""Runs docs/examples/check_pages.py, the documented page check, on a database that the library
writes: every page matches, and a changed byte is found on its page.

    check_pages_test.py WRITER SCRIPT
"""
import os
import subprocess
import sys
import tempfile
import unittest

try:
    import xxhash  # noqa: F401
except ImportError:
    print("check_pages test skipped: this python3 has no xxhash (apt-get install python3-xxhash)")
    sys.exit(0)

WRITER, SCRIPT = sys.argv[1:3]
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(SCRIPT)))
import check_pages  # noqa: E402


class CheckPages(unittest.TestCase):
    def test_pages_of_a_written_file_match_and_a_changed_byte_does_not(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.odb")
            subprocess.run([WRITER, path], check=True, capture_output=True)
            self.assertEqual(check_pages.damaged_pages(path), [])
            with open(path, "r+b") as f:
                size = int.from_bytes(f.read(18)[16:18], "big")
                inside_page_2 = (65536 if size == 1 else size) * 3 // 2
                f.seek(inside_page_2)
                byte = f.read(1)
                f.seek(inside_page_2)
                f.write(bytes([byte[0] ^ 1]))
            self.assertEqual(check_pages.damaged_pages(path), [2])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
