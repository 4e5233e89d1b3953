# The two commands a newcomer needs: `make run` and `make test`.
JOBS ?= $(shell nproc)
ARGS ?= --demo
FUZZ_SECONDS ?= 120

.PHONY: run test package bench fuzz build asan deps deps-run format clean

deps:
	tools/install-deps

deps-run:
	tools/install-deps --run

build: deps
	cmake --preset default
	cmake --build --preset default -j $(JOBS)

run: deps-run build
	tools/run-phone $(ARGS)

test: build
	ctest --preset default -j $(JOBS)

# The Debian package, in build/package/ (see docs/packaging.md).
package: build
	cd build && cpack

asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

bench: build
	tools/run-benchmarks

# Every libFuzzer target built with clang, each run FUZZ_SECONDS (see docs/fuzzing.md).
fuzz:
	tools/install-deps --fuzz
	tools/run-fuzz $(FUZZ_SECONDS)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build build-asan build-fuzz
