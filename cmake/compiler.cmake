# velmara_options: what every target of ours is compiled with.
#
# -ffp-contract=off holds for the whole tree: the filter's results are defined to the last bit, so
# no compiler may fuse a multiplication and an addition that are rounded apart.
add_library(velmara_options INTERFACE)
target_compile_features(velmara_options INTERFACE cxx_std_20)
target_compile_options(velmara_options INTERFACE -Wall -Wextra -Wconversion -Wshadow
                                                 -ffp-contract=off)
# GCC 12 sees overlapping copies in std::string's operator+ where there are none (its bug 105651).
target_compile_options(velmara_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_include_directories(velmara_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(VELMARA_WERROR)
  target_compile_options(velmara_options INTERFACE -Werror)
endif()

# What keeps a fault from being made use of, in optimised builds; the sanitizers' own checks of memory
# and a debugger are hindered by it. tools/check_hardening.sh looks for it in the program.
if(NOT VELMARA_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(
    velmara_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong
                              -fstack-clash-protection -fPIE)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(velmara_options INTERFACE -fcf-protection)
  endif()
  target_link_options(velmara_options INTERFACE -pie -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()

if(VELMARA_SANITIZE)
  set(flags -fsanitize=${VELMARA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(velmara_options INTERFACE ${flags})
  target_link_options(velmara_options INTERFACE ${flags})
endif()

if(VELMARA_FUZZ)
  # What leads the fuzzer to new paths; its main comes with the targets alone.
  target_compile_options(velmara_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(velmara_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The files of a target compiled a dozen at a time: most of the time of one alone goes into the
# headers that all of them read. Vector kernels stay apart: they include themselves, once for each
# instruction set.
function(velmara_unity target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${VELMARA_UNITY} UNITY_BUILD_BATCH_SIZE 12)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_source_file_property(is_generated ${source} GENERATED)
    if(is_generated)
      continue()
    endif()
    file(STRINGS ${source} kernel REGEX "hwy/foreach_target.h" LIMIT_COUNT 1)
    if(kernel)
      set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
endfunction()

# velmara_soname(VARIABLE LIBRARY): the library's own name, with the version of the interface that
# its headers are of: what it is loaded by when the program does not link it.
function(velmara_soname variable library)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${library} OUTPUT_VARIABLE headers
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCH "SONAME +([^\n ]+)" soname "${headers}")
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

# velmara_layer(NAME SOURCES ... LINKS ... PRIVATE_LINKS ...): the static library of one layer.
# A layer links only the layers below it, so an arrow that points upward fails to link, and
# tools/check_layers.py refuses it as an include.
function(velmara_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(velmara_${name} STATIC ${arg_SOURCES})
  target_link_libraries(velmara_${name} PUBLIC velmara_options ${arg_LINKS}
                                        PRIVATE ${arg_PRIVATE_LINKS})
  velmara_unity(velmara_${name})
endfunction()

# velmara_test(NAME SOURCES ... LINKS ... PROPERTIES ...): one test program, its cases known to
# ctest with these properties and the name as their label.
function(velmara_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  add_executable(${name}_test ${arg_SOURCES})
  target_link_libraries(${name}_test PRIVATE velmara_options ${arg_LINKS} GTest::gtest
                                             GTest::gmock)
  velmara_unity(${name}_test)
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  gtest_discover_tests(${name}_test DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${name} TIMEOUT 300
                       ENVIRONMENT "QT_QPA_PLATFORM=offscreen"
                       # What GLib complains of is a fault in how libvips is used.
                       ENVIRONMENT_MODIFICATION "G_DEBUG=set:fatal-criticals" ${arg_PROPERTIES})
endfunction()
