# The few functions the folders' CMakeLists.txt are written with.

find_package(Threads REQUIRED)
find_package(LibXml2 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(NETSNMP REQUIRED netsnmp)
if(BRINDLE_DESKTOP)
  find_package(Qt6 6.4 QUIET COMPONENTS Gui Widgets)
  if(NOT Qt6_FOUND)
    message(STATUS "Qt 6 is not found: no desktop library")
  endif()
endif()

# All of the library's objects, once: the shared library, the tests and the benchmarks are made from them.
add_library(brindle_objects STATIC)
target_include_directories(brindle_objects PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_definitions(brindle_objects PRIVATE BRINDLE_BUILDING)
target_link_libraries(brindle_objects PUBLIC Threads::Threads PRIVATE LibXml2::LibXml2 ${NETSNMP_LINK_LIBRARIES})

# brindle_sources(FILE...): adds this folder's sources to the library. Where BRINDLE_MUTANTS has a file of that name,
# it is taken in its place (scripts/mutate).
function(brindle_sources)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
  foreach(file ${ARGN})
    if(BRINDLE_MUTANTS AND EXISTS ${BRINDLE_MUTANTS}/${folder}/${file})
      target_sources(brindle_objects PRIVATE ${BRINDLE_MUTANTS}/${folder}/${file})
      set_source_files_properties(${BRINDLE_MUTANTS}/${folder}/${file} TARGET_DIRECTORY brindle_objects PROPERTIES
                                  COMPILE_OPTIONS "-w;-include;${PROJECT_SOURCE_DIR}/tools/mutation/mutant.h")
    else()
      target_sources(brindle_objects PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${file})
    endif()
  endforeach()
endfunction()

# Test programs, benchmarks and fuzz targets may use the global constructors their frameworks need.
function(brindle_allow_global_constructors target)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${target} PRIVATE -Wno-global-constructors -Wno-exit-time-destructors)
  endif()
endfunction()

# Each test gets a folder of its own for temporary files: tests run side by side.
function(brindle_register_test name program)
  set(folder ${PROJECT_BINARY_DIR}/tmp/${name}/)
  file(MAKE_DIRECTORY ${folder})
  add_test(NAME ${name} COMMAND ${program})
  set_tests_properties(${name} PROPERTIES
                       ENVIRONMENT "TEST_TMPDIR=${folder};TMPDIR=${folder};BRINDLE_TEST_LOCALE=${ARGN}")
endfunction()

# brindle_test(NAME SOURCES FILE... [LIBRARIES TARGET...]): one test program, linked against the objects.
# In plain builds it is registered twice: as it is, and under a locale with decimal commas (label "locale").
function(brindle_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  if(NOT BRINDLE_TESTS)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE brindle_testing ${arg_LIBRARIES})
  target_compile_definitions(${name} PRIVATE BRINDLE_TEST_FOLDER="${CMAKE_CURRENT_SOURCE_DIR}")
  brindle_allow_global_constructors(${name})
  brindle_register_test(${name} ${name})
  if(BRINDLE_PLAIN_CODE)
    brindle_register_test(${name}_german ${name} de_DE.UTF-8)
    set_tests_properties(${name}_german PROPERTIES LABELS locale)
  endif()
endfunction()

# brindle_bench(NAME SOURCES FILE... [LIBRARIES TARGET...]): one benchmark program on Google Benchmark (its main
# function included), made in builds with BRINDLE_BENCH. scripts/bench runs all of them.
function(brindle_bench name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  if(NOT BRINDLE_BENCH)
    return()
  endif()
  find_package(benchmark REQUIRED)
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE brindle_objects ${arg_LIBRARIES} benchmark::benchmark_main)
  brindle_allow_global_constructors(${name})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bench)
endfunction()

# brindle_fuzz(NAME SOURCES FILE... [LIBRARIES TARGET...] [DICT FILE] CORPUS FOLDER): one fuzz target. SOURCES
# define LLVMFuzzerTestOneInput. With BRINDLE_FUZZ it becomes a libFuzzer program that scripts/fuzz runs; in
# ordinary builds the same source becomes NAME_replay, a test that runs every file of the corpus once. Paths are
# relative to the calling folder.
function(brindle_fuzz name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "DICT;CORPUS" "SOURCES;LIBRARIES")
  if(NOT arg_CORPUS)
    message(FATAL_ERROR "brindle_fuzz(${name}): CORPUS is missing")
  endif()
  cmake_path(ABSOLUTE_PATH arg_CORPUS NORMALIZE)
  set(dictionary "")
  if(arg_DICT)
    cmake_path(ABSOLUTE_PATH arg_DICT NORMALIZE)
    set(dictionary -dict=${arg_DICT})
  endif()
  if(BRINDLE_FUZZ)
    add_executable(${name} ${arg_SOURCES})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzz)
    # What scripts/fuzz needs to know: the program, its dictionary (or nothing), its corpus.
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/fuzz/${name}.target
         CONTENT "$<TARGET_FILE:${name}>\n${arg_DICT}\n${arg_CORPUS}\n")
    # New inputs go to a folder of the build, which comes first; the corpus itself is only read.
    set(found ${PROJECT_BINARY_DIR}/fuzz/found/${name})
    file(MAKE_DIRECTORY ${found})
    add_test(NAME ${name} COMMAND ${name} -max_total_time=${BRINDLE_FUZZ_SECONDS} -timeout=10
             -rss_limit_mb=1024 ${dictionary} ${found} ${arg_CORPUS})
  elseif(BRINDLE_TESTS)
    set(program ${name}_replay)
    add_executable(${program} ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    add_test(NAME ${program} COMMAND ${program} ${arg_CORPUS})
    set_tests_properties(${program} PROPERTIES TIMEOUT 120)
    set(name ${program})
  else()
    return()
  endif()
  target_link_libraries(${name} PRIVATE brindle_objects ${arg_LIBRARIES})
  brindle_allow_global_constructors(${name})
endfunction()
