# Two entry points: `make run` (workbench on the embedded demo database) and `make test`.
BUILD ?= build
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
PACKAGES := cmake ninja-build g++ qt6-base-dev qt6-charts-dev libgl-dev firebird3.0-server-core \
            firebird3.0-server firebird3.0-utils \
            firebird-dev libfbclient2 libgtest-dev libgmock-dev libbenchmark-dev
# Only the benchmarks use it: Qt SQL's Firebird driver, the alternative they compare with.
BENCH_PACKAGES := libqt6sql6-ibase
JOBS ?= $(shell nproc)

.PHONY: deps bench-deps configure build run test bench clean

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

clean:
	rm -rf $(BUILD)
