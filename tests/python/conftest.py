"""A small model written through the module, with every number known to the tests.

A block of 2 x 2 x 2 eight-node bricks (27 nodes, 8 elements) placed once as BLOCK-1, a step of
three frames, each with U at the nodes and S at the 8 integration points of every element, and
a history region at node 5 with U2.
"""
import numpy as np
import pytest

import qtvodb

CELLS = 2
FRAMES = 3
POINTS = 8


def block_mesh(cells=CELLS):
    n = cells + 1
    labels = np.arange(1, n ** 3 + 1, dtype=np.int32)
    i = np.arange(n ** 3)
    xyz = np.stack([i % n, i // n % n, i // (n * n)], axis=1).astype(np.float32)
    conn = []
    for e in range(cells ** 3):
        x, y, z = e % cells, e // cells % cells, e // (cells * cells)
        c = 1 + x + n * y + n * n * z
        conn.append([c, c + 1, c + 1 + n, c + n, c + n * n, c + 1 + n * n, c + 1 + n + n * n,
                     c + n + n * n])
    elements = np.arange(1, cells ** 3 + 1, dtype=np.int32)
    return labels, xyz, elements, np.array(conn, dtype=np.int32)


def frame_values(frame, nodes, elements):
    """U (nodes, 3) and S (elements, POINTS, 6) of a frame, distinct everywhere."""
    u = (np.arange(nodes * 3, dtype=np.float32).reshape(nodes, 3) + 1000 * frame) / 100
    s = np.arange(elements * POINTS * 6, dtype=np.float32).reshape(elements, POINTS, 6)
    s = (s % 97 - 48) * (frame + 1)
    return u, s


def mises(s):
    s = np.asarray(s, dtype=np.float64).reshape(-1, 6)
    p = s[:, :3].mean(axis=1, keepdims=True)
    d = s[:, :3] - p
    return np.sqrt(1.5 * (d ** 2).sum(axis=1) + 3 * (s[:, 3:] ** 2).sum(axis=1))


def write_model(path):
    nodes, xyz, elements, conn = block_mesh()
    with qtvodb.create(path, title="block", description="a test block") as db:
        part = db.create_part("BLOCK", "THREE_D", "DEFORMABLE_BODY")
        part.add_nodes(nodes, xyz)
        part.add_elements(elements, conn, "C3D8")
        instance = db.root_assembly.create_instance(part, "BLOCK-1")
        instance.create_node_set("CORNER", [1, 3])
        instance.create_element_set("FIRST", [1])
        step = db.create_step("LOAD", "load it")
        for f in range(FRAMES):
            frame = step.create_frame(f + 1, 0.5 * (f + 1), "Increment %d" % (f + 1))
            u, s = frame_values(f, len(nodes), len(elements))
            frame.create_field_output("U", "displacement", "VECTOR",
                                      ["U1", "U2", "U3"]).add_data("NODAL", instance, nodes, u)
            frame.create_field_output("S", "stress", "TENSOR_3D_FULL").add_data(
                "INTEGRATION_POINT", instance, elements, s)
        region = step.create_history_region(instance=instance, node=5)
        region.create_history_output("U2", "tip").add_data([0.5, 1.0, 1.5], [-0.25, -0.5, -0.75])
        db.create_step("HOLD", previous_step="LOAD", total_time=1.0)
        db.save()


@pytest.fixture(scope="session")
def model_path(tmp_path_factory):
    path = str(tmp_path_factory.mktemp("model") / "block.odb")
    write_model(path)
    return path


@pytest.fixture
def db(model_path):
    with qtvodb.open(model_path) as opened:
        yield opened
