# Debian packages by CPack (scripts/package makes them):
#
#   libbrindle1      the library                     libbrindle-qt1   the desktop library
#   libbrindle-dev   what hosts are compiled with    brindle-tools    the programs
#   brindle-map      the map view
#
# The target brindle_packaged is what is in them: neither tests nor benchmarks need to be built for packages.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
add_custom_target(brindle_packaged DEPENDS brindle brindle_tool)
foreach(target brindle_tool_manual brindle_qt brindle_map brindle_map_manual)
  if(TARGET ${target})
    add_dependencies(brindle_packaged ${target})
  endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brindle)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/stage.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Authors of Brindle <brindle@example.com>")
set(CPACK_DEBIAN_PACKAGE_SOURCE brindle)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_DESKTOP_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)

set(exactly "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_BRINDLE_DOCUMENTS ${PROJECT_BINARY_DIR}/packaging)
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${CPACK_BRINDLE_DOCUMENTS}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/packaging/copyright ${CPACK_BRINDLE_DOCUMENTS}/copyright COPYONLY)

# brindle_package(COMPONENT PACKAGE SECTION SYNOPSIS DESCRIPTION)
macro(brindle_package component package section synopsis description)
  string(TOUPPER ${component} key)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${synopsis}\n${description}")
endmacro()

brindle_package(runtime libbrindle1 libs "behaviours, rules and macros for broadcast control"
  "Brindle hosts desktop applications that control and monitor broadcast\nequipment. This package holds the library.")
brindle_package(development libbrindle-dev libdevel "behaviours, rules and macros for broadcast control (development)"
  "Brindle hosts desktop applications that control and monitor broadcast\nequipment. This package holds what they are compiled with.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libbrindle1 ${exactly}")
brindle_package(tools brindle-tools utils "plays and checks stations of broadcast control"
  "The brindle command runs a whole station without a desktop, checks its\nfiles, and answers single questions about addresses, rules and skins.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libbrindle1 ${exactly}")
if(TARGET brindle_qt)
  brindle_package(desktop libbrindle-qt1 libs "desktop services of Brindle on Qt 6"
    "Brindle hosts desktop applications that control and monitor broadcast\nequipment. This package holds what needs a desktop.")
  set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "libbrindle1 ${exactly}")
  brindle_package(map brindle-map utils "map view of a broadcast station"
    "Brindle hosts desktop applications that control and monitor broadcast\nequipment. This package shows the map of a station and takes presses on it.")
  set(CPACK_DEBIAN_MAP_PACKAGE_DEPENDS "libbrindle1 ${exactly}, libbrindle-qt1 ${exactly}")
  list(APPEND CPACK_COMPONENTS_ALL desktop-development)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libbrindle-qt1 ${exactly}")
  # Hosts with windows include Qt's headers; those without need not have them.
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "qt6-base-dev")
endif()

include(CPack)
cpack_add_component_group(development)
cpack_add_component(development GROUP development)
if(TARGET brindle_qt)
  cpack_add_component(desktop-development GROUP development)
endif()
