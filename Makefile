# Wraps CMake: `make demo` and `make test` set up a fresh Debian machine,
# build, and run.
BUILD ?= build
PREFIX ?= /opt/velora
JOBS ?= $(shell nproc)
GDS = $(BUILD)/stage/bin/x86_64/gds

.PHONY: all deps configure build test demo install bench fuzz sanitize clean

all: build

deps:
	@bash scripts/deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release > /dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

# The demo needs the program and its staged installation, not the tests.
demo: configure
	@cmake --build $(BUILD) -j $(JOBS) --target gds_program stage
	@bash examples/demo.sh $(GDS)

install: build
	@cmake --install $(BUILD) --prefix $(PREFIX)

bench: build
	@bash bench/run.sh $(GDS)
	@bash bench/translate.sh $(GDS)
	@$(BUILD)/bench/geowrite

# Sanitizer build of everything, tests included.
sanitize: deps
	@cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DGDS_SANITIZE=ON > /dev/null
	@cmake --build build-asan -j $(JOBS)
	@ctest --test-dir build-asan --output-on-failure -j $(JOBS)

# libFuzzer targets under clang, each run for FUZZ_TIME seconds on its corpus in fuzz/.
FUZZ_TIME ?= 60
fuzz: deps
	@bash fuzz/run.sh $(FUZZ_TIME)

clean:
	@rm -rf $(BUILD) build-asan build-fuzz
