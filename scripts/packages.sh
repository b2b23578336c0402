#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages that are missing. Sourced: install_packages build|test|packages|packages-try|bench|bench-…
# What is there already costs one question to dpkg; nothing is asked of the network then.
# It changes nothing without the rights to do so: it says what is to be typed instead.

build_packages=(g++ cmake ninja-build ccache pkg-config python3 qt6-base-dev qt6-l10n-tools qt6-pdf-dev qt6-image-formats-plugins libicu-dev libxml2-dev libfontconfig-dev libwayland-dev fonts-dejavu-core libarchive-dev libssl-dev libedit-dev)
# For a display of one's own. A window manager adds itself to the login screen: not on a desktop that only wants to run applets.
display_packages=(xvfb xauth openbox x11-utils imagemagick)
test_packages=(libgtest-dev libxcb1-dev at-spi2-core dbus dbus-x11 xdotool python3-gi python3-pyatspi gir1.2-atspi-2.0 libglib2.0-bin desktop-file-utils xclip sway wtype grim qt6-wayland wl-clipboard openssl mandoc zsh fish appstream dpkg-dev file shared-mime-info man-db libxml2-utils vim libkf5syntaxhighlighting-tools gir1.2-gtksource-5)
if [ "$(. /etc/os-release 2>/dev/null && echo "${VERSION_CODENAME:-}")" = bookworm ]; then
	build_packages+=(libqt6svg6)
	test_packages+=(clang-format-14)
else # later ones have the reader of SVG in a package of its own, and no formatter that formats in the same way
	build_packages+=(qt6-svg-plugins)
fi
packages_packages=(dpkg-dev file)
packages_try_packages=(dpkg-dev file lintian debootstrap)
bench_packages=(lua5.4 luajit)
bench_dialogs_packages=(zenity kdialog)
bench_search_packages=(plocate)
bench_rank_packages=(fzy)
bench_waits_packages=(xdotool)

# The packages for $1 that are missing, one a line.
missing_packages() {
	local wanted=("${build_packages[@]}") package
	[ "$1" = build ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || wanted+=("${display_packages[@]}")
	case $1 in
	test) wanted+=("${test_packages[@]}") ;;
	packages) wanted+=("${packages_packages[@]}") ;;
	packages-try) wanted+=("${packages_try_packages[@]}") ;;
	bench) wanted+=("${bench_packages[@]}") ;;
	bench-dialogs) wanted+=("${bench_dialogs_packages[@]}") ;;
	bench-search) wanted+=("${bench_search_packages[@]}") ;;
	bench-rank) wanted+=("${bench_rank_packages[@]}") ;;
	bench-waits) wanted+=("${bench_waits_packages[@]}") ;;
	esac
	for package in "${wanted[@]}"; do
		dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || echo "$package"
	done
}

# What root has to type in place of us.
advise() {
	printf '%s\n' "Packages are missing. Let root type this once, then start again:" "" \
		"    apt-get update && apt-get install --no-install-recommends $*" "" >&2
}

install_packages() {
	local missing as_root=()
	mapfile -t missing < <(missing_packages "$1")
	[ ${#missing[@]} -eq 0 ] && return 0
	if ! command -v apt-get >/dev/null; then
		echo "This is not Debian, so nothing is installed. What these packages hold is needed: ${missing[*]}" >&2
		return 0
	fi
	if [ "$(id -u)" -ne 0 ]; then
		as_root=(sudo)
		command -v sudo >/dev/null || { advise "${missing[@]}"; return 1; }
	fi
	echo "Installing: ${missing[*]}"
	# Not everybody who finds sudo may use it.
	"${as_root[@]}" apt-get update -qq &&
		"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" || {
		advise "${missing[@]}"
		return 1
	}
}
