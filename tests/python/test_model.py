"""Writing the mesh from numpy arrays: layouts taken, counts checked in the library's words."""
import numpy as np
import pytest

import qtvodb
from conftest import block_mesh


@pytest.fixture
def part(tmp_path):
    with qtvodb.create(tmp_path / "m.odb") as db:
        yield db.create_part("P")


def test_nodes_and_elements_in_any_layout_read_back(part):
    labels, xyz, elements, conn = block_mesh()
    part.add_nodes(labels.astype(np.int64), np.asfortranarray(xyz.astype(np.float64)))
    part.add_elements(list(elements), conn.ravel(), "C3D8", set_name="ALL")
    np.testing.assert_array_equal(part.nodes.coordinates, xyz)
    np.testing.assert_array_equal(part.elements.connectivity, conn)
    np.testing.assert_array_equal(part.element_sets["ALL"].element_labels(), elements)


def test_counts_are_checked_before_anything_is_written(part):
    labels, xyz, elements, conn = block_mesh()
    with pytest.raises(qtvodb.OdbError, match=r"addNodes\(\) was given 27 node labels and 80 coordinates"):
        part.add_nodes(labels, xyz.ravel()[:-1])
    with pytest.raises(qtvodb.OdbError, match="Duplicate node label 1"):
        part.add_nodes(np.ones(27, np.int32), xyz)
    assert len(part.nodes) == 0
    part.add_nodes(labels, xyz)
    with pytest.raises(qtvodb.OdbError, match=r"addElements\(\) was given 8 element labels and 63"):
        part.add_elements(elements, conn.ravel()[:-1], "C3D8")
    with pytest.raises(qtvodb.OdbError, match="refers to node 99"):
        part.add_elements([1], [[1, 2, 3, 4, 5, 6, 7, 99]], "C3D8")
    with pytest.raises(TypeError, match="connectivity must hold integers"):
        part.add_elements(elements, conn.astype(np.float32), "C3D8")
    with pytest.raises(TypeError):
        part.add_elements(elements, conn, None)
    assert len(part.elements) == 0


def test_an_unknown_element_type_is_a_user_element_with_a_warning(part):
    part.add_nodes([1, 2], [[0, 0, 0], [1, 0, 0]])
    with pytest.warns(qtvodb.OdbWarning, match="MYBAR"):
        part.add_elements([1], [[1, 2]], "MYBAR")
    assert part.elements.types == ["MYBAR"]
