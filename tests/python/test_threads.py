"""Threads: long reads let the GIL go, several files are read at once, one file is shared safely."""
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import qtvodb
from conftest import FRAMES, block_mesh, frame_values, mises, write_model

NODES, _, ELEMENTS, _ = block_mesh()


def max_mises(path):
    with qtvodb.open(path) as db:
        return [f.field_outputs["S"].values_array(invariant="MISES").max() for f in db.steps["LOAD"].frames]


def expected_max_mises():
    return [mises(frame_values(f, len(NODES), len(ELEMENTS))[1]).max() for f in range(FRAMES)]


# Each file is read by several threads at once, which share its opening without a warning.
@pytest.mark.filterwarnings("error")
def test_threads_read_several_files_at_once(tmp_path):
    paths = [str(tmp_path / ("run%d.odb" % i)) for i in range(6)]
    for p in paths:
        write_model(p)
    with ThreadPoolExecutor(4) as pool:
        results = list(pool.map(max_mises, paths * 3))
    for r in results:
        np.testing.assert_allclose(r, expected_max_mises(), rtol=1e-5)


def test_threads_share_one_database(model_path):
    with qtvodb.open(model_path) as db:
        frames = list(db.steps["LOAD"].frames)

        def read(i):
            frame = frames[i % FRAMES]
            block = frame.field_outputs["S"].bulk_data()[0]
            return i % FRAMES, block.data.copy(), frame.field_outputs["U"].values_array()

        with ThreadPoolExecutor(4) as pool:
            for f, s, u in pool.map(read, range(60)):
                want_u, want_s = frame_values(f, len(NODES), len(ELEMENTS))
                np.testing.assert_array_equal(s, want_s.reshape(-1, 6))
                np.testing.assert_array_equal(u, want_u)


@pytest.fixture(scope="module")
def big_path(tmp_path_factory):
    path = tmp_path_factory.mktemp("big") / "big.odb"
    count = 400_000  # locations of 6 floats: long enough a read to see other threads run within
    with qtvodb.create(path) as db:
        part = db.create_part("P")
        part.add_nodes(np.arange(1, count + 1), np.zeros((count, 3)))
        instance = db.root_assembly.create_instance(part, "P-1")
        field = db.create_step("S").create_frame(1, 1.0).create_field_output("T", "", "TENSOR_3D_PLANAR")
        field.add_data("NODAL", instance, np.arange(1, count + 1), np.ones((count, 4), np.float32))
        db.save()
    return path


def longest_pause(busy, while_busy=lambda: None):
    """Runs `busy` in a thread and `while_busy` here, while another thread counts: the longest
    pause of the counting thread during `busy`, and how long `busy` took."""
    window, ticks = [], []

    def run():
        start = time.perf_counter()
        busy()
        window.extend([start, time.perf_counter()])

    worker = threading.Thread(target=run)
    counter = threading.Thread(target=lambda: [ticks.append(time.perf_counter()) for _ in iter(
        lambda: worker.is_alive() or not window, False)])
    worker.start()
    counter.start()
    while_busy()
    worker.join()
    counter.join()
    start, end = window
    inside = [t for t in ticks if start <= t <= end]
    return np.diff([start] + inside + [end]).max(), end - start


def test_a_long_read_lets_other_threads_run(big_path):
    with qtvodb.open(big_path) as db:
        field = db.steps["S"].frames[0].field_outputs["T"]
        pause, took = longest_pause(lambda: field.values_array(invariant="MISES"))
    # Holding the GIL through the read would leave the counter a pause as long as the read.
    assert pause < 0.5 * took, (pause, took)


def test_waiting_for_a_file_another_thread_reads_lets_other_threads_run(big_path):
    with qtvodb.open(big_path) as db:
        field = db.steps["S"].frames[0].field_outputs["T"]

        def ask_meanwhile():
            time.sleep(0.005)  # the reader is in its read by now (or done: then nothing waits)
            assert field.name == "T"  # waits for the reader's mutex

        pause, took = longest_pause(lambda: field.values_array(invariant="MISES"), ask_meanwhile)
    assert pause < 0.5 * took, (pause, took)
