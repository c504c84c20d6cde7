# morvex_windows_resources(PROGRAM DESCRIPTION) gives a program for Windows its icon, its version and
# its manifest. They are compiled apart from its sources: the compiler's options are not theirs.

set(MORVEX_WINDOWS_FILES ${PROJECT_SOURCE_DIR}/packaging/windows)

function(morvex_windows_resources target description)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${MORVEX_WINDOWS_FILES}/morvex.rc.in ${script} @ONLY)
  set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS
    "${MORVEX_WINDOWS_FILES}/morvex.ico;${MORVEX_WINDOWS_FILES}/morvex.manifest")
  add_library(${target}-resources OBJECT ${script})
  set_target_properties(${target}-resources PROPERTIES LINKER_LANGUAGE CXX)
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}-resources>)
endfunction()
