# SPDX-License-Identifier: MIT
# Debian packages, one for each component of the installation. `scripts/make-packages` builds them.
#
# No package has scripts of its own: what has to happen when files of the desktop come and go (MIME types, launchers, icons, man pages) is
# done by the triggers of the packages that keep these.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The Quoddle authors <authors@quoddle.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL osa desktop)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_OSA_PACKAGE_NAME quoddle-osa)
set(CPACK_DEBIAN_OSA_PACKAGE_SECTION interpreters)
# Loaded when a dictionary is read, and when statements are typed: the programs' lists of libraries do not show them.
set(CPACK_DEBIAN_OSA_PACKAGE_DEPENDS "libxml2, libedit2")
set(CPACK_DEBIAN_OSA_PACKAGE_SUGGESTS "quoddle, speech-dispatcher | espeak-ng, xdg-utils")
set(CPACK_DEBIAN_OSA_DESCRIPTION "AppleScript compiler and interpreter
The programs osascript, osacompile, osadecompile and osalang run AppleScript,
compile it and print the source of compiled scripts. They read sources as well
as the compiled scripts that have been saved on Macs.

Dialogs and the clipboard need the package quoddle.")

set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME quoddle)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_SECTION utils)
# The toolkit's own texts in the user's language are files that no list of libraries shows.
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "quoddle-osa (= ${PROJECT_VERSION}), qt6-translations-l10n")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "ca-certificates, desktop-file-utils, qt6-svg-plugins | libqt6svg6, qt6-image-formats-plugins, qt6-wayland, shared-mime-info, xdg-utils")
set(CPACK_DEBIAN_DESKTOP_DESCRIPTION "shell for script applets
Turns scripts into desktop applications, with a window, progress, a Stop button
and dropped files. Applets appear in the desktop's menu, open their types of
files and renew themselves; those that were saved on a Mac run as they are.

The package also shows the dialogs of scripts that osascript runs, and lets the
desktop open scripts with a double click.")

include(CPack)
