"""Field output as numpy arrays: views of the library's memory, whole-field arrays, writing."""
import gc

import numpy as np
import pytest

import qtvodb
from conftest import FRAMES, POINTS, block_mesh, frame_values, mises

NODES, _, ELEMENTS, _ = block_mesh()


def test_bulk_data_gives_back_what_was_written(db):
    for f, frame in enumerate(db.steps["LOAD"].frames):
        u, s = frame_values(f, len(NODES), len(ELEMENTS))
        [sb] = frame.field_outputs["S"].bulk_data()
        assert sb.data.dtype == np.float32 and sb.data.shape == (len(ELEMENTS) * POINTS, 6)
        np.testing.assert_array_equal(sb.data, s.reshape(-1, 6))
        np.testing.assert_array_equal(sb.element_labels, np.repeat(ELEMENTS, POINTS))
        np.testing.assert_array_equal(sb.integration_points, np.tile(np.arange(1, 9), len(ELEMENTS)))
        assert (sb.node_labels == -1).all()
        assert (sb.element_type, sb.position, sb.instance_name) == ("C3D8", qtvodb.INTEGRATION_POINT, "BLOCK-1")
        assert sb.conjugate_data is None
        np.testing.assert_allclose(sb.mises, mises(s), rtol=1e-5)
        [ub] = frame.field_outputs["U"].bulk_data()
        np.testing.assert_array_equal(ub.data, u)
        np.testing.assert_array_equal(ub.node_labels, NODES)
        assert ub.element_type == "" and (ub.element_labels == -1).all()


def test_views_are_read_only_share_memory_and_keep_their_owner_alive(model_path):
    with qtvodb.open(model_path) as db:
        block = db.steps["LOAD"].frames[-1].field_outputs["S"].bulk_data()[0]
        data, labels = block.data, block.element_labels
        # No copy: two views of one block see the same memory.
        assert np.shares_memory(data, block.data)
        assert not data.flags.writeable and not labels.flags.writeable
        with pytest.raises(ValueError):
            data[0, 0] = 1
    # The database is closed and every object that led to the arrays is gone: the arrays hold
    # the block, so its memory is still theirs.
    del block, db
    gc.collect()
    _, s = frame_values(FRAMES - 1, len(NODES), len(ELEMENTS))
    np.testing.assert_array_equal(data, s.reshape(-1, 6))
    np.testing.assert_array_equal(labels[:POINTS], 1)


def test_values_array_over_the_whole_field(db):
    frame = db.steps["LOAD"].frames[2]
    _, s = frame_values(2, len(NODES), len(ELEMENTS))
    whole = frame.field_outputs["S"].values_array()
    assert whole.shape == (len(ELEMENTS) * POINTS, 6) and whole.flags.writeable
    np.testing.assert_array_equal(whole, s.reshape(-1, 6))
    von_mises = frame.field_outputs["S"].values_array(invariant="MISES")
    assert von_mises.shape == (len(ELEMENTS) * POINTS,)
    np.testing.assert_allclose(von_mises, mises(s), rtol=1e-5)
    # The same as the library's scalar field of the invariant, however it is computed.
    scalar = frame.field_outputs["S"].get_scalar_field("MISES")
    assert scalar.is_orphan and scalar.type == qtvodb.SCALAR
    np.testing.assert_allclose(von_mises, scalar.values_array()[:, 0], rtol=1e-6)
    np.testing.assert_allclose(frame.field_outputs["S"].values_array(invariant="TRESCA"),
                               scalar_tresca(s), rtol=1e-5, atol=1e-3)
    centroid = frame.field_outputs["S"].values_array(position=qtvodb.CENTROID)
    np.testing.assert_allclose(centroid, s.mean(axis=1), rtol=1e-5, atol=1e-4)
    with pytest.raises(qtvodb.OdbError, match="Invalid invariant"):
        frame.field_outputs["U"].values_array(invariant="MISES")
    with pytest.raises(ValueError):
        frame.field_outputs["S"].values_array(invariant="VOLUME")


def scalar_tresca(s):
    """The largest difference of principal stresses of each row of S."""
    s = s.reshape(-1, 6).astype(np.float64)
    t = np.empty((len(s), 3, 3))
    t[:, 0, 0], t[:, 1, 1], t[:, 2, 2] = s[:, 0], s[:, 1], s[:, 2]
    t[:, 0, 1] = t[:, 1, 0] = s[:, 3]
    t[:, 0, 2] = t[:, 2, 0] = s[:, 4]
    t[:, 1, 2] = t[:, 2, 1] = s[:, 5]
    principal = np.linalg.eigvalsh(t)
    return principal[:, 2] - principal[:, 0]


def new_field(db, name="S"):
    part = db.create_part("P")
    nodes, xyz, elements, conn = block_mesh()
    part.add_nodes(nodes, xyz)
    part.add_elements(elements, conn, "C3D8")
    instance = db.root_assembly.create_instance(part, "P-1")
    frame = db.create_step("S1").create_frame(1, 1.0)
    return frame.create_field_output(name, "", "TENSOR_3D_FULL"), instance


@pytest.mark.parametrize("layout", ["3d", "2d", "flat", "fortran", "float64", "strided"])
def test_add_data_takes_any_layout_of_the_right_size(tmp_path, layout):
    _, s = frame_values(0, len(NODES), len(ELEMENTS))
    given = {
        "3d": s,
        "2d": s.reshape(-1, 6),
        "flat": s.ravel(),
        "fortran": np.asfortranarray(s.reshape(-1, 6)),
        "float64": s.astype(np.float64),
        "strided": np.repeat(s.reshape(-1, 6), 2, axis=0)[::2],
    }[layout]
    labels = ELEMENTS.astype(np.int64)  # numpy's default integers are taken too
    with qtvodb.create(tmp_path / "w.odb") as db:
        field, instance = new_field(db)
        field.add_data(qtvodb.INTEGRATION_POINT, instance, labels, given)
        np.testing.assert_array_equal(field.bulk_data()[0].data, s.reshape(-1, 6))


def test_add_data_refuses_wrong_arrays_with_the_librarys_messages(tmp_path):
    _, s = frame_values(0, len(NODES), len(ELEMENTS))
    with qtvodb.create(tmp_path / "w.odb") as db:
        field, instance = new_field(db)
        ip = "INTEGRATION_POINT"
        with pytest.raises(qtvodb.OdbError, match=r"told of 64 rows of 6 floats \(384\), but the data array holds 383"):
            field.add_data(ip, instance, ELEMENTS, s.ravel()[:-1])
        with pytest.raises(qtvodb.OdbError, match="Incorrect tensor data length"):
            field.add_data(ip, instance, ELEMENTS, s.reshape(-1, 6)[:, :5])  # rows of 5 in a tensor
        with pytest.raises(qtvodb.OdbError, match="contain some undefined labels"):
            field.add_data(ip, instance, ELEMENTS + 100, s)
        with pytest.raises(TypeError, match="labels must hold integers, not float64"):
            field.add_data(ip, instance, ELEMENTS.astype(float), s)
        with pytest.raises(TypeError, match="data must be an array of numbers, not None"):
            field.add_data(ip, instance, ELEMENTS, None)
        with pytest.raises(TypeError, match="data must hold numbers"):
            field.add_data(ip, instance, ELEMENTS, np.array(["a"] * 384))
        with pytest.raises(ValueError, match="outside the 32-bit range"):
            field.add_data(ip, instance, ELEMENTS.astype(np.int64) + 2 ** 40, s)
        with pytest.raises(TypeError):
            field.add_data(ip, None, ELEMENTS, s)
        assert field.bulk_data() == []  # nothing was written by the refused calls


def test_complex_data_round_trips_its_conjugate(tmp_path):
    with qtvodb.create(tmp_path / "c.odb") as db:
        field, instance = new_field(db)
        _, s = frame_values(0, len(NODES), len(ELEMENTS))
        field.add_data("INTEGRATION_POINT", instance, ELEMENTS, s, conjugate_data=-s)
        block = field.bulk_data()[0]
        np.testing.assert_array_equal(block.conjugate_data, -s.reshape(-1, 6))


def test_written_fields_read_back_after_save(tmp_path):
    path = tmp_path / "saved.odb"
    _, s = frame_values(1, len(NODES), len(ELEMENTS))
    with qtvodb.create(path) as db:
        field, instance = new_field(db)
        field.add_data("INTEGRATION_POINT", instance, ELEMENTS, s)
        db.save()
    with qtvodb.open(path) as db:
        got = db.steps["S1"].frames[0].field_outputs["S"].values_array()
        np.testing.assert_array_equal(got, s.reshape(-1, 6))
