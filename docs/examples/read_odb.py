#!/usr/bin/env python3
"""Reads the mesh and the results of an output database with sqlite3 and numpy alone.

    python3 read_odb.py results.odb [FIELD]

prints each part's nodes and element blocks, then the field FIELD (by default the first one) of
the last frame that has fields. Imported, its functions return numpy arrays.

Every bulk array is found through the column of the table that owns it, and that column fixes
the array's element type and shape (docs/file-format.md lists them): the `kind` column of the
`array` table is a description for people, not a type.
"""
import pathlib
import sqlite3
import sys

import numpy as np


def connect(path):
    """Opens the database read-only: nothing done through the connection can change the file."""
    return sqlite3.connect(pathlib.Path(path).resolve().as_uri() + "?mode=ro", uri=True)


def read_array(db, array_id, dtype, shape):
    """Array `array_id` as a numpy array of `dtype` (with its byte order, e.g. "<f4") in `shape`."""
    data = b"".join(row[0] for row in db.execute(
        "SELECT data FROM array_chunk WHERE array_id = ? ORDER BY chunk", (array_id,)))
    (size,) = db.execute("SELECT bytes FROM array WHERE id = ?", (array_id,)).fetchone()
    if len(data) != size:
        raise ValueError(f"array {array_id} holds {len(data)} bytes of its {size}")
    return np.frombuffer(data, dtype=dtype).reshape(shape)


def nodes(db, part):
    """A part's node labels (int32, n) and coordinates (float32, n x 3), its blocks joined."""
    labels, xyz = [np.empty(0, "<i4")], [np.empty((0, 3), "<f4")]
    for count, label_id, xyz_id in db.execute(
            "SELECT b.count, b.labels, b.coordinates FROM node_block b JOIN part p "
            "ON p.id = b.part_id WHERE p.name = ? ORDER BY b.block", (part,)):
        labels.append(read_array(db, label_id, "<i4", (count,)))
        xyz.append(read_array(db, xyz_id, "<f4", (count, 3)))
    return np.concatenate(labels), np.concatenate(xyz)


def element_blocks(db, part):
    """A part's element blocks in order: (type, labels int32 n, connectivity int32 n x nodes per
    element). Connectivity holds node labels, not positions."""
    blocks = []
    for type_name, count, width, label_id, conn_id in db.execute(
            "SELECT b.type, b.count, b.nodes_per_element, b.labels, b.connectivity "
            "FROM element_block b JOIN part p ON p.id = b.part_id WHERE p.name = ? "
            "ORDER BY b.block", (part,)):
        blocks.append((type_name, read_array(db, label_id, "<i4", (count,)),
                       read_array(db, conn_id, "<i4", (count, width))))
    return blocks


def field_blocks(db, step, frame_index, name):
    """The blocks of field `name` of frame `frame_index` (from 0) of step `step`, in order. Each is
    a dict of the block's columns, with `labels` (int32, count), `data` and `conjugate` (float32,
    count x per_label x width; conjugate None for real data) and `orientation` (float32, count x
    per_label x orientation_width, or None)."""
    blocks = []
    rows = db.execute(
        "SELECT b.position, b.instance, b.element_type, b.section_point, b.count, b.per_label, "
        "b.width, b.orientation_width, b.labels, b.data, b.conjugate, b.orientation "
        "FROM field_block b JOIN field_output f ON f.id = b.field_id JOIN step s "
        "ON s.id = f.step_id WHERE s.name = ? AND f.frame_index = ? AND f.name = ? "
        "ORDER BY b.block", (step, frame_index, name)).fetchall()
    for (position, instance, element_type, section_point, count, per_label, width,
         orientation_width, label_id, data_id, conjugate_id, orientation_id) in rows:
        shape = (count, per_label, width)
        blocks.append({
            "position": position, "instance": instance, "element_type": element_type,
            "section_point": section_point,
            "labels": read_array(db, label_id, "<i4", (count,)),
            "data": read_array(db, data_id, "<f4", shape),
            "conjugate": None if conjugate_id is None else read_array(db, conjugate_id, "<f4", shape),
            "orientation": None if orientation_id is None else
                read_array(db, orientation_id, "<f4", (count, per_label, orientation_width)),
        })
    return blocks


def history(db, step, region, output):
    """The (time, value) pairs of a history output, blocks joined: times float64, values float32."""
    times, values = [np.empty(0, "<f8")], [np.empty(0, "<f4")]
    for count, times_id, values_id in db.execute(
            "SELECT b.count, b.times, b.data FROM history_block b "
            "JOIN history_output o ON o.id = b.output_id "
            "JOIN history_region r ON r.id = o.region_id JOIN step s ON s.id = r.step_id "
            "WHERE s.name = ? AND r.name = ? AND o.name = ? ORDER BY b.block",
            (step, region, output)):
        times.append(read_array(db, times_id, "<f8", (count,)))
        values.append(read_array(db, values_id, "<f4", (count,)))
    return np.concatenate(times), np.concatenate(values)


def main(argv):
    if len(argv) not in (2, 3):
        print("usage: read_odb.py DATABASE [FIELD]", file=sys.stderr)
        return 2
    db = connect(argv[1])
    np.set_printoptions(suppress=True, threshold=200)
    try:
        for (part,) in db.execute("SELECT name FROM part ORDER BY id").fetchall():
            labels, xyz = nodes(db, part)
            print(f"part {part}\n  node labels {labels.dtype} {labels.shape}: {labels}")
            print(f"  coordinates {xyz.dtype} {xyz.shape}:\n{xyz}")
            for type_name, element_labels, connectivity in element_blocks(db, part):
                print(f"  {type_name} labels {element_labels.dtype} {element_labels.shape}: "
                      f"{element_labels}")
                print(f"  {type_name} connectivity {connectivity.dtype} {connectivity.shape}:\n"
                      f"{connectivity}")
        last = db.execute(
            "SELECT s.name, f.frame_index FROM field_output f JOIN step s ON s.id = f.step_id "
            "ORDER BY s.id DESC, f.frame_index DESC LIMIT 1").fetchone()
        if last is None:
            return 0
        step, frame_index = last
        (first,) = db.execute(
            "SELECT f.name FROM field_output f JOIN step s ON s.id = f.step_id "
            "WHERE s.name = ? AND f.frame_index = ? ORDER BY f.field_index LIMIT 1", last).fetchone()
        name = argv[2] if len(argv) == 3 else first
        print(f"field {name} of step {step}, frame {frame_index}")
        for block in field_blocks(db, step, frame_index, name):
            data = block["data"]
            print(f"  {block['element_type'] or 'nodes'} of {block['instance']} at position "
                  f"{block['position']}, labels {block['labels']}, data {data.dtype} {data.shape}:"
                  f"\n{data}")
    finally:
        db.close()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
