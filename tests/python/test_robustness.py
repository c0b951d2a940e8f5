"""Whatever the arguments, the module raises Python exceptions and never takes the interpreter
down: every method of every object is called with arguments of every wrong kind, on an open
writable database and again once it is closed."""
import shutil
import warnings

import numpy as np
import qtvodb

BAD = [(), (None,), ("x",), (-1,), (2 ** 40,), (1.5,), ([],), (np.zeros((2, 2, 2)),),
       (np.array(["a", "b"]),), (object(),), (None, None), ("x", None, None),
       ("NODAL", None, [1], [[1.0]]), (-1, -1, -1, -1, -1)]


def objects(db):
    step = db.steps["LOAD"]
    frame = step.frames[0]
    field = frame.field_outputs["S"]
    instance = db.root_assembly.instances["BLOCK-1"]
    region = step.history_regions.values()[0]
    return [db, db.steps, step, step.frames, frame, frame.field_outputs, field, field.bulk_data()[0],
            db.parts["BLOCK"], db.parts["BLOCK"].nodes, db.parts["BLOCK"].elements, instance,
            instance.node_sets["CORNER"], db.root_assembly, region, region.history_outputs["U2"]]


def call_everything(targets):
    calls = 0
    for obj in targets:
        names = [n for n in dir(obj) if not n.startswith("_") or n == "__getitem__"]
        for name in names:
            if name in ("close", "save"):
                continue  # the database must stay open (and unsaved) through the others
            try:
                member = getattr(obj, name)
            except Exception:
                continue  # a property that refuses its object (a closed database)
            if not callable(member) or isinstance(member, type):
                continue
            for args in BAD:
                calls += 1
                try:
                    member(*args)
                except Exception:
                    pass
    return calls


def test_wrong_arguments_raise_and_never_crash(model_path, tmp_path):
    path = tmp_path / "copy.odb"
    shutil.copyfile(model_path, path)
    db = qtvodb.open(path, read_only=False)
    targets = objects(db)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")  # what the library warns of along the way is not the point
        assert call_everything(targets) > 400
        db.close()
        call_everything(targets)
    # Still whole after all that: the file reads as it was saved.
    with qtvodb.open(model_path) as again:
        assert list(again.steps) == ["LOAD", "HOLD"]
