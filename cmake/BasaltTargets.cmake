# Helpers that every folder's CMakeLists.txt uses, so that targets and tests look the same everywhere.

# basalt_library(NAME sources...): a static library whose headers are included from the top folder ("ado/session.h").
function(basalt_library name)
  add_library(${name} STATIC ${ARGN})
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/basalt>)
  target_link_libraries(${name} PUBLIC basalt_options)
endfunction()

# basalt_test(NAME SOURCES files... LIBRARIES targets...): a GoogleTest program; each of its tests becomes one of ctest.
# With WHOLE the program is one of ctest: for tests whose common beginning takes longer than they do.
# Under a sanitizer the whole program is one of ctest: the sanitizers' own start, a thousand times, takes longer than the
# tests.
function(basalt_test name)
  cmake_parse_arguments(arg "QT;WHOLE" "" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  find_package(GTest REQUIRED)
  include(GoogleTest)
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} basalt_options GTest::gmock)
  if(arg_QT)
    # Widget tests bring their own main, which makes the QApplication (tests/support/qt_main.cpp).
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/qt_main.cpp)
    target_link_libraries(${name} PRIVATE Qt6::Widgets Qt6::Test)
    list(APPEND arg_ENVIRONMENT QT_QPA_PLATFORM=offscreen)
  else()
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()
  target_compile_definitions(${name} PRIVATE BASALT_SOURCE_DIR="${PROJECT_SOURCE_DIR}" BASALT_BINARY_DIR="${CMAKE_BINARY_DIR}")
  if(BASALT_SANITIZE OR arg_WHOLE)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    # On a busy machine, with sanitizers, a program of windows takes ten minutes.
    set_tests_properties(${name} PROPERTIES TIMEOUT 1500 ENVIRONMENT "${arg_ENVIRONMENT}")
  else()
    gtest_discover_tests(${name} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 300 ENVIRONMENT "${arg_ENVIRONMENT}")
  endif()
endfunction()
