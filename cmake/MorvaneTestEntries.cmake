# Entries for ctest out of GoogleTest sources, read when the project is configured: the program itself need not
# run, which here would take Wine.

# morvane_test_names(<variable> <source>): the tests that the source defines, as Suite.Name; disabled ones too.
function(morvane_test_names variable source)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
  file(READ ${source} text)
  string(REGEX REPLACE "//[^\n]*" "" text "${text}")
  set(blank "[ \t\r\n]*")
  set(word "([A-Za-z0-9_]+)")
  string(REGEX MATCHALL "[ \t\r\n](TEST|TEST_F|TEST_P|TYPED_TEST|TEST_IN_RUN)${blank}\\(${blank}${word}${blank},${blank}${word}"
    found "\n${text}")
  set(names)
  foreach(item IN LISTS found)
    string(REGEX REPLACE ".*\\(${blank}${word}${blank},${blank}${word}" "\\1.\\2" name "${item}")
    list(APPEND names ${name})
  endforeach()
  if(NOT names)
    message(FATAL_ERROR "${source} defines no test")
  endif()
  set(${variable} ${names} PARENT_SCOPE)
endfunction()

# morvane_limit_test_entry(<name> <seconds>): a program that hangs is stopped by wine-run after so many seconds;
# ctest's own limit stands behind it.
function(morvane_limit_test_entry name seconds)
  math(EXPR last_resort "${seconds} + 40")
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT MORVANE_RUN_LIMIT=${seconds}
    TIMEOUT ${last_resort})
endfunction()

# morvane_add_test_entry(<name> <target> <filter> <seconds>): one entry, which runs the tests that fit the filter.
function(morvane_add_test_entry name target filter seconds)
  add_test(NAME ${name} COMMAND ${target} --gtest_filter=${filter})
  set_tests_properties(${name} PROPERTIES FAIL_REGULAR_EXPRESSION "Running 0 tests")
  morvane_limit_test_entry(${name} ${seconds})
endfunction()

# morvane_add_file_entries(<prefix> <target> <source>...): an entry for each source, with all its suites.
function(morvane_add_file_entries prefix target)
  foreach(source IN LISTS ARGN)
    morvane_test_names(names ${source})
    list(TRANSFORM names REPLACE "\\..*" "")
    list(REMOVE_DUPLICATES names)
    # The last three forms are those of tests with parameters.
    list(TRANSFORM names REPLACE "(.+)" "\\1.*:\\1/*:*/\\1.*:*/\\1/*")
    list(JOIN names ":" filter)
    get_filename_component(name ${source} NAME_WE)
    morvane_add_test_entry(${prefix}.${name} ${target} "${filter}" 120)
  endforeach()
endfunction()

# morvane_add_single_entries(<prefix> <target> <source>...): an entry for each test, so that each has a process
# of its own.
function(morvane_add_single_entries prefix target)
  foreach(source IN LISTS ARGN)
    morvane_test_names(names ${source})
    foreach(name IN LISTS names)
      if(NOT name MATCHES "DISABLED_")
        morvane_add_test_entry(${prefix}.${name} ${target} ${name} 60)
      endif()
    endforeach()
  endforeach()
endfunction()
