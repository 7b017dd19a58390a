# The decoders, each alone with libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer: a test runs each over its corpus in fuzz/corpus
# and so many inputs made of it.
set(FUZZ_RUNS 20000)
set(FUZZ_OPTIONS -fsanitize=fuzzer,address,undefined,float-cast-overflow -fno-sanitize-recover=undefined,float-cast-overflow -fno-omit-frame-pointer)

function(add_fuzz_target NAME)
  add_executable(fuzz_${NAME} fuzz/${NAME}.cpp ${ARGN})
  target_compile_options(fuzz_${NAME} PRIVATE ${FUZZ_OPTIONS})
  target_link_options(fuzz_${NAME} PRIVATE ${FUZZ_OPTIONS})
  target_link_libraries(fuzz_${NAME} ZLIB::ZLIB nlohmann_json::nlohmann_json)
  set(FOUND ${CMAKE_BINARY_DIR}/found/${NAME})
  file(MAKE_DIRECTORY ${FOUND})
  add_test(NAME fuzz_${NAME} COMMAND fuzz_${NAME} -runs=${FUZZ_RUNS} -seed=1 -timeout=20 -max_len=4096 -print_final_stats=1
    -artifact_prefix=${FOUND}- ${FOUND} ${CMAKE_SOURCE_DIR}/fuzz/corpus/${NAME})
endfunction()

enable_testing()
add_fuzz_target(ini engine/formats/ini_document.cpp)
add_fuzz_target(csv engine/formats/csv.cpp)
add_fuzz_target(bytes engine/formats/base64.cpp engine/formats/compression.cpp)
# Values live in a session.
file(GLOB VALUE_SOURCES CONFIGURE_DEPENDS runtime/memory/*.cpp runtime/session/*.cpp runtime/program/*.cpp runtime/reports/*.cpp runtime/values/*.cpp
  runtime/arrays_structs/*.cpp runtime/variables_calls/*.cpp)
add_library(fuzz_values OBJECT fuzz/no_world.cpp ${VALUE_SOURCES})
target_compile_options(fuzz_values PRIVATE ${FUZZ_OPTIONS})
add_fuzz_target(json engine/documents/json_reader.cpp engine/documents/json_writer.cpp $<TARGET_OBJECTS:fuzz_values>)
file(GLOB INPUT_SOURCES CONFIGURE_DEPENDS runtime/input/*.cpp)
add_fuzz_target(input ${INPUT_SOURCES} $<TARGET_OBJECTS:fuzz_values>)
add_fuzz_target(recording engine/recording/recording.cpp engine/recording/recording_text.cpp engine/files/paths.cpp engine/files/zipped.cpp $<TARGET_OBJECTS:fuzz_values>)
