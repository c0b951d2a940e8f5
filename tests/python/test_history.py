"""History output from and to numpy arrays."""
import gc

import numpy as np
import pytest

import qtvodb


def new_output(db):
    step = db.create_step("S")
    return step.create_history_region().create_history_output("RF", "reaction")


def test_pairs_round_trip_with_double_times(tmp_path):
    path = tmp_path / "h.odb"
    times = np.linspace(0, 1, 1001)  # times are kept as doubles, values as floats
    values = np.sin(times)
    with qtvodb.create(path) as db:
        out = new_output(db)
        out.add_data(times[:500], values[:500])
        out.add_data(times[500:], values[500:])
        db.save()
    with qtvodb.open(path) as db:
        out = db.steps["S"].history_regions.values()[0].history_outputs["RF"]
        assert out.data.shape == (1001, 2) and out.data.dtype == np.float64
        np.testing.assert_array_equal(out.data[:, 0], times)
        np.testing.assert_array_equal(out.data[:, 1], values.astype(np.float32))
        t, v = out.times, out.values
    del out, db
    gc.collect()
    # The views hold the pairs they show.
    assert not t.flags.writeable and t.dtype == np.float64 and v.dtype == np.float32
    np.testing.assert_array_equal(t, times)


def test_refused_pairs_append_nothing(tmp_path):
    with qtvodb.create(tmp_path / "h.odb") as db:
        out = new_output(db)
        with pytest.raises(qtvodb.OdbError, match="History time and data array of unequal length."):
            out.add_data([1.0, 2.0], [1.0])
        with pytest.raises(qtvodb.OdbError, match="unequal length"):
            out.add_data([1.0], [1.0, 2.0])
        with pytest.raises(TypeError):
            out.add_data(None, [1.0])
        with pytest.raises(TypeError):
            out.add_data(["a"], [1.0])
        assert len(out) == 0


def test_read_only_outputs_refuse_pairs(tmp_path):
    path = tmp_path / "h.odb"
    with qtvodb.create(path) as db:
        new_output(db).add_data([1.0], [2.0])
        db.save()
    with qtvodb.open(path) as db:
        out = db.steps["S"].history_regions.values()[0].history_outputs["RF"]
        with pytest.raises(qtvodb.OdbError, match="read-only"):
            out.add_data([2.0], [3.0])
        assert len(out) == 1


def test_regions_are_made_where_they_are_asked_for(tmp_path):
    with qtvodb.create(tmp_path / "r.odb") as db:
        part = db.create_part("P")
        part.add_nodes([1, 2, 3, 4], np.eye(4, 3))
        part.add_elements([7], [[1, 2, 3, 4]], "S4")
        instance = db.root_assembly.create_instance(part, "P-1")
        step = db.create_step("S")
        made = {
            "node": step.create_history_region(instance=instance, node=2),
            "point": step.create_history_region(instance=instance, element=7, integration_point=3),
            "element": step.create_history_region(instance=instance, element=7),
            "instance": step.create_history_region("whole", instance=instance),
            "model": step.create_history_region("all"),
        }
        assert {k: r.position for k, r in made.items()} == {
            "node": qtvodb.NODAL, "point": qtvodb.INTEGRATION_POINT, "element": qtvodb.WHOLE_ELEMENT,
            "instance": qtvodb.WHOLE_PART_INSTANCE, "model": qtvodb.WHOLE_MODEL}
        assert made["node"].name == "Node P-1.2"
        with pytest.raises(ValueError, match="needs its instance"):
            step.create_history_region(node=2)
        with pytest.raises(qtvodb.OdbError, match="Invalid Node label"):
            step.create_history_region(instance=instance, node=9)
        with pytest.raises(TypeError):
            step.create_history_region(instance=instance, node="2")
