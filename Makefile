# Everything that a contributor does, by name; `make help` lists it.

PREFIX ?= /usr/local
DESTDIR ?=
FUZZ_SECONDS ?= 60
# The applications of tools/hostmatrix.toml that `make hosts` runs; all, if there are none.
HOSTS ?=
JOBS ?= $(shell nproc)
# The Python that Debian installs its modules for, before any other on the path.
PYTHON ?= $(firstword $(wildcard /usr/bin/python3) python3)
CTEST = ctest --output-on-failure

.DEFAULT_GOAL := build
.PHONY: setup ready build demo test test-desktop hosts test-asan bench fuzz lint install clean help

setup: ## install the Debian packages that everything here needs
	@tools/setup

# What runs without a word when the machine is ready.
ready:
	@tools/setup --check >/dev/null || tools/setup

build: ready ## build the release: the tool, both plug-ins and the tests, into build/
	cmake --preset release
	cmake --build --preset release -j $(JOBS)

demo: build ## draw strokes in a real application, and see what they do
	$(PYTHON) tools/demo

test: build ## the headless suite and a short pass over real applications
	$(CTEST) --test-dir build -j $(JOBS) -LE desktop --no-tests=error

test-desktop: build ## everything on real applications
	$(CTEST) --test-dir build -L 'desktop|smoke' --no-tests=error

hosts: build ## many real applications, with Velmora and without; writes docs/hosts.md
	$(PYTHON) tools/hostmatrix --install --again $(HOSTS)

test-asan: ready ## the headless suite under the address and undefined-behaviour sanitizers
	cmake --preset asan-ubsan
	cmake --build --preset asan-ubsan -j $(JOBS)
	ctest --preset asan-ubsan -j $(JOBS)

bench: build ## the benchmarks, each beside its baseline
	cmake --preset bench
	cmake --build --preset bench -j $(JOBS)
	tools/bench

fuzz: ready ## every fuzzer for FUZZ_SECONDS (60) seconds
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	tools/fuzz $(FUZZ_SECONDS)

lint: ready ## format, clang-tidy, include rules
	tools/lint

install: build ## install below PREFIX (/usr/local), honouring DESTDIR
	DESTDIR=$(DESTDIR) cmake --install build --prefix $(PREFIX)

clean: ## remove everything that was built
	rm -rf build

help: ## this list
	@sed -n 's/^\([a-z-]*\):.*## /\1\t/p' Makefile | expand -t 16
