"""Walking a database with Python idioms: mappings, the frame sequence, model arrays, reprs."""
import numpy as np
import pytest

import qtvodb
from conftest import FRAMES, block_mesh


def test_steps_keep_their_order_and_act_as_a_mapping(db):
    steps = db.steps
    assert list(steps) == ["LOAD", "HOLD"]  # creation order, not name order
    assert len(steps) == 2 and "LOAD" in steps and "NONE" not in steps and 3 not in steps
    assert [s.name for s in steps.values()] == ["LOAD", "HOLD"]
    assert [k for k, _ in steps.items()] == steps.keys()
    assert steps.get("NONE") is None
    with pytest.raises(KeyError):
        steps["NONE"]
    hold = steps["HOLD"]
    assert (hold.previous_step_name, hold.total_time, hold.procedure) == ("LOAD", 1.0, "*STATIC")
    assert repr(steps) == "<qtvodb.Steps ['LOAD', 'HOLD']>"


def test_frames_are_a_sequence_with_negative_indices_and_slices(db):
    frames = db.steps["LOAD"].frames
    assert len(frames) == FRAMES
    assert [f.index for f in frames] == [0, 1, 2]
    assert frames[-1].index == 2 and frames[-3].index == 0
    assert [f.increment_number for f in frames[::2]] == [1, 3]
    assert [f.index for f in frames[::-1]] == [2, 1, 0]
    assert frames[1].value == 1.0 and frames[1].description == "Increment 2"
    for bad in (3, -4):
        with pytest.raises(qtvodb.OdbError, match="Incorrect index for frame."):
            frames[bad]
    with pytest.raises(TypeError):
        frames["0"]
    assert len(db.steps["HOLD"].frames) == 0 and list(db.steps["HOLD"].frames) == []


def test_frames_are_found_by_value(db):
    step = db.steps["LOAD"]
    assert step.get_frame(0.9).index == 1
    assert step.get_frame(0.9, "AFTER").index == 1
    assert step.get_frame(0.9, qtvodb.BEFORE).index == 0
    with pytest.raises(qtvodb.OdbError, match="Frame not found"):
        step.get_frame(0.9, "EXACT")
    assert db.get_frame(1.5).index == 2


def test_field_outputs_by_name(db):
    outputs = db.steps["LOAD"].frames[0].field_outputs
    assert sorted(outputs) == ["S", "U"]
    s = outputs["S"]
    assert (s.name, s.type, s.width) == ("S", qtvodb.TENSOR_3D_FULL, 6)
    assert s.component_labels == ["S11", "S22", "S33", "S12", "S13", "S23"]
    assert qtvodb.MISES in s.valid_invariants and not s.is_orphan
    assert outputs["U"].component_labels == ["U1", "U2", "U3"]


def test_parts_and_instances_give_their_mesh_as_arrays(db):
    labels, xyz, elements, conn = block_mesh()
    part = db.parts["BLOCK"]
    instance = db.root_assembly.instances["BLOCK-1"]
    assert instance.part_name == "BLOCK"
    for entity in (part, instance):
        nodes = entity.nodes
        assert len(nodes) == len(labels)
        assert nodes.labels.dtype == np.int32 and nodes.coordinates.dtype == np.float32
        np.testing.assert_array_equal(nodes.labels, labels)
        np.testing.assert_array_equal(nodes.coordinates, xyz)
        els = entity.elements
        assert len(els) == len(elements)
        np.testing.assert_array_equal(els.labels, elements)
        np.testing.assert_array_equal(els.connectivity, conn)
        np.testing.assert_array_equal(els.offsets, np.arange(0, 8 * len(elements) + 1, 8))
        assert els.types == ["C3D8"] * len(elements)


def test_mixed_elements_give_flat_connectivity_with_offsets(tmp_path):
    with qtvodb.create(tmp_path / "mixed.odb") as db:
        part = db.create_part("P")
        part.add_nodes([1, 2, 3, 4], np.eye(4, 3))
        part.add_elements([1], [[1, 2, 3, 4]], "S4")
        part.add_elements([2], [[1, 2, 3]], "S3")
        els = part.elements
        np.testing.assert_array_equal(els.flat_connectivity, [1, 2, 3, 4, 1, 2, 3])
        np.testing.assert_array_equal(els.offsets, [0, 4, 7])
        assert els.types == ["S4", "S3"]
        with pytest.raises(ValueError, match="different numbers of nodes"):
            els.connectivity


def test_sets_give_their_labels(db):
    instance = db.root_assembly.instances["BLOCK-1"]
    corner = instance.node_sets["CORNER"]
    assert corner.type == qtvodb.NODE_SET
    np.testing.assert_array_equal(corner.node_labels(), [1, 3])
    np.testing.assert_array_equal(instance.element_sets["FIRST"].element_labels(), [1])
    with pytest.raises(qtvodb.OdbError, match="Invalid mesh name."):
        corner.node_labels("OTHER-1")


def test_history_regions_and_outputs(db):
    regions = db.steps["LOAD"].history_regions
    assert list(regions) == ["Node BLOCK-1.5"]
    region = regions["Node BLOCK-1.5"]
    assert region.position == qtvodb.NODAL
    u2 = region.history_outputs["U2"]
    assert (u2.name, u2.description, len(u2)) == ("U2", "tip", 3)
    assert u2.data.dtype == np.float64 and u2.data.shape == (3, 2)
    np.testing.assert_array_equal(u2.data, [[0.5, -0.25], [1.0, -0.5], [1.5, -0.75]])


def test_every_object_says_what_it_is_in_one_line(db):
    step = db.steps["LOAD"]
    frame = step.frames[1]
    instance = db.root_assembly.instances["BLOCK-1"]
    expected = {
        step: "<qtvodb.Step 'LOAD' *STATIC, 3 frames>",
        step.frames: "<qtvodb.Frames 3>",
        frame: "<qtvodb.Frame 1: increment 2, value 1.0>",
        frame.field_outputs["S"]: "<qtvodb.FieldOutput 'S' TENSOR_3D_FULL, 6 components>",
        frame.field_outputs["S"].bulk_data()[0]:
            "<qtvodb.BulkData C3D8 INTEGRATION_POINT of 'BLOCK-1': 64 x 6>",
        frame.field_outputs["U"].bulk_data()[0]: "<qtvodb.BulkData nodes NODAL of 'BLOCK-1': 27 x 3>",
        db.parts["BLOCK"]: "<qtvodb.Part 'BLOCK': 27 nodes, 8 elements>",
        instance: "<qtvodb.Instance 'BLOCK-1': 27 nodes, 8 elements>",
        instance.nodes: "<qtvodb.Nodes 27>",
        instance.elements: "<qtvodb.Elements 8>",
        instance.node_sets["CORNER"]: "<qtvodb.Set 'CORNER' NODE_SET>",
        db.root_assembly: "<qtvodb.Assembly 'Assembly': 1 instance>",
        step.history_regions["Node BLOCK-1.5"]: "<qtvodb.HistoryRegion 'Node BLOCK-1.5': 1 output>",
        step.history_regions["Node BLOCK-1.5"].history_outputs["U2"]: "<qtvodb.HistoryOutput 'U2': 3 pairs>",
    }
    for obj, text in expected.items():
        assert repr(obj) == text
