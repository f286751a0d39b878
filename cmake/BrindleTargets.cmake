# The few functions the folders' CMakeLists.txt are written with.

find_package(Threads REQUIRED)
find_package(LibXml2 REQUIRED)

# All of the library's objects, once: the shared library, the tests and the tools are made from them.
add_library(brindle_objects STATIC)
target_include_directories(brindle_objects PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_definitions(brindle_objects PRIVATE BRINDLE_BUILDING)
target_link_libraries(brindle_objects PUBLIC Threads::Threads PRIVATE LibXml2::LibXml2)

# brindle_sources(FILE...): adds this folder's sources to the library.
function(brindle_sources)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(brindle_objects PRIVATE ${ARGN})
endfunction()

# brindle_test(NAME SOURCES FILE... [LIBRARIES TARGET...]): one test program, linked against the objects.
function(brindle_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  if(NOT BRINDLE_TESTS)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE brindle_testing ${arg_LIBRARIES})
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${name} PRIVATE -Wno-global-constructors -Wno-exit-time-destructors)
  endif()
  add_test(NAME ${name} COMMAND ${name})
endfunction()
