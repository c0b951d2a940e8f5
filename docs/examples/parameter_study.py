"""The largest Mises stress of a parameter study, read in parallel with Dask.

One task per (file, frame): it opens its file read-only, reads the frame's stress S as bulk data
into numpy arrays and gives the Mises stress of every value. The tasks make one dask array of
(files, frames, values), which Dask reduces like any other. The module lets the GIL go while it
reads, so the threads of one process read several files at once; docs/python.md says how to run
the same on a cluster.

    python3 parameter_study.py [--step LOAD] RUN1.odb RUN2.odb ...
"""
import argparse

import dask
import dask.array as da
import numpy as np

import qtvodb


def mises(s):
    """The Mises stress of each row of (values, 6) stress components S11 S22 S33 S12 S13 S23."""
    p = (s[:, 0] + s[:, 1] + s[:, 2]) / 3
    a, b, c = s[:, 0] - p, s[:, 1] - p, s[:, 2] - p
    return np.sqrt(1.5 * (a * a + b * b + c * c) + 3 * (s[:, 3] ** 2 + s[:, 4] ** 2 + s[:, 5] ** 2))


def frame_mises(path, step, frame):
    """One task: the Mises stress of every value of S in one frame of one file."""
    with qtvodb.open(path) as db:
        blocks = db.steps[step].frames[frame].field_outputs["S"].bulk_data()
        return np.concatenate([mises(b.data) for b in blocks])


def layout(path, step):
    """The number of frames of `step` and of S values per frame: the same in every run."""
    with qtvodb.open(path) as db:
        frames = db.steps[step].frames
        return len(frames), sum(b.length for b in frames[0].field_outputs["S"].bulk_data())


def study(paths, step="LOAD"):
    """A (files, frames, values) dask array of Mises stresses, one chunk per (file, frame)."""
    frames, values = layout(paths[0], step)
    task = dask.delayed(frame_mises, pure=True)
    return da.stack([
        da.stack([da.from_delayed(task(path, step, f), shape=(values,), dtype=np.float32)
                  for f in range(frames)])
        for path in paths])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--step", default="LOAD")
    parser.add_argument("paths", nargs="+")
    args = parser.parse_args()
    per_run = study(args.paths, args.step).max(axis=(1, 2)).compute()
    for path, worst in zip(args.paths, per_run):
        print("%s: largest Mises stress %.1f" % (path, worst))
    print("largest of the study: %.1f in %s" % (per_run.max(), args.paths[int(per_run.argmax())]))


if __name__ == "__main__":
    main()
