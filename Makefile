# Entry points for people; the work is done by CMake (see CMakePresets.json) and by scripts/.

.DEFAULT_GOAL := run
.NOTPARALLEL:
.PHONY: run test bench linux windows format clean setup

run: linux
	@scripts/run-example

test: setup
	@scripts/test

bench: setup
	@scripts/bench

linux: setup
	@scripts/build linux

windows: linux
	@scripts/build windows

format:
	@scripts/format

setup:
	@scripts/setup

clean:
	@scripts/wine-stop
	rm -rf build
