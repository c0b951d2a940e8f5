"""Reads the odb tool's VTK export back with VTK's own reader and checks it against the database.

    python3 tool_export_test.py ODB SAMPLE_WRITER READ_ODB_PY

SAMPLE_WRITER writes the sample database (tests/tools/ToolSample.h); the expected numbers come from
the file itself, read with sqlite3 and numpy (docs/examples/read_odb.py), not through the
library. Also checks `odb info --json` against the same reading, and that the progress line shows
on a terminal only.
"""
import json
import math
import os
import pty
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

try:
    import numpy as np
    from vtkmodules.util.numpy_support import vtk_to_numpy
    from vtkmodules.vtkFiltersGeneral import vtkCellValidator
    from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader
except ImportError as missing:
    print("odb export test skipped:", missing, "for", sys.executable,
          "(apt-get install python3-vtk9 python3-numpy)")
    sys.exit(0)

ODB, WRITER, READ_ODB = sys.argv[1:4]
sys.dont_write_bytecode = True  # leave no __pycache__ in the source tree
sys.path.insert(0, os.path.dirname(os.path.abspath(READ_ODB)))
import read_odb  # noqa: E402

# VTK cell types by element type, and where each VTK node comes from in the connectivity.
VTK = {"C3D8": (12, list(range(8))), "C3D6": (13, [0, 2, 1, 3, 5, 4]),
       "C3D10": (24, list(range(10))), "S4R": (9, list(range(4))), "B32": (21, [0, 2, 1])}
G = 1 / math.sqrt(3)


def placed(xyz, placement):
    """Coordinates moved and turned as file-format.md says: R(x + t - a) + a."""
    t, a, axis, angle = placement[0:3], placement[3:6], placement[6:9], placement[9]
    k = axis / np.linalg.norm(axis) if np.linalg.norm(axis) > 0 else np.zeros(3)
    kx = np.array([[0, -k[2], k[1]], [k[2], 0, -k[0]], [-k[1], k[0], 0]])
    rotation = np.eye(3) + math.sin(angle) * kx + (1 - math.cos(angle)) * kx @ kx
    return (rotation @ (xyz.astype(np.float64) + t - a).T).T + a


def hex_to_nodes(values):
    """Values at a hexahedron's 2 x 2 x 2 points (first axis fastest) extrapolated to its nodes:
    the trilinear function through them, evaluated at the corners."""
    corners = [(-1, -1, -1), (1, -1, -1), (1, 1, -1), (-1, 1, -1),
               (-1, -1, 1), (1, -1, 1), (1, 1, 1), (-1, 1, 1)]
    points = [(sx, sy, sz) for sz in (-1, 1) for sy in (-1, 1) for sx in (-1, 1)]
    out = np.zeros((8, values.shape[1]))
    for n, corner in enumerate(corners):
        for p, signs in enumerate(points):
            weight = np.prod([(1 + s * c / G) / 2 for s, c in zip(signs, corner)])
            out[n] += weight * values[p]
    return out


class Export(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tmp = tempfile.TemporaryDirectory()
        cls.odb = os.path.join(cls.tmp.name, "sample.odb")
        subprocess.run([WRITER, cls.odb], check=True, stderr=subprocess.DEVNULL)
        cls.out = os.path.join(cls.tmp.name, "vtk")
        run = subprocess.run([ODB, "export", cls.odb, "--format", "vtu", cls.out],
                             capture_output=True, text=True)
        assert run.returncode == 0, run.stderr
        cls.notes = run.stderr
        cls.db = read_odb.connect(cls.odb)
        cls.labels, cls.xyz = read_odb.nodes(cls.db, "MIXED")
        cls.elements = read_odb.element_blocks(cls.db, "MIXED")
        cls.instances = [(name, iid, np.frombuffer(blob, "<f8")) for iid, name, blob in
                         cls.db.execute("SELECT id, name, placement FROM instance ORDER BY name")]

    @classmethod
    def tearDownClass(cls):
        cls.db.close()
        cls.tmp.cleanup()

    def grid(self, n):
        reader = vtkXMLUnstructuredGridReader()
        reader.SetFileName(os.path.join(self.out, f"sample_{n:04d}.vtu"))
        reader.Update()
        self.assertEqual(reader.GetErrorCode(), 0)
        return reader.GetOutput()

    def test_series_lists_every_frame_at_its_analysis_time(self):
        sets = ET.parse(os.path.join(self.out, "sample.pvd")).getroot().find("Collection")
        self.assertEqual([(float(d.get("timestep")), d.get("file")) for d in sets],
                         [(0.5, "sample_0000.vtu"), (1.0, "sample_0001.vtu"),
                          (2.0, "sample_0002.vtu")])

    def test_unsupported_type_is_reported_once_and_left_out(self):
        self.assertEqual(self.notes,
                         "odb export: element type USR2 has no VTK cell; its 2 elements are left out\n")

    def test_cells_points_and_connectivity_match_the_database(self):
        grid = self.grid(0)
        per_instance = len(self.labels)
        self.assertEqual(grid.GetNumberOfPoints(), 2 * per_instance)
        points = vtk_to_numpy(grid.GetPoints().GetData())
        cells = [(t, l, c) for t, ls, cs in self.elements if t in VTK for l, c in zip(ls, cs)]
        self.assertEqual(grid.GetNumberOfCells(), 2 * len(cells))
        position = {int(label): i for i, label in enumerate(self.labels)}
        for k, (name, _, placement) in enumerate(self.instances):
            mine = points[k * per_instance:(k + 1) * per_instance]
            np.testing.assert_allclose(mine, placed(self.xyz, placement), atol=1e-5, err_msg=name)
            for c, (element_type, label, connectivity) in enumerate(cells):
                cell = grid.GetCell(k * len(cells) + c)
                vtk_type, order = VTK[element_type]
                self.assertEqual(cell.GetCellType(), vtk_type, (name, label))
                ids = [cell.GetPointId(i) for i in range(cell.GetNumberOfPoints())]
                want = [k * per_instance + position[int(connectivity[o])] for o in order]
                self.assertEqual(ids, want, (name, label))
        # VTK's validator checks each cell's node order: faces outward, convex.
        validator = vtkCellValidator()
        validator.SetInputData(grid)
        validator.Update()
        states = vtk_to_numpy(validator.GetOutput().GetCellData().GetArray("ValidityState"))
        self.assertEqual(list(states), [0] * grid.GetNumberOfCells())

    def test_field_values_match_the_database(self):
        steps = [("LOAD", 0), ("LOAD", 1), ("HOLD", 0)]
        ids = {name: k for k, (name, _, _) in enumerate(self.instances)}
        per_instance = len(self.labels)
        cell_of = {}  # (instance, element label) -> cell
        cells = [l for t, ls, _ in self.elements if t in VTK for l in ls]
        for k in range(2):
            for c, label in enumerate(cells):
                cell_of[(k, int(label))] = k * len(cells) + c
        connectivity = {int(l): c for _, ls, cs in self.elements for l, c in zip(ls, cs)}
        position = {int(label): i for i, label in enumerate(self.labels)}
        for n, (step, frame) in enumerate(steps):
            grid = self.grid(n)
            points, cells_data = grid.GetPointData(), grid.GetCellData()
            u = vtk_to_numpy(points.GetArray("U"))
            for block in read_odb.field_blocks(self.db, step, frame, "U"):
                k = ids[block["instance"]]
                for label, row in zip(block["labels"], block["data"][:, 0, :]):
                    np.testing.assert_array_equal(u[k * per_instance + position[int(label)]], row)
            s = vtk_to_numpy(cells_data.GetArray("S"))
            evol = vtk_to_numpy(cells_data.GetArray("EVOL"))
            expected_s = np.full(s.shape, np.nan)
            expected_evol = np.full(evol.shape, np.nan)
            sums = np.zeros((grid.GetNumberOfPoints(), 6))
            counts = np.zeros(grid.GetNumberOfPoints())
            for block in read_odb.field_blocks(self.db, step, frame, "S"):
                k = ids[block["instance"]]
                for label, rows in zip(block["labels"], block["data"]):
                    expected_s[cell_of[(k, int(label))]] = rows.mean(axis=0)
                    for node, value in zip(connectivity[int(label)], hex_to_nodes(rows)):
                        p = k * per_instance + position[int(node)]
                        sums[p] += value
                        counts[p] += 1
            for block in read_odb.field_blocks(self.db, step, frame, "EVOL"):
                k = ids[block["instance"]]
                for label, rows in zip(block["labels"], block["data"]):
                    expected_evol[cell_of[(k, int(label))]] = rows[0, 0]
            np.testing.assert_allclose(s, expected_s, rtol=1e-6)
            np.testing.assert_array_equal(evol, expected_evol)
            with np.errstate(invalid="ignore"):
                expected_nodal = sums / counts[:, None]
            nodal = vtk_to_numpy(points.GetArray("S (nodal average)"))
            np.testing.assert_allclose(nodal, expected_nodal, rtol=1e-5, atol=1e-3)
            self.assertTrue(np.isnan(nodal[counts == 0]).all())
            self.assertEqual(counts.max(), 2)  # the two hexahedra's shared nodes are averaged


class Info(unittest.TestCase):
    def test_json_holds_what_the_file_holds(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "sample.odb")
            subprocess.run([WRITER, path], check=True, stderr=subprocess.DEVNULL)
            info = json.loads(subprocess.run([ODB, "info", path, "--json"], check=True,
                                             capture_output=True, text=True).stdout)
            db = read_odb.connect(path)
            labels, _ = read_odb.nodes(db, "MIXED")
            blocks = read_odb.element_blocks(db, "MIXED")
            (part,) = info["parts"]
            self.assertEqual(part["nodes"], len(labels))
            self.assertEqual(part["elementTypes"], {t: len(ls) for t, ls, _ in blocks})
            self.assertEqual(info["schemaVersion"], 333)
            self.assertEqual(info["bytes"], os.path.getsize(path))
            self.assertEqual([i["name"] for i in info["instances"]], ["PART-1", "PART-2"])
            self.assertEqual([(s["name"], len(s["frames"])) for s in info["steps"]],
                             [("LOAD", 2), ("HOLD", 1)])
            for step in info["steps"]:
                for frame in step["frames"]:
                    for field in frame["fieldOutputs"]:
                        stored = read_odb.field_blocks(db, step["name"], frame["index"],
                                                       field["name"])
                        self.assertEqual(field["values"],
                                         sum(b["data"].shape[0] * b["data"].shape[1]
                                             for b in stored))
            self.assertEqual(info["steps"][0]["historyRegions"][0]["outputs"], ["U1"])
            db.close()


def on_terminal(args):
    """Runs the tool with a terminal as standard error; returns what it wrote there."""
    leader, follower = pty.openpty()
    process = subprocess.Popen(args, stdout=subprocess.DEVNULL, stderr=follower)
    os.close(follower)
    text = b""
    while True:
        try:
            chunk = os.read(leader, 4096)
        except OSError:  # the other end closed
            break
        if not chunk:
            break
        text += chunk
    os.close(leader)
    process.wait()
    return process.returncode, text.decode()


class Progress(unittest.TestCase):
    def test_shows_on_a_terminal_only_and_not_when_quiet(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "sample.odb")
            subprocess.run([WRITER, path], check=True, stderr=subprocess.DEVNULL)
            export = [ODB, "export", path, "--format", "vtu", os.path.join(tmp, "out")]
            status, text = on_terminal(export)
            self.assertEqual(status, 0)
            self.assertIn("export: frame 3 of 3, ", text)
            self.assertIn(" MB/s", text)
            self.assertTrue(text.endswith("\r\033[K") or "left out" in text.splitlines()[-1])
            status, text = on_terminal([ODB, "--quiet"] + export[1:])
            self.assertEqual(status, 0)
            self.assertNotIn("MB/s", text)
            status, text = on_terminal([ODB, "diff", path, path])
            self.assertEqual(status, 0)
            self.assertIn("diff: frame 3 of 3", text)
            piped = subprocess.run([ODB, "diff", path, path], capture_output=True, text=True)
            self.assertEqual(piped.stderr, "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
