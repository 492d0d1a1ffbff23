# One verb per chore. Every verb installs and builds what it needs.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
JOBS ?= $(shell nproc)
export CMAKE_CXX_COMPILER_LAUNCHER := $(shell command -v ccache)

.PHONY: build demo test check fuzz bench format setup clean

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

# Seconds for each target.
FUZZ_SECONDS ?= 600
FUZZ_TARGETS := command dictionary run distributions

fuzz:
	@scripts/setup.sh clang-14 libclang-rt-14-dev
	cmake --preset fuzz >/dev/null
	cmake --build build-fuzz -j $(JOBS) --target fuzz_targets
	for target in $(FUZZ_TARGETS); do \
	  mkdir -p build-fuzz/corpus/$$target tests/fuzz/regressions/$$target; \
	  build-fuzz/bin/fuzz_$$target -max_total_time=$(FUZZ_SECONDS) -max_len=2000 -timeout=10 -print_final_stats=1 \
	    -verbosity=1 -artifact_prefix=build-fuzz/found-$$target- \
	    build-fuzz/corpus/$$target tests/fuzz/corpus/$$target tests/fuzz/regressions/$$target; \
	done

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
