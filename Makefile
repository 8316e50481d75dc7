# Thin faces of the CMake presets. A fresh Debian 12 needs nothing but make and a shell.

# What the programs are built from and run with.
PACKAGES_RUN := g++ cmake ninja-build pkg-config libcli11-dev nlohmann-json3-dev librtaudio-dev libsndfile1-dev \
  libsamplerate0-dev libpng-dev libxcb1-dev qt6-base-dev libgtest-dev libbenchmark-dev libfftw3-dev python3
# What the Debian package is made with.
PACKAGES_DEB := dpkg-dev file
# What only the tests use.
PACKAGES_TEST := pulseaudio pulseaudio-utils sox at-spi2-core python3-pyatspi xvfb dbus \
  desktop-file-utils appstream libhamlib-utils $(PACKAGES_DEB)
# What draws the plots and thins the pictures of the guide.
PACKAGES_PICTURES := gnuplot-nox pngquant
# What speed, coverage and scale are measured with.
PACKAGES_MEASURE := gcovr parallel xauth xdotool xvfb
# What the checks and the fuzz targets use.
PACKAGES_CHECK := clang clang-format clang-tidy
# What puts the package to the test on a bare machine.
PACKAGES_RELEASE := lintian debootstrap x11-utils

PRESET := release
BUILD := build/$(PRESET)
SUDO := $(if $(filter 0,$(shell id -u)),,sudo)
SOURCES = find src apps tests bench fuzz tools -name '*.h' -o -name '*.cpp'

# Installs those of the given packages that are missing; asks the network for nothing when all are there.
define install_packages
	@missing=""; \
	for package in $(1); do \
	  state=$$(dpkg-query -W -f='$${db:Status-Status}' "$$package" 2>/dev/null); \
	  [ "$$state" = installed ] || missing="$$missing $$package"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing$$missing"; \
	  $(SUDO) apt-get update && \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $$missing; \
	fi
endef

.PHONY: help setup setup-run setup-test setup-measure run demo demo-recording test bench coverage scale first-hour \
  soak fuzz deb release-check pictures plots format format-check check clean

help:
	@echo "make run     build the radio and start it on the demo band"
	@echo "make demo    demodulate the demo recording on the command line"
	@echo "make test    build and run all tests"
	@echo "make bench   one table of what everything costs"
	@echo "make coverage  which lines the tests reach"
	@echo "make scale   many recordings through the receiver on all cores"
	@echo "make first-hour  the steps of CONTRIBUTING.md on a copy of the tree"
	@echo "make deb     build the Debian package, into out/"
	@echo "make release-check  install, start, upgrade and remove it on a bare Debian 12; as root"
	@echo "make plots   measure the receiver and draw the plots of the guide; make pictures: the guide's other pictures"
	@echo "make soak    the radio on a machine that fails, MINUTES=10 under each sanitizer, or VIRTUAL=1 HOURS=24"
	@echo "make fuzz    all fuzz targets, SECONDS=300 each"
	@echo "make format  rewrite the sources in the project's layout"
	@echo "make check   everything that CI does"
	@echo "make setup   install the Debian packages that are missing"

setup:
	$(call install_packages,$(PACKAGES_RUN) $(PACKAGES_TEST) $(PACKAGES_CHECK))

setup-run:
	$(call install_packages,$(PACKAGES_RUN))

setup-measure:
	$(call install_packages,$(PACKAGES_RUN) $(PACKAGES_MEASURE))

setup-test:
	$(call install_packages,$(PACKAGES_RUN) $(PACKAGES_TEST))

run: setup-run
	@cmake --preset $(PRESET)
	@cmake --build $(BUILD) --target quorlsdr quorlsdr-cli
	@tools/run.sh $(BUILD)

demo: demo-recording
	@tools/demo.py $(BUILD)

demo-recording: setup-run
	@cmake --preset $(PRESET)
	@cmake --build $(BUILD) --target quorlsdr-cli demo-recording

test: setup-test
	cmake --preset $(PRESET)
	cmake --build $(BUILD)
	ctest --preset $(PRESET)

bench: setup-measure
	cmake --preset release
	cmake --build build/release --target benchmarks quorlsdr quorlsdr-cli demo-recording
	@tools/bench.py build/release

# Lines of src/ and apps/ that the tests reach, a row for each folder.
coverage: setup-test setup-measure
	cmake --preset coverage
	cmake --build build/coverage
	find build/coverage -name '*.gcda' -delete
	ctest --preset coverage
	@tools/coverage.py build/coverage

# The changes that CONTRIBUTING.md leads through, on a copy of the tree.
first-hour: setup-test
	@tools/first_hour.py build/first-hour

# Recordings through `receive` on all cores.
scale: setup-measure
	cmake --preset release
	cmake --build build/release --target quorlsdr-cli demo-recording
	@tools/scale.sh build/release

deb: setup-run
	$(call install_packages,$(PACKAGES_DEB))
	@cmake --preset release
	@tools/make_deb.sh build/release out

release-check: deb
	$(call install_packages,$(PACKAGES_TEST) $(PACKAGES_RELEASE))
	@tools/release_check.sh

soak: setup-test
	@tools/soak/run.sh

fuzz: setup
	@cmake --preset fuzz
	@cmake --build --preset fuzz --target fuzzers
	@tools/fuzz.py build/fuzz --seconds $(or $(SECONDS),300)

pictures: setup-run
	$(call install_packages,$(PACKAGES_PICTURES))
	cmake --preset release
	cmake --build build/release --target quorlsdr
	tools/make_screenshots.sh build/release/bin/quorlsdr

plots: setup-run
	$(call install_packages,$(PACKAGES_PICTURES))
	cmake --preset release
	cmake --build build/release --target quorlsdr-cli
	tools/make_plots.py build/release/bin/quorlsdr-cli docs/guide/pictures

format:
	$(call install_packages,clang-format)
	@$(SOURCES) | xargs clang-format -i

format-check:
	@$(SOURCES) | xargs clang-format --dry-run -Werror

check: setup
	.ci/run

clean:
	rm -rf build out
