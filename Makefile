# One verb per chore. Every verb installs and builds what it needs.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
JOBS ?= $(shell nproc)
export CMAKE_CXX_COMPILER_LAUNCHER := $(shell command -v ccache)

.PHONY: build demo test check headers lint sanitize coverage fuzz bench format setup clean

# The two libraries and the program.
build: setup
	cmake --preset release >/dev/null
	cmake --build build -j $(JOBS) --target proportions_module workbench proportions_program

setup:
	@scripts/setup.sh

demo: build
	build/bin/proportions examples/physicians_health.csv -f examples/physicians_health.txt --weight freq

test: setup
	cmake --preset release >/dev/null
	cmake --build build -j $(JOBS)
	ctest --test-dir build --output-on-failure -j $(JOBS)

# Everything that `test` leaves out because it takes long.
check: test
	@scripts/setup.sh clang-format clang-tidy
	clang-format --dry-run -Werror $$(git ls-files '*.h' '*.cpp')
	$(MAKE) headers lint sanitize

# Every header compiles alone.
headers: setup
	git ls-files 'host/*.h' 'module/*.h' 'workbench/*.h' | xargs -P $(JOBS) -I{} sh -c 'echo "#include \"{}\"" | \
	  c++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I. -isystem third_party/node_modules/duckdb/src/duckdb/src/include -x c++ -'

lint: build
	git ls-files 'module/*.cpp' 'workbench/*.cpp' | \
	  xargs -P $(JOBS) -n 1 clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p build

sanitize: setup
	cmake --preset sanitize >/dev/null
	cmake --build build-sanitize -j $(JOBS)
	ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

# Of the module; branches that only an exception takes are left out.
coverage:
	@scripts/setup.sh gcovr
	cmake --preset coverage >/dev/null
	cmake --build build-coverage -j $(JOBS)
	find build-coverage -name '*.gcda' -delete
	ctest --test-dir build-coverage --output-on-failure -j $(JOBS)
	gcovr --root . --filter module/ --exclude-throw-branches --exclude-unreachable-branches --print-summary build-coverage

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

bench: setup
	cmake --preset release -DPROPORTIONS_BENCH=ON >/dev/null
	cmake --build build -j $(JOBS)
	bench/run.py $(ROWS)
	build/bin/classification_bench --benchmark_min_time=0.2
	build/bin/distributions_bench --benchmark_min_time=0.05

format:
	clang-format -i $$(git ls-files '*.h' '*.cpp')

clean:
	rm -rf build build-*
