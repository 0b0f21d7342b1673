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

if(VELMARA_SANITIZE)
  set(flags -fsanitize=${VELMARA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(velmara_options INTERFACE ${flags})
  target_link_options(velmara_options INTERFACE ${flags})
endif()

# velmara_layer(NAME SOURCES ... LINKS ... PRIVATE_LINKS ...): the static library of one layer.
# A layer links only the layers below it, so an arrow that points upward fails to link, and
# tools/check_layers.py refuses it as an include.
function(velmara_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(velmara_${name} STATIC ${arg_SOURCES})
  target_link_libraries(velmara_${name} PUBLIC velmara_options ${arg_LINKS}
                                        PRIVATE ${arg_PRIVATE_LINKS})
endfunction()

# velmara_test(NAME SOURCES ... LINKS ... PROPERTIES ...): one test program, its cases known to
# ctest with these properties.
function(velmara_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  add_executable(${name}_test ${arg_SOURCES})
  target_link_libraries(${name}_test PRIVATE velmara_options ${arg_LINKS} GTest::gtest
                                             GTest::gmock)
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  gtest_discover_tests(${name}_test DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300
                       ENVIRONMENT "QT_QPA_PLATFORM=offscreen" ${arg_PROPERTIES})
endfunction()
