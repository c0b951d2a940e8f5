"""Opening, creating, saving and closing databases, and how errors reach Python."""
import pathlib
import warnings

import pytest

import qtvodb


def test_open_is_read_only_by_default_and_refuses_writes(model_path):
    with qtvodb.open(model_path) as db:
        assert db.read_only and db.is_open
        assert (db.title, db.description) == ("block", "a test block")
        with pytest.raises(qtvodb.OdbError, match="read-only"):
            db.create_step("MORE")


def test_context_manager_closes_and_closed_database_raises(model_path):
    with qtvodb.open(pathlib.Path(model_path)) as db:
        step = db.steps["LOAD"]
    assert not db.is_open
    assert db.path == model_path  # still answers once closed
    assert repr(db) == "<qtvodb.Database %r read-only, closed>" % model_path
    with pytest.raises(qtvodb.OdbError, match="The database is closed."):
        db.steps
    db.close()  # closing again does nothing
    # A step reached before the close answers from what it read.
    assert step.name == "LOAD"


def test_exit_on_an_exception_closes_without_saving(tmp_path):
    path = str(tmp_path / "unsaved.odb")
    with qtvodb.create(path, "unsaved") as db:
        db.create_step("FIRST")
        db.save()
    with pytest.raises(RuntimeError):
        with qtvodb.open(path, read_only=False) as db:
            db.create_step("SECOND")
            raise RuntimeError("leave")
    assert not db.is_open
    with qtvodb.open(path) as db:
        assert list(db.steps) == ["FIRST"]


def test_create_replaces_a_file_and_registers_its_name(tmp_path):
    path = tmp_path / "new.odb"
    path.write_bytes(b"not a database")
    with qtvodb.create(path, "named", "title", "text") as db:
        assert (db.name, db.title, db.description) == ("named", "title", "text")
        assert not db.read_only
        with pytest.raises(qtvodb.OdbError, match="already exists"):
            qtvodb.create(tmp_path / "other.odb", "named")
        db.save()
    with qtvodb.open(path) as db:
        assert db.title == "title"


def test_library_errors_carry_message_and_code(tmp_path):
    assert qtvodb.OdbError.__name__ == "OdbError" and issubclass(qtvodb.OdbError, Exception)
    bad = tmp_path / "garbage.odb"
    bad.write_bytes(b"\0" * 4096)
    with pytest.raises(qtvodb.OdbError) as caught:
        qtvodb.open(bad)
    assert str(bad) in str(caught.value) and isinstance(caught.value.code, int)
    with pytest.raises(qtvodb.OdbError):
        qtvodb.open(tmp_path / "missing.odb")


@pytest.mark.parametrize("args", [(None,), (42,), (b"bytes.odb",)])
def test_bad_paths_are_type_errors(args):
    with pytest.raises(TypeError):
        qtvodb.open(*args)


def test_saving_a_read_only_database_warns(model_path):
    with qtvodb.open(model_path) as db:
        with pytest.warns(qtvodb.OdbWarning, match="read-only"):
            db.save()


def test_enumerations_are_taken_by_value_or_name_and_checked(tmp_path):
    with qtvodb.create(tmp_path / "e.odb") as db:
        assert db.create_part("A", qtvodb.TWO_D_PLANAR).embedded_space == qtvodb.Dimension.TWO_D_PLANAR
        assert db.create_part("B", "AXISYMMETRIC").embedded_space == qtvodb.AXISYMMETRIC
        with pytest.raises(ValueError, match="unknown name 'FOUR_D'"):
            db.create_part("C", "FOUR_D")
        with pytest.raises(TypeError, match="dimension must be a qtvodb.Dimension"):
            db.create_part("C", None)
        with pytest.raises(TypeError):
            db.create_part(None)
        assert list(db.parts) == ["A", "B"]


def test_openings_of_one_file_share_it_until_the_last_is_closed(model_path):
    first = qtvodb.open(model_path)
    with warnings.catch_warnings():
        warnings.simplefilter("error")  # a read-only opening shares the file without a warning
        second = qtvodb.open(model_path)
    with pytest.warns(qtvodb.OdbWarning, match="remain readOnly"):
        qtvodb.open(model_path, read_only=False).close()  # a write opening is told it cannot
    frames = second.steps["LOAD"].frames
    first.close()
    assert not first.is_open and second.is_open
    with pytest.raises(qtvodb.OdbError, match="The database is closed."):
        first.steps
    assert len(frames) == 3 and list(second.steps) == ["LOAD", "HOLD"]
    second.close()
    assert not second.is_open
    with qtvodb.open(model_path) as third:  # the file opens again once every opening is closed
        assert third.is_open


def test_an_open_refused_by_a_warnings_filter_leaves_no_opening(model_path):
    with warnings.catch_warnings():
        warnings.simplefilter("error", qtvodb.OdbWarning)
        with qtvodb.open(model_path):
            with pytest.raises(qtvodb.OdbWarning, match="remain readOnly"):
                qtvodb.open(model_path, read_only=False)  # warns that it shares a read-only one
        with qtvodb.open(model_path) as again:  # a warning here: the refused opening stayed
            assert again.is_open
