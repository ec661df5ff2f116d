# Shared compile settings for the project's own targets.

if(ZONFRA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
  # Outside programs (Ardour) cannot load a sanitized plug-in; their tests step aside.
  add_compile_definitions(ZONFRA_SANITIZED=1)
endif()

# Warnings are errors in our own code (third-party headers come in as SYSTEM).
function(zonfra_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wno-missing-field-initializers -Werror)
endfunction()

# The audio path is checked bit for bit against recorded output: no fused multiply-adds or other
# contractions, whatever instruction set a build targets, so that every build type sounds the same.
function(zonfra_exact_float target)
  target_compile_options(${target} PRIVATE -ffp-contract=off -fno-fast-math)
endfunction()

# A static library made of every source below the given folder, so that adding a file needs no
# build-script change.
function(zonfra_folder_library target)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.c)
  # Sources in a "plugin-only" folder go into the plug-in library alone.
  list(FILTER sources EXCLUDE REGEX "/plugin-only/")
  if(NOT sources)
    set(sources ${PROJECT_SOURCE_DIR}/cmake/anchor.cpp)
  endif()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  zonfra_warnings(${target})
endfunction()

# A GoogleTest executable registered with CTest.
function(zonfra_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/QuietUpdates.cpp)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  zonfra_warnings(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT
                       "ZONFRA_PLUGIN=$<TARGET_FILE:zonfra_plugin>")
endfunction()

# A GoogleTest executable `test_<name>` that opens windows: CTest runs it as `<name>` inside a virtual
# X server with Mesa's software GL. Without xvfb-run it runs as it is and skips when there is no display.
function(zonfra_window_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  find_package(X11 REQUIRED)
  add_executable(test_${name} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/QuietUpdates.cpp)
  target_link_libraries(test_${name} PRIVATE ${ARG_LIBS} X11::X11 GTest::gtest GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  add_dependencies(test_${name} zonfra_plugin)
  zonfra_warnings(test_${name})
  find_program(ZONFRA_XVFB_RUN xvfb-run)
  if(ZONFRA_XVFB_RUN)
    add_test(NAME ${name} COMMAND ${ZONFRA_XVFB_RUN} -a -s "-screen 0 1280x1024x24" $<TARGET_FILE:test_${name}>)
  else()
    add_test(NAME ${name} COMMAND test_${name})
  endif()
  set(environment "ZONFRA_PLUGIN=$<TARGET_FILE:zonfra_plugin>")
  if(ZONFRA_SANITIZE)
    # Mesa's GL driver leaves allocations behind in modules it has unloaded, which the leak checker
    # cannot name or suppress; leaks of our own code are checked by the tests without a window.
    list(APPEND environment "ASAN_OPTIONS=detect_leaks=0")
  endif()
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}")
endfunction()
