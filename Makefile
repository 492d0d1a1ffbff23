# One verb per chore. Every verb installs and builds what it needs.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
JOBS ?= $(shell nproc)
export CMAKE_CXX_COMPILER_LAUNCHER := $(shell command -v ccache)

.PHONY: build demo test check bench format setup clean

build: setup
	cmake --preset release >/dev/null
	cmake --build build -j $(JOBS)

setup:
	@scripts/setup.sh

demo: build
	build/bin/proportions examples/physicians_health.csv -f examples/physicians_health.txt --weight freq

test: build
	ctest --test-dir build --output-on-failure -j $(JOBS)

check: test
	clang-format --dry-run -Werror $$(git ls-files '*.h' '*.cpp')
	cmake --preset sanitize >/dev/null
	cmake --build build-sanitize -j $(JOBS)
	ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

bench: build
	cmake --preset release -DPROPORTIONS_BENCH=ON >/dev/null
	cmake --build build -j $(JOBS)
	bench/run.py $(ROWS)
	build/bin/classification_bench --benchmark_min_time=0.2
	build/bin/distributions_bench --benchmark_min_time=0.05

format:
	clang-format -i $$(git ls-files '*.h' '*.cpp')

clean:
	rm -rf build build-*
