# One folder, one target. morvex_room(NAME SOURCES file... USES target...) makes the static library
# morvex_NAME of the current folder; morvex_options(TARGET) sets the project's compiler options on any
# target. GCC and Clang build everything; an option that only one of them knows is set for it alone.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

function(morvex_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond;-Wlogical-op>
    -Wnull-dereference
    $<$<BOOL:${MORVEX_WERROR}>:-Werror>
    # GCC 12 sees overlapping copies in the standard library's own "literal" + std::string.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  if(MORVEX_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
      -Wno-null-dereference)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  if(MORVEX_FUZZER)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

function(morvex_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES" ${ARGN})
  add_library(morvex_${name} STATIC ${ROOM_SOURCES})
  list(TRANSFORM ROOM_USES PREPEND morvex_)
  target_link_libraries(morvex_${name} PUBLIC ${ROOM_USES})
  morvex_options(morvex_${name})
endfunction()

# Programs keep settings and log beside themselves, so they are installed into a folder of their own
# and are called through links.
set(MORVEX_INSTALL_FOLDER lib/morvex)

# A program that can be copied to another machine alone brings the C++ library with it.
function(morvex_program name)
  cmake_parse_arguments(PROGRAM "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${PROGRAM_SOURCES})
  list(TRANSFORM PROGRAM_USES PREPEND morvex_)
  target_link_libraries(${name} PRIVATE ${PROGRAM_USES})
  morvex_options(${name})
  target_compile_definitions(${name} PRIVATE MORVEX_VERSION="${PROJECT_VERSION}")
  if(NOT MORVEX_SANITIZE)
    target_link_options(${name} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
  install(TARGETS ${name} RUNTIME DESTINATION ${MORVEX_INSTALL_FOLDER})
  set(link ${PROJECT_BINARY_DIR}/links/${name})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
  file(CREATE_LINK ../${MORVEX_INSTALL_FOLDER}/${name} ${link} SYMBOLIC)
  install(FILES ${link} DESTINATION bin)
endfunction()
