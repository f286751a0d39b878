# What is installed, by components, and the two ways a host finds it (find_package(brindle), pkg-config brindle):
#
#   runtime      libbrindle.so.1                   desktop              libbrindle-qt.so.1
#   development  headers, links, package files     desktop-development  the same of the desktop library
#   tools        the programs, their manual pages and completions
#   map          the map view
#
# The installed tree may be moved: nothing in it remembers its prefix.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/brindle)
# A .pc file finds its prefix from its own place.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE BRINDLE_PC_PREFIX)

# brindle_install_library(TARGET NAME COMPONENT DEVELOPMENT-COMPONENT HEADER-LIST): NAME is the package file's.
function(brindle_install_library target name component development list)
  install(TARGETS ${target} EXPORT ${name}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component} NAMELINK_COMPONENT ${development})
  install(EXPORT ${name} NAMESPACE brindle:: DESTINATION ${package_folder} FILE ${name}-targets.cmake
          COMPONENT ${development})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT ${development})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/${list})
  file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/${list} headers REGEX "^[^#]")
  foreach(header ${headers})
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder}
            COMPONENT ${development})
  endforeach()
endfunction()

brindle_install_library(brindle brindle runtime development public-headers.txt)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/brindle-config.cmake.in
                              ${PROJECT_BINARY_DIR}/brindle-config.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/brindle-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/brindle-config.cmake ${PROJECT_BINARY_DIR}/brindle-config-version.cmake
        DESTINATION ${package_folder} COMPONENT development)

# The desktop library, where it is built.
if(TARGET brindle_qt)
  brindle_install_library(brindle_qt brindle-qt desktop desktop-development desktop-headers.txt)
endif()
