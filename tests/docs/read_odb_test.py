"""Checks docs/examples/read_odb.py against a database whose numbers are known.

    python3 read_odb_test.py SAMPLE_WRITER READ_ODB_PY

SAMPLE_WRITER writes the database and prints, as JSON, every number it wrote; each reading
function must give them back with the element type and shape docs/file-format.md gives.
"""
import json
import os
import sqlite3
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy as np
except ImportError:
    print("read_odb test skipped: numpy is not installed for", sys.executable,
          "(apt-get install python3-numpy)")
    sys.exit(0)

WRITER, SCRIPT = sys.argv[1:3]
sys.dont_write_bytecode = True  # leave no __pycache__ in the source tree
sys.path.insert(0, os.path.dirname(os.path.abspath(SCRIPT)))
import read_odb  # noqa: E402  (found only once its folder is on the path)


class ReadOdb(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.dir = tempfile.TemporaryDirectory()
        cls.path = os.path.join(cls.dir.name, "sample run.odb")  # a blank, quoted in the URI
        written = subprocess.run([WRITER, cls.path], check=True, capture_output=True, text=True)
        cls.expected = json.loads(written.stdout)
        cls.db = read_odb.connect(cls.path)

    @classmethod
    def tearDownClass(cls):
        cls.db.close()
        cls.dir.cleanup()

    def assertArray(self, actual, dtype, expected):
        expected = np.asarray(expected, dtype=dtype)
        self.assertEqual(actual.dtype, np.dtype(dtype))
        self.assertEqual(actual.shape, expected.shape)
        np.testing.assert_array_equal(actual, expected)

    def test_nodes_join_their_blocks_as_int32_labels_and_float32_xyz(self):
        e = self.expected
        labels, xyz = read_odb.nodes(self.db, e["part"])
        self.assertArray(labels, "<i4", e["node_labels"])
        self.assertArray(xyz, "<f4", np.reshape(e["coordinates"], (-1, 3)))

    def test_element_blocks_give_connectivity_in_node_labels_row_by_row(self):
        blocks = read_odb.element_blocks(self.db, self.expected["part"])
        self.assertEqual([b[0] for b in blocks], [b["type"] for b in self.expected["element_blocks"]])
        for (type_name, labels, connectivity), want in zip(blocks, self.expected["element_blocks"]):
            with self.subTest(type_name):
                self.assertArray(labels, "<i4", want["labels"])
                self.assertArray(connectivity, "<i4",
                                 np.reshape(want["connectivity"], (len(want["labels"]), -1)))

    def test_field_blocks_are_count_by_points_by_components_float32(self):
        f = self.expected["field"]
        blocks = read_odb.field_blocks(self.db, f["step"], f["frame_index"], f["name"])
        self.assertEqual([b["element_type"] for b in blocks],
                         [b["element_type"] for b in f["blocks"]])
        for block, want in zip(blocks, f["blocks"]):
            with self.subTest(want["element_type"]):
                self.assertEqual(block["position"], 3)  # integration point
                self.assertArray(block["labels"], "<i4", want["labels"])
                shape = (len(want["labels"]), want["per_label"], want["width"])
                self.assertArray(block["data"], "<f4", np.reshape(want["data"], shape))
                self.assertIsNone(block["conjugate"])
                self.assertIsNone(block["orientation"])

    def test_frames_are_numbered_from_zero(self):
        f = self.expected["field"]
        first = read_odb.field_blocks(self.db, f["step"], f["frame_index"] - 1, f["name"])
        self.assertEqual(len(first), len(f["blocks"]))
        self.assertFalse(np.array_equal(first[0]["data"].ravel(), f["blocks"][0]["data"]))
        self.assertEqual(read_odb.field_blocks(self.db, f["step"], f["frame_index"] + 1, f["name"]), [])

    def test_history_keeps_times_in_float64_and_values_in_float32(self):
        h = self.expected["history"]
        times, values = read_odb.history(self.db, h["step"], h["region"], h["output"])
        self.assertArray(times, "<f8", h["times"])  # 0.1 as a double, not a widened float
        self.assertArray(values, "<f4", h["values"])

    def test_connection_cannot_write(self):
        with self.assertRaises(sqlite3.OperationalError):
            self.db.execute("DELETE FROM array_chunk")

    def test_program_prints_the_last_frames_first_field(self):
        run = subprocess.run([sys.executable, SCRIPT, self.path], check=True,
                             capture_output=True, text=True)
        self.assertIn("node labels int32 (12,)", run.stdout)
        self.assertIn("coordinates float32 (12, 3)", run.stdout)
        self.assertIn("C3D8 connectivity int32 (2, 8)", run.stdout)
        self.assertIn("field S of step Load, frame 1", run.stdout)
        self.assertIn("S4R of PLATE-1 at position 3, labels [202 201], data float32 (2, 1, 6)",
                      run.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
