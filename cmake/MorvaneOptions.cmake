# MorvaneOptions: the compiler options every target of this project shares.
# MorvaneBoost: Boost's header-only smart pointers as a system include folder.
add_library(MorvaneOptions INTERFACE)
target_compile_definitions(MorvaneOptions INTERFACE UNICODE _UNICODE STRICT NOMINMAX WIN32_LEAN_AND_MEAN
  WINVER=0x0601 _WIN32_WINNT=0x0601 _CRT_SECURE_NO_WARNINGS)
if(MSVC)
  target_compile_options(MorvaneOptions INTERFACE /W4 /WX /utf-8 /permissive- /Zc:__cplusplus)
else()
  # File names in messages and debug information start at the top of the project, also when a compiler cache has
  # made the names relative to the build folder.
  file(RELATIVE_PATH MORVANE_TOP ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
  target_compile_options(MorvaneOptions INTERFACE -Wall -Wextra -Werror
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -ffile-prefix-map=${CMAKE_BINARY_DIR}/=
    -fmacro-prefix-map=${MORVANE_TOP}= -fdebug-prefix-map=${MORVANE_TOP}=
    # GCC 12 gives this one falsely where it optimises joined strings.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  # Nothing of the compiler's own runtime is needed beside the programs, and a release carries no symbols.
  target_link_options(MorvaneOptions INTERFACE -static $<$<CONFIG:Release>:-s>)
  # An eighth smaller than with -O3 alone: the time goes into the platform, not into loops of the library.
  target_compile_options(MorvaneOptions INTERFACE $<$<CONFIG:Release>:-O2 -ffunction-sections -fdata-sections>)
  target_link_options(MorvaneOptions INTERFACE $<$<CONFIG:Release>:-Wl,--gc-sections>)
  if(MORVANE_CHECKED)
    # The check for a function that ends without its result would hide the warning of it.
    target_compile_options(MorvaneOptions INTERFACE
      -fsanitize=undefined -fno-sanitize=return -fsanitize-undefined-trap-on-error)
    target_compile_definitions(MorvaneOptions INTERFACE _GLIBCXX_ASSERTIONS)
    # The newest debug information that Wine's backtraces understand.
    target_compile_options(MorvaneOptions INTERFACE -gdwarf-4)
    # Much faster, if scripts/setup could put it where the compiler looks; otherwise it is not used.
    target_link_options(MorvaneOptions INTERFACE -fuse-ld=lld)
  endif()
endif()

add_library(MorvaneBoost INTERFACE)
if(CMAKE_CROSSCOMPILING)
  # Only Boost, and none of the host's own C headers: a folder with one link in it.
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/boost-include)
  file(CREATE_LINK /usr/include/boost ${CMAKE_BINARY_DIR}/boost-include/boost SYMBOLIC)
  target_include_directories(MorvaneBoost SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/boost-include)
else()
  find_package(Boost REQUIRED)
  target_link_libraries(MorvaneBoost INTERFACE Boost::headers)
endif()
