# One target per room. Every .cpp of the folder belongs to it.
#
#   tessera_room(NAME [WINDOWS_ONLY] [USES ROOM...] [SYSTEM LIBRARY...] [PORTABLE FILE...])
#
# PORTABLE: of a room that is otherwise about Windows, the files that native builds take too.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(tessera_flags INTERFACE)
target_include_directories(tessera_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(tessera_flags INTERFACE -Wall -Wextra -Werror)
if(WIN32)
  target_compile_definitions(tessera_flags INTERFACE
    _WIN32_WINNT=0x0601 WINVER=0x0601 _WIN32_IE=0x0600 STRICT NOMINMAX)
endif()
if(TESSERA_SANITIZE)
  target_compile_options(tessera_flags INTERFACE
    -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all)
  target_compile_definitions(tessera_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(tessera_flags INTERFACE -fsanitize=address,undefined)
endif()
if(TESSERA_FUZZ)
  target_compile_options(tessera_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

function(tessera_room name)
  cmake_parse_arguments(ROOM "WINDOWS_ONLY" "" "USES;SYSTEM;PORTABLE" ${ARGN})
  if(ROOM_WINDOWS_ONLY AND NOT WIN32 AND NOT ROOM_PORTABLE)
    return()
  endif()
  if(ROOM_WINDOWS_ONLY AND NOT WIN32)
    set(sources ${ROOM_PORTABLE})
  else()
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    if(NOT WIN32)
      list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
    else()
      list(FILTER sources EXCLUDE REGEX "_native\\.cpp$")
    endif()
  endif()
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE tessera_flags)
    set(scope INTERFACE)
  else()
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC tessera_flags)
    set(scope PUBLIC)
  endif()
  foreach(used ${ROOM_USES})
    if(TARGET ${used})
      target_link_libraries(${name} ${scope} ${used})
    endif()
  endforeach()
  if(WIN32)
    target_link_libraries(${name} ${scope} ${ROOM_SYSTEM})
  endif()
endfunction()

# The room's tests: every .cpp of the folder, one program, one ctest entry.
#
#   tessera_tests(ROOM [WINDOWS_ONLY] [USES ROOM...] [DEFINITIONS NAME=VALUE...])
function(tessera_tests room)
  cmake_parse_arguments(TESTS "WINDOWS_ONLY" "" "USES;DEFINITIONS" ${ARGN})
  if(TESTS_WINDOWS_ONLY AND NOT WIN32)
    return()
  endif()
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  if(NOT WIN32)
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  add_executable(test_${room} ${sources})
  target_include_directories(test_${room} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(test_${room} PRIVATE
    TESSERA_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data" ${TESTS_DEFINITIONS})
  foreach(used ${room} ${TESTS_USES})
    if(TARGET ${used})
      target_link_libraries(test_${room} PRIVATE ${used})
    endif()
  endforeach()
  target_link_libraries(test_${room} PRIVATE GTest::gtest GTest::gtest_main)
  add_test(NAME ${room} COMMAND test_${room})
  set_tests_properties(${room} PROPERTIES TIMEOUT 300)
endfunction()

# The same program once more with another user's dates (de_DE) or a double-byte code page (ja_JP). Native
# builds know the second alone.
#
#   tessera_tests_in(LOCALE ROOM [ARGUMENT...])
function(tessera_tests_in locale room)
  if(WIN32 OR locale STREQUAL ja_JP)
    add_test(NAME ${room}_${locale} COMMAND test_${room} ${ARGN})
    set_tests_properties(${room}_${locale} PROPERTIES TIMEOUT 300 ENVIRONMENT LC_ALL=${locale}.UTF-8)
  endif()
endfunction()

# The same program once more with a user whose language has another code page than the system.
#
#   tessera_tests_for_user(LOCALE ROOM [ARGUMENT...])
function(tessera_tests_for_user locale room)
  if(WIN32)
    add_test(NAME ${room}_${locale} COMMAND test_${room} ${ARGN})
    set_tests_properties(${room}_${locale} PROPERTIES TIMEOUT 300
      ENVIRONMENT "LC_ALL=;LC_CTYPE=C.UTF-8;LANG=${locale}.UTF-8")
  endif()
endfunction()
