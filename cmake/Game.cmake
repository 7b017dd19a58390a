# A game is a folder of scripts and a folder of assets:
#
#   add_game(NAME SCRIPTS folder ASSETS folder [TITLE "Name"] [VERSION 1.0.0] [SUMMARY "A sentence"] [AUTOPLAYER folder]
#            [README file INSTALL SINGLE])
#
# makes the program NAME and its data file NAME.dat beside it. Scripts include "NAME/assets.h", which has the assets by name,
# "runtime/script.h", "toolkit/..." and headers of their own folder by its name; nothing else can be found. TITLE stands
# above the window and in the desktop's menu. AUTOPLAYER, a folder that may lie among the scripts, defines arena::apps::make_autoplayer()
# and sees the whole runtime; without it the program has no --demo. INSTALL lets `cmake --install` take the game along.
# SINGLE: who starts it while it runs is told so, and it does not start a second time.
#
# Besides the program there are the object libraries NAME_scripts and NAME_about, for tests that link them.
set(ARENA_ROOT ${CMAKE_CURRENT_LIST_DIR}/..)
cmake_path(NORMAL_PATH ARENA_ROOT)
string(REGEX REPLACE "/$" "" ARENA_ROOT ${ARENA_ROOT})
set(GAME_HEADERS ${CMAKE_CURRENT_BINARY_DIR}/generated/games)

# Whose terms the program and its data are under, besides its own: what is compiled in, and what the data was made with.
set(LICENSED_PACKAGES nlohmann-json3-dev libflatbuffers-dev fonts-dejavu-core timgm6mb-soundfont)

function(add_game NAME)
  cmake_parse_arguments(PARSE_ARGV 1 GAME "INSTALL;SINGLE" "SCRIPTS;ASSETS;TITLE;VERSION;SUMMARY;AUTOPLAYER;README" "")
  if(GAME_UNPARSED_ARGUMENTS OR NOT GAME_SCRIPTS OR NOT GAME_ASSETS)
    message(FATAL_ERROR "add_game(${NAME}): give SCRIPTS and ASSETS; unknown: '${GAME_UNPARSED_ARGUMENTS}'")
  endif()
  foreach(FOLDER SCRIPTS ASSETS AUTOPLAYER README)
    if(GAME_${FOLDER})
      cmake_path(ABSOLUTE_PATH GAME_${FOLDER} NORMALIZE)
      if(NOT EXISTS ${GAME_${FOLDER}})
        message(FATAL_ERROR "add_game(${NAME}): there is no ${GAME_${FOLDER}}")
      endif()
    endif()
  endforeach()
  foreach(DEFAULT "TITLE;${NAME}" "VERSION;0.0.0" "SUMMARY;${NAME}")
    list(GET DEFAULT 0 KEY)
    if(NOT GAME_${KEY})
      list(GET DEFAULT 1 GAME_${KEY})
    endif()
  endforeach()
  set(HEADER ${GAME_HEADERS}/${NAME}/assets.h)
  set(DATA ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.dat)

  # The tools run on the machine that builds: a cross-build takes what those of a finished native build made.
  file(GLOB_RECURSE ASSET_SOURCES CONFIGURE_DEPENDS ${GAME_ASSETS}/*)
  if(CMAKE_CROSSCOMPILING)
    set(NATIVE_HEADER ${ARENA_NATIVE_BUILD}/generated/games/${NAME}/assets.h)
    add_custom_command(OUTPUT ${HEADER} COMMAND ${CMAKE_COMMAND} -E copy ${NATIVE_HEADER} ${HEADER} DEPENDS ${NATIVE_HEADER})
    add_custom_command(OUTPUT ${DATA} COMMAND ${CMAKE_COMMAND} -E copy ${ARENA_NATIVE_BUILD}/${NAME}.dat ${DATA}
      DEPENDS ${ARENA_NATIVE_BUILD}/${NAME}.dat)
  else()
    set(JSON_SOURCES ${ASSET_SOURCES})
    list(FILTER JSON_SOURCES INCLUDE REGEX "\\.json$")
    add_custom_command(OUTPUT ${HEADER}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${GAME_HEADERS}/${NAME}
      COMMAND asset_index ${GAME_ASSETS} ${HEADER}
      DEPENDS asset_index ${JSON_SOURCES})
    # Repacked whenever a source changed; rendered pictures are kept by their content.
    add_custom_command(OUTPUT ${DATA} COMMAND pack ${GAME_ASSETS} ${ARENA_ROOT}/build/asset_cache ${DATA} DEPENDS pack ${ASSET_SOURCES})
  endif()
  add_custom_target(${NAME}_header DEPENDS ${HEADER})
  add_custom_target(${NAME}_data ALL DEPENDS ${DATA})

  file(GLOB_RECURSE SCRIPTS CONFIGURE_DEPENDS ${GAME_SCRIPTS}/*.cpp)
  if(GAME_AUTOPLAYER)
    file(GLOB AUTOPLAYER CONFIGURE_DEPENDS ${GAME_AUTOPLAYER}/*.cpp)
    list(REMOVE_ITEM SCRIPTS ${AUTOPLAYER})
    set(MAKE_AUTOPLAYER "&make_autoplayer")
  else()
    set(MAKE_AUTOPLAYER "nullptr")
  endif()
  set(IS_SINGLE false)
  if(GAME_SINGLE)
    set(IS_SINGLE true)
  endif()
  add_library(${NAME}_scripts OBJECT ${SCRIPTS})
  cmake_path(GET GAME_SCRIPTS FILENAME FOLDER)
  set(OWN_HEADERS ${CMAKE_CURRENT_BINARY_DIR}/generated/scripts/${NAME})
  file(MAKE_DIRECTORY ${OWN_HEADERS})
  file(CREATE_LINK ${GAME_SCRIPTS} ${OWN_HEADERS}/${FOLDER} SYMBOLIC)
  set_target_properties(${NAME}_scripts PROPERTIES INCLUDE_DIRECTORIES "${SCRIPT_FACE};${GAME_HEADERS};${OWN_HEADERS}")
  add_dependencies(${NAME}_scripts ${NAME}_header)
  if(TARGET script_face)
    add_dependencies(${NAME}_scripts script_face)
  endif()

  file(CONFIGURE OUTPUT ${GAME_HEADERS}/${NAME}/about.cpp CONTENT [[
#include "apps/game_description.h"

namespace arena::apps {
const GameDescription& game_description() {
  static const GameDescription description{"@NAME@", "@GAME_TITLE@", "@GAME_VERSION@", @MAKE_AUTOPLAYER@, @IS_SINGLE@};
  return description;
}
}  // namespace arena::apps
]] @ONLY)
  add_library(${NAME}_about OBJECT ${GAME_HEADERS}/${NAME}/about.cpp ${AUTOPLAYER})
  target_include_directories(${NAME}_about PRIVATE ${ARENA_ROOT})

  if(WIN32)
    add_windows_resources(${NAME} "${GAME_TITLE}" ${GAME_VERSION} ${GAME_ASSETS})
  endif()
  add_executable(${NAME} WIN32 ${RESOURCES} $<TARGET_OBJECTS:${NAME}_scripts> $<TARGET_OBJECTS:${NAME}_about> $<TARGET_OBJECTS:program>
    $<TARGET_OBJECTS:toolkit> $<TARGET_OBJECTS:engine> $<TARGET_OBJECTS:runtime>)
  target_link_libraries(${NAME} engine)
  add_dependencies(${NAME} ${NAME}_data)
  if(NOT WIN32 AND NOT EMSCRIPTEN)  # a package brings libraries along; those look for each other there, too
    set_target_properties(${NAME} PROPERTIES BUILD_RPATH "$ORIGIN/lib")
    target_link_options(${NAME} PRIVATE LINKER:--disable-new-dtags)
    configure_file(${ARENA_ROOT}/cmake/game.desktop.in ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.desktop @ONLY)
  endif()

  if(GAME_INSTALL AND NOT CMAKE_CROSSCOMPILING)
    install(TARGETS ${NAME} RUNTIME DESTINATION bin)
    install(FILES ${DATA} DESTINATION share/${NAME})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.desktop DESTINATION share/applications)
    if(EXISTS ${GAME_ASSETS}/icon.svg)
      install(FILES ${GAME_ASSETS}/icon.svg DESTINATION share/icons/hicolor/scalable/apps RENAME ${NAME}.svg)
    endif()
    if(GAME_README)
      install(FILES ${GAME_README} DESTINATION share/doc/${NAME} RENAME README.txt)
    endif()
    foreach(PACKAGE ${LICENSED_PACKAGES})
      install(FILES /usr/share/doc/${PACKAGE}/copyright DESTINATION share/doc/${NAME}/licences RENAME ${PACKAGE}.txt OPTIONAL)
    endforeach()
  endif()
endfunction()

# The icon and what the system shows of the program's file: RESOURCES of the caller.
function(add_windows_resources NAME TITLE VERSION ASSETS)
  set(FOLDER ${CMAKE_CURRENT_BINARY_DIR}/generated/windows/${NAME})
  set(ICON_LINE "")
  if(EXISTS ${ASSETS}/icon.svg)
    add_custom_command(OUTPUT ${FOLDER}/program.ico
      COMMAND Python3::Interpreter ${ARENA_ROOT}/tools/icon/make_icon.py ${ASSETS}/icon.svg ${FOLDER}/program.ico
      DEPENDS ${ASSETS}/icon.svg ${ARENA_ROOT}/tools/icon/make_icon.py)
    set(ICON ${FOLDER}/program.ico)
    set(ICON_LINE "1 ICON \"program.ico\"\n")
  endif()
  configure_file(${ARENA_ROOT}/apps/windows/program.manifest.in ${FOLDER}/program.manifest @ONLY)
  string(REPLACE "." "," NUMBERS ${VERSION})
  file(CONFIGURE OUTPUT ${FOLDER}/program.rc CONTENT
    "#define PROGRAM_NAME \"${NAME}\"\n#define PROGRAM_TITLE \"${TITLE}\"\n#define PROGRAM_VERSION_NUMBERS ${NUMBERS},0\n#define PROGRAM_VERSION_TEXT \"${VERSION}\"\n${ICON_LINE}#include \"apps/windows/program.rc\"\n")
  set_source_files_properties(${FOLDER}/program.rc PROPERTIES
    COMPILE_OPTIONS "-I${ARENA_ROOT};-I${FOLDER};--codepage=65001"
    OBJECT_DEPENDS "${ARENA_ROOT}/apps/windows/program.rc;${FOLDER}/program.manifest;${ICON}")
  set(RESOURCES ${FOLDER}/program.rc PARENT_SCOPE)
endfunction()
