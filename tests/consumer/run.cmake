# Checks that the library works as an installed package, from a program outside its tree.
#
#   cmake -DSTEP=install   -DBUILD_DIR=<library build> -DPREFIX=<dir> -P run.cmake
#   cmake -DSTEP=cmake     -DPREFIX=<dir> -DWORK_DIR=<dir> -DCONSUMER_DIR=<dir> -DCXX=<compiler>
#                          -DGENERATOR=<generator> -DBUILD_TYPE=<type> -DVERSION=<x.y.z>
#                          [-DEXTRA_FLAGS="<flags>"] -P run.cmake
#   cmake -DSTEP=pkgconfig -DPREFIX=<dir> -DWORK_DIR=<dir> -DCONSUMER_DIR=<dir> -DCXX=<compiler>
#                          -DPKG_CONFIG=<pkg-config> -DVERSION=<x.y.z> [-DEXTRA_FLAGS="<flags>"]
#                          -P run.cmake
#   cmake -DSTEP=python    -DPREFIX=<dir> -DWORK_DIR=<dir> -DPYTHON=<python3> -DPYTHON_DIR=<dir>
#                          -DVERSION=<x.y.z> [-DEXTRA_ENV="<VAR=value;...>"] -P run.cmake
#
# STEP=install puts a fresh copy of the built library into PREFIX; the other two steps build
# tests/consumer against that copy, one through find_package and one through pkg-config, and
# run it; STEP=python imports the installed Python module from PREFIX/PYTHON_DIR alone and
# writes and reads a database with it. EXTRA_FLAGS carries compile and link flags the library itself was built with that a
# program linking it must share (the sanitizers), EXTRA_ENV what the interpreter needs to load a module built with them.
cmake_minimum_required(VERSION 3.18)

foreach(var STEP PREFIX)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "run.cmake: ${var} is not set")
  endif()
endforeach()
separate_arguments(extra_flags UNIX_COMMAND "${EXTRA_FLAGS}")

# Runs a command, in WORK_DIR when there is one (the consumers write their database in the
# folder they run in, and the steps run at the same time); on failure stops with the command
# line and everything it printed.
function(run_step what)
  set(where)
  if(DEFINED WORK_DIR)
    set(where WORKING_DIRECTORY "${WORK_DIR}")
  endif()
  execute_process(COMMAND ${ARGN} ${where} RESULT_VARIABLE rc OUTPUT_VARIABLE out
                  ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " cmdline "${ARGN}")
    message(FATAL_ERROR "${what} failed (${rc}):\n  ${cmdline}\n${out}${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

# Runs the consumer and checks it named the version it was built against.
function(run_consumer exe)
  run_step("running the consumer" ${exe})
  message(STATUS "${step_output}")
  if(NOT step_output MATCHES "consumer linked against QTVodb ${VERSION}\n")
    message(FATAL_ERROR "consumer printed '${step_output}', expected version ${VERSION}")
  endif()
endfunction()

if(STEP STREQUAL "install")
  if(NOT EXISTS "${BUILD_DIR}/CMakeCache.txt")
    message(FATAL_ERROR "${BUILD_DIR} is not a configured build tree")
  endif()
  file(REMOVE_RECURSE "${PREFIX}")
  run_step("installing into ${PREFIX}" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}")
  # The odb tool is installed with the library and finds it from its own place.
  run_step("running the installed odb tool" "${PREFIX}/bin/odb" --version)
  return()
endif()

if(NOT EXISTS "${PREFIX}")
  message(FATAL_ERROR "nothing installed in ${PREFIX}; the install_prefix test runs first")
endif()
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")

if(STEP STREQUAL "cmake")
  string(REPLACE ";" " " flags "${extra_flags}")
  run_step("configuring the consumer" "${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${WORK_DIR}"
    -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
    "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_FLAGS=${flags}"
    "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
  # A copy installed elsewhere on the machine must not stand in for the one under test.
  file(STRINGS "${WORK_DIR}/CMakeCache.txt" found_dir REGEX "^QTVodb_DIR:")
  string(REGEX REPLACE "^[^=]*=" "" found_dir "${found_dir}")
  get_filename_component(real_prefix "${PREFIX}" REALPATH)
  get_filename_component(found_dir "${found_dir}" REALPATH)
  string(FIND "${found_dir}" "${real_prefix}/" at)
  if(NOT at EQUAL 0)
    message(FATAL_ERROR "find_package took QTVodb from ${found_dir}, not from ${real_prefix}")
  endif()
  run_step("building the consumer" "${CMAKE_COMMAND}" --build "${WORK_DIR}")
  run_consumer("${WORK_DIR}/consumer")

elseif(STEP STREQUAL "pkgconfig")
  # The library directory is lib/, lib64/ or lib/<multiarch>/ depending on the platform.
  file(GLOB_RECURSE pc_files "${PREFIX}/QTVodb.pc")
  list(LENGTH pc_files n)
  if(NOT n EQUAL 1)
    message(FATAL_ERROR "expected one QTVodb.pc under ${PREFIX}, found ${n}: ${pc_files}")
  endif()
  get_filename_component(pc_dir "${pc_files}" DIRECTORY)
  set(ENV{PKG_CONFIG_PATH} "${pc_dir}")

  # The .pc file locates its prefix from where it lies, so its libdir must be inside PREFIX.
  run_step("pkg-config libdir" "${PKG_CONFIG}" --variable=libdir QTVodb)
  string(STRIP "${step_output}" libdir)
  get_filename_component(libdir "${libdir}" REALPATH)
  get_filename_component(real_prefix "${PREFIX}" REALPATH)
  string(FIND "${libdir}" "${real_prefix}/" at)
  if(NOT at EQUAL 0 OR NOT EXISTS "${libdir}")
    message(FATAL_ERROR "QTVodb.pc names libdir ${libdir}, outside ${real_prefix}")
  endif()

  run_step("pkg-config flags" "${PKG_CONFIG}" --cflags --libs QTVodb)
  separate_arguments(pc_flags UNIX_COMMAND "${step_output}")
  run_step("compiling the consumer" "${CXX}" -std=c++17 ${extra_flags}
    "${CONSUMER_DIR}/main.cpp" ${pc_flags} -o "${WORK_DIR}/consumer")
  set(ENV{LD_LIBRARY_PATH} "${libdir}")
  run_consumer("${WORK_DIR}/consumer")

elseif(STEP STREQUAL "python")
  # Only the prefix is on the module path, and no library path is set: the module must be the
  # installed one and find the installed library through its RPATH.
  set(script [=[
import os, sys
import numpy as np
import qtvodb
prefix = os.path.realpath(sys.argv[1])
assert os.path.realpath(qtvodb.__file__).startswith(prefix + os.sep), qtvodb.__file__
path = os.path.join(sys.argv[2], "installed.odb")
with qtvodb.create(path) as db:
    part = db.create_part("P")
    part.add_nodes([1, 2], [[0, 0, 0], [1, 0, 0]])
    frame = db.create_step("S").create_frame(1, 1.0)
    instance = db.root_assembly.create_instance(part, "P-1")
    frame.create_field_output("T").add_data("NODAL", instance, [1, 2], [[0.5], [1.5]])
    db.save()
with qtvodb.open(path) as db:
    values = db.steps["S"].frames[0].field_outputs["T"].values_array()
assert values.tolist() == [[0.5], [1.5]], values
print("python module of QTVodb", qtvodb.__version__)
]=])
  file(MAKE_DIRECTORY "${WORK_DIR}")
  file(WRITE "${WORK_DIR}/use_module.py" "${script}")
  run_step("importing the installed module" "${CMAKE_COMMAND}" -E env --unset=LD_LIBRARY_PATH
    "PYTHONPATH=${PREFIX}/${PYTHON_DIR}" ${EXTRA_ENV} "${PYTHON}" "${WORK_DIR}/use_module.py"
    "${PREFIX}" "${WORK_DIR}")
  if(NOT step_output MATCHES "python module of QTVodb ${VERSION}
")
    message(FATAL_ERROR "the module printed '${step_output}', expected version ${VERSION}")
  endif()

else()
  message(FATAL_ERROR "run.cmake: unknown STEP '${STEP}'")
endif()
