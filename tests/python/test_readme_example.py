"""The Python example of README.md, run on the demo's file: it must print the demo's own
largest Mises stress."""
import os
import re
import subprocess
import sys

import pytest

README = os.path.join(os.path.dirname(__file__), "..", "..", "README.md")


def readme_example():
    text = open(README, encoding="utf-8").read()
    found = re.search(r"<!-- readme-python-example[^>]*-->\n```python\n(.*?)```", text, re.S)
    assert found, "README.md has no marked Python example"
    return found.group(1)


def test_the_example_is_ten_lines_or_so():
    assert len(readme_example().strip().splitlines()) <= 11


@pytest.mark.skipif("QTVODB_DEMO" not in os.environ, reason="the demo program is not built")
def test_the_example_prints_the_demos_largest_mises_stress(tmp_path):
    demo = subprocess.run([os.environ["QTVODB_DEMO"]], cwd=tmp_path, check=True,
                          capture_output=True, text=True).stdout
    expected = re.search(r"largest Mises stress ([0-9.]+)", demo).group(1)
    script = tmp_path / "example.py"
    script.write_text(readme_example())
    out = subprocess.run([sys.executable, str(script)], cwd=tmp_path, check=True,
                         capture_output=True, text=True).stdout
    assert out == "largest Mises stress %s\n" % expected
