# The two commands a newcomer needs: `make run` and `make test`.
JOBS ?= $(shell nproc)
ARGS ?= --demo

.PHONY: run test bench build asan deps deps-run format clean

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

asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

bench: build
	tools/run-benchmarks

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build build-asan
