# Two front doors: `make demo` and `make test`. The rest of the build is CMake (see CMakePresets.json).

JOBS ?= $(shell nproc)

.PHONY: demo test bench asan tsan tidy format clean install deps

demo:
	@sh scripts/install-deps.sh build
	@echo "Building qxfp (a minute or two the first time) ..."
	@mkdir -p build
	@{ cmake --preset release && cmake --build --preset release -j $(JOBS) --target qxfp; } >build/demo.log 2>&1 \
	  || { cat build/demo.log; exit 1; }
	@sh scripts/demo.sh build/release/tools/qxfp/qxfp

test:
	@sh scripts/install-deps.sh test
	@cmake --preset dev
	@cmake --build --preset dev -j $(JOBS)
	@ctest --test-dir build/dev --output-on-failure --no-tests=error -j $(JOBS)

# The tests again under the sanitizers.
asan: export LSAN_OPTIONS = suppressions=$(CURDIR)/tests/lsan.supp
asan tsan:
	@sh scripts/install-deps.sh test
	@cmake --preset $@
	@cmake --build --preset $@ -j $(JOBS)
	@ctest --test-dir build/$@ --output-on-failure --no-tests=error -j $(JOBS)

bench:
	@sh scripts/install-deps.sh bench
	@cmake --preset bench
	@cmake --build --preset bench -j $(JOBS)
	@for program in build/bench/bench/*/qx_*_bench; do $$program || exit 1; done

install: deps
	@cmake --preset release
	@cmake --build --preset release -j $(JOBS)
	@cmake --install build/release

deps:
	@sh scripts/install-deps.sh build

format:
	@sh scripts/install-deps.sh format
	@git ls-files '*.h' '*.cpp' | xargs clang-format -i

tidy:
	@sh scripts/install-deps.sh format
	@git ls-files 'src/*.cpp' 'tools/*.cpp' | xargs clang-tidy -p build/dev --quiet

clean:
	@rm -rf build demo
