# The front door. `make run` and `make test` work on a bare Debian 12 machine: they install what
# is missing, build, and run.
.DEFAULT_GOAL := help
.PHONY: help packages command build run test test-long bench asan tsan coverage format format-check check tidy \
        install clean

JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
KELVO := build/package/tools/kelvo

help:
	@echo "make run          build the command and solve an example with it"
	@echo "make test         build everything and run the fast tests"
	@echo "make test-long    the tests that take minutes"
	@echo "make bench        solve the instances at hand and show the times"
	@echo "make asan, tsan   the tests under the address and undefined, or the thread sanitizer"
	@echo "make coverage     how much of the sources the fast tests run"
	@echo "make check        the checks of the sources: format, floors, header, documents"
	@echo "make tidy         clang-tidy over all sources (half an hour of processor time)"
	@echo "make format       format the sources"
	@echo "make install      install into PREFIX (default /usr/local)"
	@echo "make clean        remove the build folder"

packages:
	@scripts/install-packages.sh

# The library and the command alone, in a folder of their own: without debugging information, which
# is a quarter of the compile time.
command:
	@scripts/install-packages.sh run
	@cmake --preset package
	@cmake --build --preset package --target kelvo_command

build: packages
	@cmake --preset release -DBUILD_TESTING=ON
	@cmake --build --preset release

run: command
	$(KELVO) examples/models/diet.lp --values -

test: build
	ctest --preset release --label-exclude long -j$(JOBS)

test-long: build
	ctest --preset release --label-regex long -j$(JOBS)

bench: command
	bench/instances.py --kelvo $(KELVO)

asan tsan: packages
	cmake --preset $@
	cmake --build --preset $@
	ctest --preset $@ -j$(JOBS) --label-exclude 'long|install'

# The tests run in two processes rather than one each, so that counters are merged twice and not a
# thousand times.
coverage: packages
	@cmake --preset coverage
	@cmake --build --preset coverage
	find build/coverage -name '*.gcda' -delete
	build/coverage/tests/kelvo_unit_tests --gtest_brief=1 --gtest_filter='-Long*:*/Long*'
	build/coverage/tests/kelvo_api_tests --gtest_brief=1 --gtest_filter='-Long*:*/Long*'
	ctest --test-dir build/coverage --tests-regex 'command|corpus' --output-on-failure
	scripts/coverage.py build/coverage

format:
	scripts/format.sh

format-check:
	scripts/format.sh --check

check: build format-check
	scripts/check_floors.py
	scripts/check_header.py --library build/release/libkelvo.so
	scripts/check_docs.py

tidy:
	@scripts/install-packages.sh ci
	@cmake --preset release
	scripts/tidy.py --build build/release --jobs $(JOBS)

install: command
	cmake --install build/package --prefix $(PREFIX)

clean:
	rm -rf build
