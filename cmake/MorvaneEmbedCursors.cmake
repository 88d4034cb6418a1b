# morvane_embed_cursors(<target> <folder>): puts the cursors that the text files of a folder draw into the resources
# of a target of the calling folder. draw-cursors.py tells what is in those files.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(MORVANE_DRAW_CURSORS "${CMAKE_CURRENT_LIST_DIR}/draw-cursors.py")

function(morvane_embed_cursors target folder)
  get_filename_component(folder "${folder}" ABSOLUTE)
  file(GLOB files CONFIGURE_DEPENDS "${folder}/*.txt")
  set(resources "${CMAKE_CURRENT_BINARY_DIR}/${target}-Cursors.res")
  add_custom_command(OUTPUT "${resources}"
    COMMAND Python3::Interpreter "${MORVANE_DRAW_CURSORS}" "${folder}" "${resources}"
    DEPENDS ${files} "${MORVANE_DRAW_CURSORS}"
    COMMENT "Drawing the cursors of ${target}" VERBATIM)
  if(NOT MSVC)
    # Microsoft's linker takes the file as it is, others an object file.
    set(object "${CMAKE_CURRENT_BINARY_DIR}/${target}-Cursors.obj")
    add_custom_command(OUTPUT "${object}"
      COMMAND "${CMAKE_RC_COMPILER}" -J res -O coff "${resources}" "${object}"
      DEPENDS "${resources}"
      COMMENT "Compiling the cursors of ${target}" VERBATIM)
    set(resources "${object}")
  endif()
  set_source_files_properties("${resources}" PROPERTIES EXTERNAL_OBJECT TRUE GENERATED TRUE)
  target_sources(${target} PRIVATE "${resources}")
endfunction()
