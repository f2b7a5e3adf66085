# SPDX-License-Identifier: MIT
# Run by `cmake --install` with `launcher`, `folder` and `executable` set. A program below /usr is found by its name or
# lies where the file says; below any other prefix its whole path is written, since the desktop's PATH may lack it.
get_filename_component(name "${launcher}" NAME)
string(REPLACE ".servicemenu.desktop" ".desktop" name "${name}")
set(place "${CMAKE_INSTALL_PREFIX}/${folder}/${name}")
file(READ "${launcher}" text)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  # A space or another sign that these files would take for their own has to be quoted.
  if(CMAKE_INSTALL_PREFIX MATCHES "[^A-Za-z0-9/._+@:,-]")
    message(WARNING "${place}: the desktop may not find a program below a path with such characters")
  endif()
  string(REGEX REPLACE "(^|\n)(Exec|TryExec)=(/usr/bin/)?([a-z])" "\\1\\2=${CMAKE_INSTALL_PREFIX}/bin/\\4" text "${text}")
endif()
message(STATUS "Installing: $ENV{DESTDIR}${place}")
file(WRITE "$ENV{DESTDIR}${place}" "${text}")
set(permissions OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
# KDE trusts what lies below /usr, and elsewhere what its user may run.
if(executable AND NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  list(APPEND permissions OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
endif()
file(CHMOD "$ENV{DESTDIR}${place}" PERMISSIONS ${permissions})
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${place}")
