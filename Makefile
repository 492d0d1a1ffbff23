# One verb per chore. `setup` installs what is missing, and so do `demo` and `test`, which need nothing
# but make and root or sudo on a fresh Debian machine; the others name what is missing and stop.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
export CMAKE_CXX_COMPILER_LAUNCHER := $(shell command -v ccache)

.PHONY: build demo test test-sources check headers lint browser sanitize coverage mutate fuzz bench format format-check \
  setup needed program everything install package clean

# The two libraries and the program.
build: needed program

# PACKAGES: Debian packages that one of the verbs needs beyond those of every build.
setup:
	@scripts/setup.sh $(PACKAGES)

needed:
	@scripts/setup.sh --check

# As they stand after `setup` or `needed`.
program:
	cmake --preset release >/dev/null
	cmake --build build -j $(JOBS) --target proportions_module workbench proportions_program

everything:
	cmake --preset release >/dev/null
	cmake --build build -j $(JOBS)

demo: setup
	@$(MAKE) --no-print-directory program
	build/bin/proportions examples/physicians_health.csv -f examples/physicians_health.txt --weight freq

test: setup
	@$(MAKE) --no-print-directory everything
	ctest --test-dir build --output-on-failure -j $(JOBS)
	@echo "left out: the program on SQL servers (make test-sources)"

# The program on SQL servers, which are installed, started as an unprivileged user and stopped.
test-sources: setup
	@scripts/setup_servers.sh
	@$(MAKE) --no-print-directory program
	cd tests/sources && PROPORTIONS=$(CURDIR)/build/bin/proportions PYTHONDONTWRITEBYTECODE=1 python3 -m unittest -v

# Under DESTDIR, when it is given.
install: build
	cmake --install build --prefix $(PREFIX)

# A Debian package of the program, in build/.
package:
	@scripts/setup.sh --check dpkg-dev file
	@$(MAKE) --no-print-directory program
	cd build && cpack -G DEB

# What a change must pass: `test`, and what it leaves out because it takes long.
check: test format-check headers lint sanitize browser

format-check:
	@scripts/setup.sh --check clang-format
	clang-format --dry-run -Werror $$(git ls-files '*.h' '*.cpp')

# HTML reports in headless Chromium.
browser: build
	@scripts/setup.sh --check chromium
	cd tests/browser && npm ci --ignore-scripts --no-audit --no-fund --loglevel=error
	PROPORTIONS=build/bin/proportions node tests/browser/report_test.mjs

# Every header compiles alone.
headers: needed
	git ls-files 'host/*.h' 'module/*.h' 'workbench/*.h' | xargs -P $(JOBS) -I{} sh -c 'echo "#include \"{}\"" | \
	  c++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I. -isystem third_party/node_modules/duckdb/src/duckdb/src/include -x c++ -'

lint: build
	@scripts/setup.sh --check clang-tidy
	git ls-files 'module/*.cpp' 'workbench/*.cpp' | \
	  xargs -P $(JOBS) -n 1 clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p build

sanitize: needed
	cmake --preset sanitize >/dev/null
	cmake --build build-sanitize -j $(JOBS)
	ctest --test-dir build-sanitize --output-on-failure -j $(JOBS)

# Of the module; branches that only an exception takes are left out.
coverage:
	@scripts/setup.sh --check gcovr
	cmake --preset coverage >/dev/null
	cmake --build build-coverage -j $(JOBS)
	find build-coverage -name '*.gcda' -delete
	ctest --test-dir build-coverage --output-on-failure -j $(JOBS)
	gcovr --root . --filter module/ --exclude-throw-branches --exclude-unreachable-branches --print-summary build-coverage

# Changes of the module, one at a time, that the tests must notice; those they do not are listed.
MUTANTS ?= 60
SEED ?= 1

mutate: needed
	scripts/mutate.py --count $(MUTANTS) --seed $(SEED) --jobs $(JOBS)

# Seconds for each target.
FUZZ_SECONDS ?= 600
FUZZ_TARGETS := command run module render delimited dictionary distributions statfiles

fuzz:
	@scripts/setup.sh --check clang-14 libclang-rt-14-dev
	cmake --preset fuzz >/dev/null
	cmake --build build-fuzz -j $(JOBS) --target fuzz_targets
	for target in $(FUZZ_TARGETS); do \
	  mkdir -p build-fuzz/corpus/$$target tests/fuzz/regressions/$$target; \
	  build-fuzz/bin/fuzz_$$target -max_total_time=$(FUZZ_SECONDS) -max_len=2000 -timeout=10 -print_final_stats=1 \
	    -verbosity=1 -artifact_prefix=build-fuzz/found-$$target- \
	    build-fuzz/corpus/$$target tests/fuzz/corpus/$$target tests/fuzz/regressions/$$target; \
	done

bench:
	@scripts/setup.sh --check libbenchmark-dev
	cmake --preset release -DPROPORTIONS_BENCH=ON >/dev/null
	cmake --build build -j $(JOBS)
	bench/run.py $(ROWS)
	build/bin/classification_bench --benchmark_min_time=0.2
	build/bin/distributions_bench --benchmark_min_time=0.05
	build/bin/delimited_bench --benchmark_min_time=0.2

format:
	@scripts/setup.sh --check clang-format
	clang-format -i $$(git ls-files '*.h' '*.cpp')

clean:
	rm -rf build build-*
