"""Field arithmetic, functions of fields and envelopes from Python, checked against numpy."""
import numpy as np
import pytest

import qtvodb
from conftest import FRAMES, block_mesh, frame_values, mises, write_model

NODES, _, ELEMENTS, _ = block_mesh()


def stress(f):
    return frame_values(f, len(NODES), len(ELEMENTS))[1].reshape(-1, 6)


def test_operators_with_fields_and_floats_match_numpy(db):
    frames = db.steps["LOAD"].frames
    s0, s1 = frames[0].field_outputs["S"], frames[1].field_outputs["S"]
    a, b = stress(0), stress(1)
    cases = [(s0 + s1, a + b), (s1 - s0, b - a), (2.0 * s0 + 1.0, 2 * a + 1),
             (s0 * 0.5, a * 0.5), (1.0 - s0, 1 - a), (s0 / 4.0, a / 4), (-s1, -b),
             (abs(s0), np.abs(a)), (qtvodb.sqrt(abs(s1)), np.sqrt(np.abs(b))),
             (qtvodb.power(s0, 2.0), a ** 2), (s0 ** 2.0, a ** 2)]
    for result, expected in cases:
        assert result.is_orphan
        np.testing.assert_allclose(result.values_array(), expected, rtol=1e-6)
    assert (s0 + s1).name == "S  +  S"


def test_refusals_keep_the_librarys_messages(db):
    frame = db.steps["LOAD"].frames[0]
    s, u = frame.field_outputs["S"], frame.field_outputs["U"]
    with pytest.raises(qtvodb.OdbError, match="incompatible"):
        s + u
    with pytest.raises(qtvodb.OdbError, match="Operation not valid between tensor"):
        s * s
    with pytest.raises(qtvodb.OdbError, match="Operation float / field is valid only for SCALAR"):
        1.0 / s
    with pytest.raises(qtvodb.OdbError, match="Operand must be greater than or equal to zero"):
        qtvodb.sqrt(s)
    with pytest.raises(TypeError):
        s + "S"
    with pytest.raises(TypeError):
        qtvodb.sqrt(None)


def test_fields_of_two_files_are_refused(db, tmp_path):
    other = str(tmp_path / "other.odb")
    write_model(other)
    with qtvodb.open(other) as second:
        with pytest.raises(ValueError, match="two database files"):
            db.steps["LOAD"].frames[0].field_outputs["S"] - second.steps["LOAD"].frames[0].field_outputs["S"]


def test_envelope_over_frames_by_mises_and_by_component(db):
    fields = [frame.field_outputs["S"] for frame in db.steps["LOAD"].frames]
    by_frame = np.stack([mises(stress(f)) for f in range(FRAMES)])
    envelope, indices = qtvodb.max_envelope(fields, invariant="MISES")
    np.testing.assert_allclose(envelope.values_array().ravel(), by_frame.max(axis=0), rtol=1e-5)
    np.testing.assert_array_equal(indices.values_array().ravel(), by_frame.argmax(axis=0))
    s11 = np.stack([stress(f)[:, 0] for f in range(FRAMES)])
    low, where = qtvodb.min_envelope(fields, component="S11")
    np.testing.assert_array_equal(low.values_array().ravel(), s11.min(axis=0))
    np.testing.assert_array_equal(where.values_array().ravel(), s11.argmin(axis=0))
    with pytest.raises(ValueError):
        qtvodb.max_envelope([])
    with pytest.raises(qtvodb.OdbError, match="SCALAR data expected"):
        qtvodb.max_envelope(fields)
