# morvane_embed_string_script(<target> <file> [BANK <number>]): puts a string script, a text file in UTF-8, into
# the resources of an application, where Morvane finds the strings under "SSTR/<number>/<id>". The bank 1000, which
# is what BANK says unless told otherwise, is the library's own: every application needs one. The variable
# Morvane_ENGLISH_TEXTS names the English one that comes with the library.
function(morvane_embed_string_script target file)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "BANK" "")
  if(arg_UNPARSED_ARGUMENTS OR arg_KEYWORDS_MISSING_VALUES)
    message(FATAL_ERROR "morvane_embed_string_script(<target> <file> [BANK <number>])")
  endif()
  if(NOT DEFINED arg_BANK)
    set(arg_BANK 1000)
  endif()
  get_filename_component(file "${file}" ABSOLUTE)
  if(NOT EXISTS "${file}")
    message(FATAL_ERROR "The string script ${file} does not exist")
  endif()
  set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}-SSTR-${arg_BANK}.rc")
  file(CONFIGURE OUTPUT "${script}" CONTENT "${arg_BANK} SSTR \"${file}\"\n" @ONLY)
  target_sources(${target} PRIVATE "${script}")
  set_source_files_properties("${script}" TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS "${file}")
endfunction()
