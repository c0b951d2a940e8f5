"""The Python module against the C++ interface, on the files of bench_field (an N x N x N block of
eight-node bricks, 10 frames of U at the nodes and S at 8 integration points):

- writing the fields from numpy arrays and saving, against the bulk addData of C++;
- reading every frame's S into numpy arrays (bulk_data(): data and element labels), against
  bulkDataBlocks() in C++;
- the maximum Mises stress of every frame with numpy on those arrays, beside the loop in C++.

    bench_python                                    (the C++ program runs this with its module)
    python3 bench_python.py --baseline PROGRAM [--cells N] [--runs R]

Reads and writes are the best of 2 R runs, R at a time in turns with their baseline, each side in
its own process; reads find the file in the page cache. The Mises figures are the best of 3.
"""
import argparse
import os
import shutil
import subprocess
import tempfile
import time

import numpy as np

import qtvodb

FRAMES = 10


def mesh(cells):
    n = cells + 1
    i = np.arange(n ** 3)
    xyz = np.stack([i % n, i // n % n, i // (n * n)], axis=1).astype(np.float32)
    e = np.arange(cells ** 3)
    x, y, z = e % cells, e // cells % cells, e // (cells * cells)
    c = 1 + x + n * y + n * n * z
    conn = np.stack([c, c + 1, c + 1 + n, c + n, c + n * n, c + 1 + n * n, c + 1 + n + n * n,
                     c + n + n * n], axis=1).astype(np.int32)
    return np.arange(1, n ** 3 + 1, dtype=np.int32), xyz, np.arange(1, cells ** 3 + 1, dtype=np.int32), conn


def make_model(path, cells):
    nodes, xyz, elements, conn = mesh(cells)
    with qtvodb.create(path) as db:
        part = db.create_part("BLOCK")
        part.add_nodes(nodes, xyz)
        part.add_elements(elements, conn, "C3D8")
        db.root_assembly.create_instance(part, "BLOCK-1")
        db.create_step("LOAD")
        db.save()
    return nodes, elements


def write(model, out, nodes, elements, u, s):
    """Seconds to write FRAMES frames of U and S from numpy and save (the close not timed)."""
    shutil.copyfile(model, out)
    db = qtvodb.open(out, read_only=False)
    instance = db.root_assembly.instances["BLOCK-1"]
    start = time.perf_counter()
    step = db.steps["LOAD"]
    for f in range(FRAMES):
        frame = step.create_frame(f + 1, 0.1 * (f + 1))
        frame.create_field_output("U", "displacement", "VECTOR").add_data("NODAL", instance, nodes, u)
        frame.create_field_output("S", "stress", "TENSOR_3D_FULL").add_data(
            "INTEGRATION_POINT", instance, elements, s)
    db.save()
    seconds = time.perf_counter() - start
    db.close()
    return seconds


def read(path):
    """Every frame's S as numpy arrays: (data, element labels) per block."""
    with qtvodb.open(path) as db:
        return [(b.data, b.element_labels)
                for frame in db.steps["LOAD"].frames for b in frame.field_outputs["S"].bulk_data()]


def max_mises(s):
    p = (s[:, 0] + s[:, 1] + s[:, 2]) / 3
    a, b, c = s[:, 0] - p, s[:, 1] - p, s[:, 2] - p
    return np.sqrt(1.5 * (a * a + b * b + c * c) + 3 * (s[:, 3] ** 2 + s[:, 4] ** 2 + s[:, 5] ** 2)).max()


def best(runs, f):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        f()
        times.append(time.perf_counter() - start)
    return min(times)


def baseline(program, *args):
    return [float(x) for x in subprocess.run([program, *map(str, args)], check=True,
                                             capture_output=True, text=True).stdout.split()]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--baseline", required=True, help="the bench_python program")
    parser.add_argument("--cells", type=int, default=60)
    parser.add_argument("--runs", type=int, default=5)
    args = parser.parse_args()
    work = os.path.join(tempfile.gettempdir(), "qtvodb_bench_python")
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    model, ours, theirs = (os.path.join(work, n) for n in ("model.odb", "python.odb", "cpp.odb"))

    nodes, elements = make_model(model, args.cells)
    u = (np.float32(1e-3) * (np.arange(3 * len(nodes)) % 977).astype(np.float32)).reshape(-1, 3)
    s = ((np.arange(len(elements) * 48, dtype=np.int64) * 7919) % 1000 - 500).astype(np.float32)
    s = s.reshape(len(elements), 8, 6)
    print("block      %d elements, %d nodes, %d frames: %.1f MB of U and S"
          % (len(elements), len(nodes), FRAMES, FRAMES * (u.nbytes + s.nbytes) / 1e6))

    # Each side writes several times in its own process (the library reuses the large arrays it
    # freed, which favours later runs alike), and the two take turns twice: the disk's flush
    # time, and the load of the machine, move from minute to minute.
    py_write = cpp_write = 1e30
    for _ in range(2):
        cpp_write = min(cpp_write, baseline(args.baseline, "write", model, theirs, args.cells, args.runs)[0])
        py_write = min([py_write] + [write(model, ours, nodes, elements, u, s) for _ in range(args.runs)])
    print("write      numpy add_data + save %.3f s, C++ bulk addData + save %.3f s: %.2fx"
          % (py_write, cpp_write, py_write / cpp_write))

    # Both sides read the file the C++ side wrote, which holds the numbers the Python side wrote.
    read(theirs)
    py_read = cpp_read = 1e30
    for _ in range(2):
        cpp_read = min(cpp_read, baseline(args.baseline, "read", theirs, args.runs)[0])
        py_read = min(py_read, best(args.runs, lambda: read(theirs)))
    print("read       all S into numpy by bulk_data() %.3f s, C++ bulkDataBlocks() %.3f s: %.2fx"
          % (py_read, cpp_read, py_read / cpp_read))

    blocks = read(theirs)
    frames = [data for data, _ in blocks]
    maxima = []
    py_mises = best(3, lambda: maxima.append(max(max_mises(d) for d in frames)))
    # A block keeps the Mises stresses it computed: each run opens the file afresh, and reads
    # the blocks before the clock starts, as the C++ side does.
    py_invariant = 1e30
    for _ in range(3):
        with qtvodb.open(theirs) as db:
            fields = [f.field_outputs["S"] for f in db.steps["LOAD"].frames]
            for f in fields:
                [b.data for b in f.bulk_data()]
            start = time.perf_counter()
            max(f.values_array(invariant="MISES").max() for f in fields)
            py_invariant = min(py_invariant, time.perf_counter() - start)
    cpp_loop, cpp_library, cpp_max, _ = baseline(args.baseline, "mises", theirs, 3)
    print("mises      max per frame, numpy on the arrays %.3f s, C++ loop over the rows %.3f s: %.2fx"
          % (py_mises, cpp_loop, py_mises / cpp_loop))
    print("mises      ... values_array(invariant='MISES') %.3f s, C++ FieldBulkData::mises() %.3f s"
          % (py_invariant, cpp_library))
    print("mises      maxima: numpy %.3f, C++ %.3f" % (maxima[-1], cpp_max))
    if not os.environ.get("QTVODB_BENCH_KEEP"):
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
