# morvane_add_application(<target> <source>...
#                         [TEXTS <file>] [ICON <file>] [MANIFEST unaware|system|per-monitor]
#                         [VERSION <version> [COMPANY <text>] [COPYRIGHT <text>] [DESCRIPTION <text>] [PRODUCT <text>]])
#
# Adds a windowed program that is linked with Morvane and finds it: the DLL is copied beside it.
#
#   TEXTS      the library's own texts, translated; see morvane_embed_string_script. Unless told, the English ones.
#   ICON       an .ico file: the icon of the program's file and of its windows (resource 1).
#   MANIFEST   with the common controls of version 6 and the supported systems, Windows 7 and later. What follows says
#              what the program knows of the pixel density: nothing, so that the system scales its windows; that of
#              the main monitor when the user logged in; or that of each monitor, as it changes.
#   VERSION    a version resource; see morvane_embed_version.
#
# The sources, resource scripts among them, may be added to later with target_sources, as for any target.
include("${CMAKE_CURRENT_LIST_DIR}/MorvaneEmbedStringScript.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/MorvaneEmbedVersion.cmake")

function(morvane_add_application target)
  set(version_texts COMPANY COPYRIGHT DESCRIPTION PRODUCT)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TEXTS;ICON;MANIFEST;VERSION;${version_texts}" "")
  if(NOT arg_UNPARSED_ARGUMENTS OR arg_KEYWORDS_MISSING_VALUES)
    message(FATAL_ERROR "morvane_add_application(${target}): no sources, or no value behind ${arg_KEYWORDS_MISSING_VALUES}")
  endif()
  add_executable(${target} WIN32 ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${target} PRIVATE Morvane::Morvane)
  if(MINGW)
    # Nothing of the compiler's own runtime is needed beside the program.
    target_link_options(${target} PRIVATE -static)
  endif()
  # The program looks for the library beside itself.
  add_custom_command(TARGET ${target} POST_BUILD COMMAND_EXPAND_LISTS
    COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_RUNTIME_DLLS:${target}> $<TARGET_FILE_DIR:${target}>)

  # Menus, dialogs and messages of the library take their texts from the application.
  if(NOT DEFINED arg_TEXTS)
    set(arg_TEXTS "${Morvane_ENGLISH_TEXTS}")
  endif()
  morvane_embed_string_script(${target} "${arg_TEXTS}")
  if(DEFINED arg_ICON)
    get_filename_component(icon "${arg_ICON}" ABSOLUTE)
    if(NOT EXISTS "${icon}")
      message(FATAL_ERROR "The icon ${icon} does not exist")
    endif()
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}-Icon.rc")
    file(CONFIGURE OUTPUT "${script}" CONTENT "1 ICON \"${icon}\"\n" @ONLY)
    target_sources(${target} PRIVATE "${script}")
    set_source_files_properties("${script}" TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS "${icon}")
  endif()
  if(DEFINED arg_MANIFEST)
    morvane_embed_manifest(${target} ${arg_MANIFEST})
  endif()
  set(version_arguments)
  foreach(name IN LISTS version_texts)
    if(DEFINED arg_${name})
      string(REPLACE ";" "\\;" value "${arg_${name}}")
      list(APPEND version_arguments ${name} "${value}")
    endif()
  endforeach()
  if(DEFINED arg_VERSION)
    morvane_embed_version(${target} ${arg_VERSION} ${version_arguments})
  elseif(version_arguments)
    message(FATAL_ERROR "morvane_add_application(${target}): ${version_arguments} without VERSION")
  endif()
endfunction()

# morvane_embed_manifest(<target> unaware|system|per-monitor): the manifest that morvane_add_application tells of.
function(morvane_embed_manifest target awareness)
  # What systems before and since Windows 10 of 2016 go by.
  if(awareness STREQUAL "unaware")
    set(dpi_aware false)
    set(dpi_awareness unaware)
  elseif(awareness STREQUAL "system")
    set(dpi_aware true)
    set(dpi_awareness system)
  elseif(awareness STREQUAL "per-monitor")
    set(dpi_aware true/pm)
    set(dpi_awareness "PerMonitorV2, PerMonitor")
  else()
    message(FATAL_ERROR "The manifest of ${target} is to be 'unaware', 'system' or 'per-monitor', not '${awareness}'")
  endif()
  set(manifest "${CMAKE_CURRENT_BINARY_DIR}/${target}.manifest")
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/MorvaneApplication.manifest.in" "${manifest}" @ONLY)
  if(MSVC)
    # Microsoft's linker makes one out of this and its own.
    target_sources(${target} PRIVATE "${manifest}")
  else()
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}-Manifest.rc")
    file(CONFIGURE OUTPUT "${script}" CONTENT "1 24 \"${manifest}\"\n" @ONLY)
    target_sources(${target} PRIVATE "${script}")
    set_source_files_properties("${script}" TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS "${manifest}")
  endif()
endfunction()
