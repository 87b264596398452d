# The everyday commands. Each first installs the Debian packages that it needs and the machine lacks.

JOBS ?= $(shell nproc)
TIME ?= 60
BUILD = cmake --build --preset

PORTS = armhf i386 arm64 s390x

.PHONY: help demo check check-asan check-tsan check-clang ports $(PORTS:%=ports-%) bench docs \
        check-docs tidy cppcheck memcheck coverage package package-check abi fuzz fuzz-m32 soak clean

help:
	@echo 'make demo         build, then carry real observations into bytes and back'
	@echo 'make check        build release, run all tests'
	@echo 'make check-asan   the same under the address, leak and undefined-behaviour sanitizers'
	@echo 'make check-tsan   the same under the thread sanitizer'
	@echo 'make check-clang  the same built by Clang'
	@echo 'make ports        build for other processors, run all tests under emulators'
	@echo 'make ports-armhf  one of them; there are $(PORTS)'
	@echo 'make bench        time this library beside others'
	@echo 'make docs         the manual, from the headers and docs/'
	@echo 'make check-docs   the same, and follow every link in it and look at maps with a browser'
	@echo 'make tidy         clang-tidy and clang-format over the sources'
	@echo 'make package      Debian packages, into build/package'
	@echo 'make package-check  install them in a new Debian, use them, and purge them'
	@echo 'make abi          compare the binary interface with the last release'
	@echo 'make fuzz         run each fuzz target TIME seconds (60)'
	@echo 'make fuzz-m32     the same for the object model as a 32-bit program'
	@echo 'make cppcheck     cppcheck over library, program and examples'
	@echo 'make memcheck     the tests of the library under valgrind'
	@echo 'make coverage     run all tests, print line and branch coverage, hold it against docs/trust.md'
	@echo 'make soak TIME=60 everything at once for so many seconds, with figures at the end'
	@echo 'make clean        remove build/'

demo:
	@scripts/install-deps demo
	test -f build/release/build.ninja || cmake --preset release -DTRELVO_TESTS=OFF
	$(BUILD) release -j $(JOBS) --target trelvocore trelvo
	scripts/demo build/release

# Builds one preset with its tests and runs them.
define run_tests
	cmake --preset $(1) -DTRELVO_TESTS=ON
	$(BUILD) $(1) -j $(JOBS)
	ctest --preset $(1) -j $(JOBS)
endef

check:
	@scripts/install-deps check
	$(call run_tests,release)

check-asan:
	@scripts/install-deps check
	$(call run_tests,asan)

check-tsan:
	@scripts/install-deps check
	$(call run_tests,tsan)

check-clang:
	@scripts/install-deps clang
	$(call run_tests,clang)

ports: $(PORTS:%=ports-%)

$(PORTS:%=ports-%): ports-%:
	@scripts/install-deps ports
	@scripts/sysroot $*
	$(call run_tests,$*)

bench:
	@scripts/install-deps bench
	cmake --preset bench
	$(BUILD) bench -j $(JOBS)
	scripts/bench build/bench

docs:
	@scripts/install-deps docs
	mkdir -p build/docs
	doxygen docs/Doxyfile
	@echo 'Open build/docs/html/index.html'

check-docs: docs
	@scripts/install-deps site
	test -f build/release/build.ninja || cmake --preset release -DTRELVO_TESTS=OFF
	$(BUILD) release -j $(JOBS) --target trelvo
	cd tests/site && TRELVO_PROGRAM=$(CURDIR)/build/release/tools/trelvo/trelvo \
	  /usr/bin/python3 -B -m unittest -v walk_test map_test
	/usr/bin/python3 -B tests/site/walk.py build/docs/html

tidy:
	@scripts/install-deps tidy
	cmake --preset debug -DTRELVO_TESTS=ON
	scripts/tidy build/debug $(JOBS)

cppcheck:
	@scripts/install-deps cppcheck
	scripts/cppcheck

memcheck:
	@scripts/install-deps memcheck
	cmake --preset debug -DTRELVO_TESTS=ON
	$(BUILD) debug -j $(JOBS)
	scripts/memcheck build/debug $(JOBS)

coverage:
	@scripts/install-deps coverage
	$(call run_tests,coverage)
	scripts/coverage build/coverage

package:
	@scripts/install-deps package
	scripts/package build/package

package-check: package
	scripts/package-check build/package

abi:
	@scripts/install-deps package
	test -f build/debug/build.ninja || cmake --preset debug -DTRELVO_TESTS=OFF
	$(BUILD) debug -j $(JOBS) --target trelvocore
	scripts/abi build/debug

fuzz:
	@scripts/install-deps fuzz
	cmake --preset fuzz -DTRELVO_TESTS=OFF
	$(BUILD) fuzz -j $(JOBS) --target trelvo_fuzz
	scripts/fuzz build/fuzz $(TIME)

fuzz-m32:
	@scripts/install-deps fuzz-m32
	cmake -G Ninja -S fuzz/m32 -B build/fuzz-m32 -DCMAKE_CXX_COMPILER=clang++-14
	cmake --build build/fuzz-m32 -j $(JOBS) --target trelvo_fuzz
	scripts/fuzz build/fuzz-m32 $(TIME)

soak:
	@scripts/install-deps check
	cmake --preset release -DTRELVO_TESTS=ON
	$(BUILD) release -j $(JOBS) --target trelvo_soak
	build/release/tests/soak/trelvo_soak $(TIME)

clean:
	rm -rf build
