#!/usr/bin/env python3
"""Checks that the layers of the library stay apart: public headers -> object model -> store.

Usage: check_layers.py ROOT CHECK [ARGS...]; exits 1, naming each offending file, when the
check fails. The checks:
  store-includes         no file of store/ includes a header of odb/impl, oif/impl or dbc/sch/impl
  public-headers         no public header names a store type or includes an internal header
  sql-in-store           no file of odb/, oif/ or dbc/ runs SQL or calls SQLite
  header-budget CXX N    #include <odb_API.h> preprocesses to at most N lines
  exported-symbols LIB   the shared library exports no store_ symbol
  python-module          the Python module (python/) includes no internal header: a program
                         over the public interface, like any other
  test-names             each unit test file mirrors a source file of the same folder, and its
                         suites are named after it (odb_Step_test.cpp: Step, StepFile ...;
                         store_Mesh_test.cpp: StoreMesh ...)
"""
import os
import re
import subprocess
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.M)


def sources(root, *folders):
    for folder in folders:
        for dirpath, _, names in os.walk(os.path.join(root, folder)):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    path = os.path.join(dirpath, name)
                    with open(path, encoding="utf-8") as f:
                        yield os.path.relpath(path, root), f.read()


def headers_of(root, *folders):
    return {name for folder in folders for name in os.listdir(os.path.join(root, folder))
            if name.endswith(".h")}


def store_includes(root):
    internal = headers_of(root, "odb/impl", "oif/impl", "dbc/sch/impl")
    return [f"{path} includes {inc}" for path, text in sources(root, "store")
            for inc in INCLUDE.findall(text) if os.path.basename(inc) in internal]


def public_headers(root):
    internal = headers_of(root, "odb/impl", "oif/impl", "dbc/sch/impl", "store")
    found = []
    for path, text in sources(root, "include"):
        found += [f"{path} includes {inc}" for inc in INCLUDE.findall(text)
                  if os.path.basename(inc) in internal]
        names = sorted(set(re.findall(r"\w*store_\w*", text)))
        found += [f"{path} names {word}" for word in names]
    return found


def python_module(root):
    internal = headers_of(root, "odb/impl", "dbc/sch/impl", "store")
    return [f"{path} includes {inc}" for path, text in sources(root, "python")
            for inc in INCLUDE.findall(text) if os.path.basename(inc) in internal]


def sql_in_store(root):
    return [path for path, text in sources(root, "odb", "oif", "dbc")
            if re.search(r"sqlite3|Sql\(", text)]


def header_budget(root, compiler, budget):
    out = subprocess.run([compiler, "-std=c++17", "-x", "c++", "-E", "-I",
                          os.path.join(root, "include"), "-"],
                         input="#include <odb_API.h>\n", capture_output=True, text=True,
                         check=True).stdout
    lines = out.count("\n")
    print(f"odb_API.h preprocesses to {lines} lines (budget {budget})")
    return [f"odb_API.h preprocesses to {lines} lines, over the budget of {budget}"] \
        if lines > int(budget) else []


def exported_symbols(root, library):
    out = subprocess.run(["nm", "-D", "--defined-only", "-C", library], capture_output=True,
                         text=True, check=True).stdout
    return [line for line in out.splitlines() if "store_" in line]


TESTED_FOLDERS = ("include", "uti", "store", "odb", "oif", "dbc")
# The object model's and the schema conversion's prefixes are left out of suite names; the
# others stay, so that store_Mesh and odb_Mesh do not share a suite.
DROPPED_PREFIXES = ("odb", "dbcS")


def suite_prefix(test_file):
    prefix, rest = os.path.basename(test_file)[: -len("_test.cpp")].split("_", 1)
    return rest if prefix in DROPPED_PREFIXES else prefix[0].upper() + prefix[1:] + rest


def test_names(root):
    found = []
    for path, text in sources(root, *(os.path.join("tests", f) for f in TESTED_FOLDERS)):
        if not path.endswith("_test.cpp"):
            continue
        folder = os.path.dirname(os.path.relpath(path, "tests"))
        stem = os.path.basename(path)[: -len("_test.cpp")]
        candidates = [os.path.join(root, folder), os.path.join(root, "include")]
        if not any(name.startswith(stem.split("_")[0] + "_") and stem.startswith(name.rsplit(".", 1)[0])
                   for d in candidates if os.path.isdir(d) for name in os.listdir(d)):
            found.append(f"{path} mirrors no source of {folder} or include")
        expected = suite_prefix(path)
        for suite in sorted(set(re.findall(r"^TEST(?:_F|_P)?\((\w+),", text, re.M))):
            rest = suite[len(expected):]
            if not suite.startswith(expected) or (rest and not rest[0].isupper()):
                found.append(f"{path}: suite {suite} is not named after {expected}")
    return found


CHECKS = {"store-includes": store_includes, "public-headers": public_headers,
          "sql-in-store": sql_in_store, "python-module": python_module, "header-budget": header_budget,
          "exported-symbols": exported_symbols, "test-names": test_names}

if __name__ == "__main__":
    root, check, args = sys.argv[1], sys.argv[2], sys.argv[3:]
    problems = CHECKS[check](root, *args)
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)
