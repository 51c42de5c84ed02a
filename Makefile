# Zarvelin: every target installs what it needs on a fresh Debian machine, then builds.
SHELL := /bin/bash
JOBS ?= 2
FUZZ_SECONDS ?= 30

.PHONY: all run test bench fuzz fuzz-build deps build-debug build-release build-fuzz format screenshot sample-data package package-check clean

all: build-release

deps:
	@scripts/install-deps build

build-debug: deps
	cmake --preset debug >/dev/null
	cmake --build build/debug -j$(JOBS)

build-release: deps
	cmake --preset release >/dev/null
	cmake --build build/release -j$(JOBS)

# The character the desktop program opens on: the bundled sample, or a small test sheet until the
# sample exists.
SAMPLE_SHEET = sheet="data/characters/Maren Vell.chr"; [ -f "$$sheet" ] || sheet=tests/data/sheets/hearth.chr

# Opens the desktop program on the bundled sample game system, with a sample character.
run: build-release
	@$(SAMPLE_SHEET); ./build/release/bin/zarvelin "$$PWD/$$sheet"

# Every test, in the sanitizer build.
test: build-debug
	ctest --test-dir build/debug --output-on-failure -j$(JOBS)

bench: build-release
	scripts/run-benchmarks build/release/bin

# Builds the fuzz targets (clang, libFuzzer) without running them.
fuzz-build:
	@scripts/install-deps fuzz
	cmake --preset fuzz >/dev/null
	cmake --build build/fuzz -j$(JOBS)

fuzz: fuzz-build
	scripts/run-fuzzers build/fuzz/bin $(FUZZ_SECONDS)

# Compiles the sample game system's macro data sheets (data/*.mds) into its data sheets (.cds).
sample-data: build-release
	scripts/build-sample-data build/release/bin/zarvelin-cli

screenshot: build-release
	@scripts/install-deps screenshot
	@$(SAMPLE_SHEET); scripts/screenshot build/release/bin/zarvelin docs/screenshot.png "$$PWD/$$sheet"

# The Debian package of the programs, written to the repository's top as zarvelin_VERSION_ARCH.deb
# (install it with: sudo apt-get install ./zarvelin_*.deb).
package: deps
	cmake --preset package >/dev/null
	cmake --build build/package -j$(JOBS)
	cd build/package && cpack -G DEB >/dev/null
	cp build/package/zarvelin_*.deb .
	@ls zarvelin_*.deb

# Unpacks the package into a scratch root and checks what it installs (programs, data, manual
# pages, menu entry, metainfo), as CI does.
package-check: package
	@scripts/install-deps package
	scripts/check-package zarvelin_*.deb

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build
