# Entry points for people and CI; the build itself is CMake's. Two cores: builds use -j2.
JOBS    ?= 2
RELEASE := build/release
DEBUG   := build/debug
FORMAT_DIRS := $(wildcard include uti odb store oif tests examples bench python)

.PHONY: help setup release-config release debug demo test bench install clean format

help:
	@echo "make demo              install build packages, build Release, run the example program and odb info"
	@echo "make test              install build packages, build Debug with sanitizers, run all tests"
	@echo "make bench             build Release and run the benchmark programs"
	@echo "make install PREFIX=d  build Release and install headers, library, the odb tool, CMake and pkg-config files"
	@echo "make format            clang-format the sources in place"
	@echo "make clean             remove build/"

setup:
	@scripts/setup.sh

release-config: setup
	cmake -S . -B $(RELEASE) -DCMAKE_BUILD_TYPE=Release

release: release-config
	cmake --build $(RELEASE) -j$(JOBS)

debug: setup
	cmake -S . -B $(DEBUG) -DCMAKE_BUILD_TYPE=Debug -DQTVODB_SANITIZE=ON
	cmake --build $(DEBUG) -j$(JOBS)

# The demo builds only the library, the example program and the odb tool, not the tests or
# benchmarks; it ends by showing what the example wrote.
demo: release-config
	cmake --build $(RELEASE) -j$(JOBS) --target odb_demo odb
	$(RELEASE)/examples/odb_demo
	$(RELEASE)/tools/odb info demo.odb

test: debug
	ctest --test-dir $(DEBUG) --output-on-failure -j$(JOBS)

# Every program bench_* that the bench folder builds, one after the other.
bench: release
	@set -e; found=0; for b in $(RELEASE)/bench/bench_*; do \
	  if [ -f "$$b" ] && [ -x "$$b" ]; then found=1; echo "== $$b"; "$$b"; fi; \
	done; [ $$found = 1 ] || { echo "no benchmark programs in $(RELEASE)/bench" >&2; exit 1; }

# Checked before anything is built, so a forgotten PREFIX costs nothing.
ifneq ($(filter install,$(MAKECMDGOALS)),)
ifeq ($(PREFIX),)
$(error usage: make install PREFIX=/path/to/prefix)
endif
endif

install: release
	cmake --install $(RELEASE) --prefix "$(PREFIX)"

clean:
	rm -rf build

format:
	@command -v clang-format >/dev/null || { echo "clang-format not found (apt-get install clang-format)" >&2; exit 1; }
	find $(FORMAT_DIRS) \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 -r clang-format -i
