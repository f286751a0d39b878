# The product: libbrindle.so.1 made of the objects, what is installed with it, and the two ways a host finds it
# (find_package(brindle), pkg-config brindle).
include(CMakePackageConfigHelpers)

add_library(brindle SHARED $<TARGET_OBJECTS:brindle_objects>)
add_library(brindle::brindle ALIAS brindle)
set_target_properties(brindle PROPERTIES
                      VERSION ${PROJECT_VERSION}
                      SOVERSION ${PROJECT_VERSION_MAJOR}
                      LINKER_LANGUAGE CXX
                      INSTALL_RPATH ""
                      LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
target_compile_features(brindle INTERFACE cxx_std_20)
target_include_directories(brindle INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                             $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(brindle PRIVATE Threads::Threads LibXml2::LibXml2 ${NETSNMP_LINK_LIBRARIES})
if(BRINDLE_PLAIN_CODE)
  target_link_options(brindle PRIVATE LINKER:--no-undefined LINKER:--as-needed)
endif()

file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/public-headers.txt headers REGEX "^[^#]")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/public-headers.txt)
foreach(header ${headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder}
          COMPONENT development)
endforeach()

install(TARGETS brindle EXPORT brindle
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/brindle)
install(EXPORT brindle NAMESPACE brindle:: DESTINATION ${package_folder} FILE brindle-targets.cmake
        COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/brindle-config.cmake.in
                              ${PROJECT_BINARY_DIR}/brindle-config.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/brindle-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/brindle-config.cmake ${PROJECT_BINARY_DIR}/brindle-config-version.cmake
        DESTINATION ${package_folder} COMPONENT development)

# The .pc file finds its prefix from its own place, so that an installed tree may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE BRINDLE_PC_PREFIX)
configure_file(${PROJECT_SOURCE_DIR}/cmake/brindle.pc.in ${PROJECT_BINARY_DIR}/brindle.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brindle.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

# The desktop library, where it is built: found with the main one, or as pkg-config's brindle-qt.
if(TARGET brindle_qt)
  install(TARGETS brindle_qt EXPORT brindle-qt
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
  install(EXPORT brindle-qt NAMESPACE brindle:: DESTINATION ${package_folder} FILE brindle-qt-targets.cmake
          COMPONENT development)
  install(FILES ${PROJECT_SOURCE_DIR}/brindle/platform/qt/painter_context.h
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/brindle/platform/qt COMPONENT development)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/brindle-qt.pc.in ${PROJECT_BINARY_DIR}/brindle-qt.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/brindle-qt.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endif()
