# Two entry points: `make run` (workbench on the embedded demo database) and `make test`.
BUILD ?= build
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
PACKAGES := cmake ninja-build g++ qt6-base-dev qt6-charts-dev qt6-translations-l10n libgl-dev firebird3.0-server-core \
            firebird3.0-server firebird3.0-utils \
            firebird-dev libfbclient2 libgtest-dev libgmock-dev libbenchmark-dev \
            libsane-dev libsane1 qt6-tools-dev pkgconf
# libsane-dev: the scanner module (scanner/) is built on SANE; libsane1 also holds SANE's "test"
# backend, the device the tests scan from.
# qt6-tools-dev: the Qt Designer plugin (designer/) builds on its QtUiPlugin interfaces; pkgconf: the
# package test checks the installed frames.pc with it.
# Only the benchmarks use it: Qt SQL's Firebird driver, the alternative they compare with.
BENCH_PACKAGES := libqt6sql6-ibase
# Only `make docs` uses it.
DOCS_PACKAGES := doxygen
JOBS ?= $(shell nproc)

.PHONY: deps bench-deps docs-deps configure build run test bench docs clean check-sanitize

# $(call install,packages): installs those that are missing.
define install
	@missing=""; for p in $(1); do dpkg -s $$p >/dev/null 2>&1 || missing="$$missing $$p"; done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get update -qq && \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	fi
endef

deps:
	$(call install,$(PACKAGES))

bench-deps:
	$(call install,$(BENCH_PACKAGES))

docs-deps:
	$(call install,$(DOCS_PACKAGES))

# -O1 without debug information: the build is most of a test run's time on two cores.
$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG"

configure: $(BUILD)/build.ninja

build: deps configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@if [ -z "$$DISPLAY" ] && [ -z "$$WAYLAND_DISPLAY" ]; then export QT_QPA_PLATFORM=offscreen; fi; \
	$(BUILD)/host/workbench $(ARGS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

# Not part of `make test`: builds the large database on its first run (once per build folder).
bench: build bench-deps
	QT_QPA_PLATFORM=offscreen $(BUILD)/bench/frames_bench $(ARGS)

# The API reference for host developers, from the public headers: the frame contract and the rest
# of frames/core, each family's base class, the data layer. Written to $(BUILD)/docs/html.
DOCS_INPUT = docs/mainpage.md $(sort $(wildcard frames/core/*.h frames/*/*Abs*.h frames/*/*Base*.h)) \
             frames/medit/ME_Value.h frames/crm/EF_CRMSelect.h \
             $(filter-out platform/db/FbCommon.h,$(wildcard platform/db/*.h))
docs: docs-deps
	@mkdir -p $(BUILD)/docs
	FRAMES_DOCS_INPUT="$(DOCS_INPUT)" FRAMES_DOCS_OUT=$(BUILD)/docs \
	  FRAMES_VERSION=$$(sed -n 's/^project(Frames VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt) doxygen docs/Doxyfile
	@echo "API reference: $(BUILD)/docs/html/index.html"

# The whole suite built with the address and undefined-behaviour sanitizers, in a folder of its
# own. Slow (a full build and a run several times slower than `make test`), so not part of CI:
# run it before closing work on the data layer. Any report fails the run; only reports from
# third-party libraries are suppressed (tests/sanitize/*.supp say which and why).
# intercept_tls_get_addr=0: the leak checker's own scan of dynamically loaded libraries' thread-
# local storage crashes at exit on this C library ("Tracer caught signal 11") in the workbench
# tests, which load the frames package by path; the rest of the leak check is unchanged.
SANITIZE_BUILD ?= build-sanitize
SANITIZE_FLAGS := -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
SANITIZE_SUPP := $(CURDIR)/tests/sanitize

$(SANITIZE_BUILD)/build.ninja: | deps
	cmake -S . -B $(SANITIZE_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON \
	  -DFRAMES_WARNINGS_AS_ERRORS=OFF \
	  "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG" "-DCMAKE_CXX_FLAGS=$(SANITIZE_FLAGS)"

check-sanitize: deps $(SANITIZE_BUILD)/build.ninja
	cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	cd $(SANITIZE_BUILD) && QT_QPA_PLATFORM=offscreen \
	  ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:intercept_tls_get_addr=0:suppressions=$(SANITIZE_SUPP)/asan.supp \
	  LSAN_OPTIONS=suppressions=$(SANITIZE_SUPP)/lsan.supp:print_suppressions=0 \
	  UBSAN_OPTIONS=print_stacktrace=1:suppressions=$(SANITIZE_SUPP)/ubsan.supp \
	  ctest --output-on-failure -j $(JOBS)

clean:
	rm -rf $(BUILD) $(SANITIZE_BUILD)
