# SPDX-License-Identifier: MIT
# The libraries as others use them: headers, a CMake package Zelk with targets Zelk::kit and so on, a pkg-config file.
include(CMakePackageConfigHelpers)

# Bottom storey first, as the folders were added; a linker wants them the other way round.
get_property(layers GLOBAL PROPERTY ZELK_LAYERS)
foreach(whole IN ITEMS kit platform)
  set(parts ${layers})
  list(FILTER parts INCLUDE REGEX "^zelk_${whole}_")
  list(REVERSE parts)
  add_library(zelk_${whole} INTERFACE)
  target_link_libraries(zelk_${whole} INTERFACE ${parts})
endforeach()

set(archives)
foreach(layer IN LISTS layers ITEMS zelk_kit zelk_platform)
  string(REPLACE "zelk_" "" name ${layer})
  set_target_properties(${layer} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(${layer} INTERFACE cxx_std_23)
  target_include_directories(${layer} INTERFACE "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zelk>")
  install(TARGETS ${layer} EXPORT ZelkTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  get_target_property(type ${layer} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    string(PREPEND archives " -l${layer}")
  endif()
endforeach()

foreach(folder IN ITEMS platform introspect bottomsheet kit extension)
  if(IS_DIRECTORY "${CMAKE_SOURCE_DIR}/${folder}")
    install(DIRECTORY "${CMAKE_SOURCE_DIR}/${folder}" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zelk COMPONENT development
            FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE PATTERN "resources" EXCLUDE)
  endif()
endforeach()

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Zelk)
install(EXPORT ZelkTargets NAMESPACE Zelk:: DESTINATION ${package} COMPONENT development)
configure_package_config_file(ZelkConfig.cmake.in ZelkConfig.cmake INSTALL_DESTINATION ${package})
# While the first number is 0, a second one that differs is another interface.
write_basic_package_version_file(ZelkConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/ZelkConfig.cmake" "${CMAKE_CURRENT_BINARY_DIR}/ZelkConfigVersion.cmake"
        DESTINATION ${package} COMPONENT development)
# From its own place, so that the tree can be moved or looked into before it is installed.
file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(zelk.pc.in zelk.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zelk.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
