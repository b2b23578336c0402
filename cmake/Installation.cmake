# SPDX-License-Identifier: MIT
# What is installed, and where. There are two components: "osa", the programs that need no Qt, and "desktop", all that has windows.
#
# Programs find what belongs to them from their own place (bin/ and share/ beside each other), so an installation may be moved.
include(GNUInstallDirs)
# Debian's zsh looks elsewhere for what packages bring. The prefix is known when it is installed, perhaps below another folder.
set(chooseZshFolder [[
  set(zshFolder share/zsh/site-functions)
  if(EXISTS /etc/debian_version AND CMAKE_INSTALL_PREFIX MATCHES "^(.*/)?usr$")
    set(zshFolder share/zsh/vendor-completions)
  endif()
]])

install(TARGETS osascript osacompile osadecompile osalang DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT osa)
install(TARGETS quoddle quoddle-shell quoddle-dialogs quoddle-clipboard quoddle-preview quoddle-fetch
        DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT desktop)
install(DIRECTORY resources/dictionaries DESTINATION share/quoddle COMPONENT osa FILES_MATCHING PATTERN *.sdef)

# Man pages are compressed as the system has them.
find_program(QUODDLE_GZIP gzip REQUIRED)
foreach(program osascript osacompile osadecompile osalang quoddle quoddle-shell)
  set(component osa)
  if(program MATCHES quoddle)
    set(component desktop)
  endif()
  set(page ${CMAKE_BINARY_DIR}/share/man/man1/${program}.1.gz)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/share/man/man1)
  add_custom_command(OUTPUT ${page} COMMAND ${QUODDLE_GZIP} -9nc ${CMAKE_SOURCE_DIR}/docs/man/${program}.1 > ${page}
                     DEPENDS docs/man/${program}.1 VERBATIM)
  list(APPEND pages ${page})
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
endforeach()
set(changelog ${CMAKE_BINARY_DIR}/share/doc/changelog.gz)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/share/doc)
add_custom_command(OUTPUT ${changelog} COMMAND ${QUODDLE_GZIP} -9nc ${CMAKE_SOURCE_DIR}/resources/debian/changelog > ${changelog}
                   DEPENDS resources/debian/changelog VERBATIM)
add_custom_target(manuals ALL DEPENDS ${pages} ${changelog})
foreach(helper quoddle-dialogs quoddle-clipboard quoddle-preview quoddle-fetch)
  file(CREATE_LINK quoddle-shell.1.gz ${CMAKE_BINARY_DIR}/share/man/man1/${helper}.1.gz SYMBOLIC)
  install(FILES ${CMAKE_BINARY_DIR}/share/man/man1/${helper}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT desktop)
endforeach()

foreach(program osascript osacompile osadecompile osalang quoddle)
  set(component osa)
  if(program STREQUAL quoddle)
    set(component desktop)
  endif()
  install(FILES ${CMAKE_BINARY_DIR}/share/bash-completion/completions/${program}
          DESTINATION share/bash-completion/completions COMPONENT ${component})
  set(file ${CMAKE_BINARY_DIR}/share/zsh/site-functions/_${program})
  install(CODE "${chooseZshFolder}file(INSTALL \"${file}\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/\${zshFolder}\")" COMPONENT ${component})
  install(FILES ${CMAKE_BINARY_DIR}/share/fish/vendor_completions.d/${program}.fish
          DESTINATION share/fish/vendor_completions.d COMPONENT ${component})
endforeach()

# What editors read to colour scripts.
foreach(place org.kde.syntax-highlighting/syntax/applescript.xml gtksourceview-5/language-specs/applescript.lang
        vim/vimfiles/syntax/applescript.vim vim/vimfiles/ftdetect/applescript.vim)
  get_filename_component(folder ${place} DIRECTORY)
  install(FILES ${CMAKE_BINARY_DIR}/share/${place} DESTINATION share/${folder} COMPONENT osa)
endforeach()

# What desktops read.
install(FILES resources/desktop/quoddle.desktop DESTINATION share/applications COMPONENT desktop)
install(FILES resources/desktop/quoddle.metainfo.xml DESTINATION share/metainfo RENAME local.quoddle.Quoddle.metainfo.xml COMPONENT desktop)
install(FILES resources/desktop/quoddle.xml DESTINATION share/mime/packages COMPONENT desktop)
install(FILES resources/desktop/icons/quoddle.svg DESTINATION share/icons/hicolor/scalable/apps COMPONENT desktop)
install(FILES resources/desktop/icons/quoddle-symbolic.svg DESTINATION share/icons/hicolor/symbolic/apps COMPONENT desktop)
install(FILES resources/desktop/icons/application-x-applescript-compiled.svg resources/desktop/icons/application-x-quoddle-appletz.svg
              resources/desktop/icons/text-x-applescript.svg
        DESTINATION share/icons/hicolor/scalable/mimetypes COMPONENT desktop)

foreach(component osa desktop)
  set(folder share/doc/quoddle)
  if(component STREQUAL osa)
    set(folder share/doc/quoddle-osa)
  endif()
  install(FILES resources/debian/copyright DESTINATION ${folder} COMPONENT ${component})
  install(FILES ${CMAKE_BINARY_DIR}/share/doc/changelog.gz DESTINATION ${folder} COMPONENT ${component})
endforeach()
