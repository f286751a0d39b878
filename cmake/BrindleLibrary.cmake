# The product: libbrindle.so.1, made of the objects.
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
