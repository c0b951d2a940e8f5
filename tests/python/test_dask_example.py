"""The Dask example of docs/python.md, docs/examples/parameter_study.py, on a study of 20 runs."""
import os
import subprocess
import sys

import numpy as np
import pytest

import qtvodb
from conftest import FRAMES, POINTS, block_mesh, frame_values, mises

EXAMPLES = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "examples")
sys.path.insert(0, EXAMPLES)
dask = pytest.importorskip("dask")
import parameter_study  # noqa: E402  (found once its folder is on the path)

RUNS = 20


def write_run(path, scale):
    """A run of the study: the block of conftest, its stresses scaled by the run's parameter."""
    nodes, xyz, elements, conn = block_mesh()
    with qtvodb.create(path) as db:
        part = db.create_part("BLOCK")
        part.add_nodes(nodes, xyz)
        part.add_elements(elements, conn, "C3D8")
        instance = db.root_assembly.create_instance(part, "BLOCK-1")
        step = db.create_step("LOAD")
        for f in range(FRAMES):
            _, s = frame_values(f, len(nodes), len(elements))
            step.create_frame(f + 1, f + 1.0).create_field_output("S", "", "TENSOR_3D_FULL").add_data(
                "INTEGRATION_POINT", instance, elements, s * scale)
        db.save()


@pytest.fixture(scope="module")
def study(tmp_path_factory):
    folder = tmp_path_factory.mktemp("study")
    paths, expected = [], []
    _, _, elements, _ = block_mesh()
    for run in range(RUNS):
        scale = 1 + 0.1 * ((run * 7) % RUNS)  # the largest is not the last run
        paths.append(str(folder / ("run%02d.odb" % run)))
        write_run(paths[-1], scale)
        expected.append([mises(frame_values(f, 27, len(elements))[1] * scale).max() for f in range(FRAMES)])
    return paths, np.array(expected)


@pytest.mark.parametrize("scheduler", ["threads", "processes"])
def test_one_task_per_file_and_frame_gives_the_studys_maxima(study, scheduler):
    paths, expected = study
    _, _, elements, _ = block_mesh()
    stresses = parameter_study.study(paths)
    assert stresses.shape == (RUNS, FRAMES, len(elements) * POINTS)
    assert stresses.numblocks == (RUNS, FRAMES, 1)
    per_frame = stresses.max(axis=2).compute(scheduler=scheduler)
    np.testing.assert_allclose(per_frame, expected, rtol=1e-5)


def test_the_example_runs_as_a_program(study):
    paths, expected = study
    out = subprocess.run([sys.executable, os.path.join(EXAMPLES, "parameter_study.py")] + paths,
                         check=True, capture_output=True, text=True).stdout
    worst = int(expected.max(axis=1).argmax())
    assert out.splitlines()[-1] == "largest of the study: %.1f in %s" % (expected.max(), paths[worst])
