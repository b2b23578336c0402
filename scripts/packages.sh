#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages that are missing. Sourced: install_packages build|test|bench.
# What is there already costs one question to dpkg; nothing is asked of the network then.

build_packages=(g++ cmake ninja-build ccache pkg-config qt6-base-dev libqt6svg6 qt6-image-formats-plugins libicu-dev fonts-dejavu-core xvfb xauth openbox x11-utils imagemagick)
test_packages=(libgtest-dev at-spi2-core dbus dbus-x11 xdotool python3-gi python3-pyatspi gir1.2-atspi-2.0 libglib2.0-bin desktop-file-utils)
bench_packages=(zenity kdialog)

install_packages() {
	local wanted=("${build_packages[@]}") missing=() package
	[ "$1" = bench ] && wanted+=("${bench_packages[@]}")
	[ "$1" = test ] && wanted+=("${test_packages[@]}")
	for package in "${wanted[@]}"; do
		dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
	done
	[ ${#missing[@]} -eq 0 ] && return 0
	local as_root=()
	if [ "$(id -u)" -ne 0 ]; then
		command -v sudo >/dev/null || {
			echo "These packages are missing, and there is no sudo to install them: ${missing[*]}" >&2
			return 1
		}
		as_root=(sudo)
	fi
	echo "Installing: ${missing[*]}"
	"${as_root[@]}" apt-get update -qq &&
		"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
