# How all code is compiled: here, and in games that stand outside.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE AND NOT EMSCRIPTEN)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD AND NOT MINGW AND NOT EMSCRIPTEN)
  add_link_options(-fuse-ld=mold)
endif()

# The same bits everywhere: no contraction of a*b+c, one baseline of instructions.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow -ffp-contract=off)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  add_compile_options(-march=x86-64-v2)
endif()
set(QUICK_BUILD -O1)  # for what is built quickly rather than to be quick
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options(-Wno-restrict)  # GCC 12 warns of its own std::string code
  list(APPEND QUICK_BUILD -Wno-maybe-uninitialized)  # which needs more optimisation to tell what cannot happen
endif()
if(EMSCRIPTEN)  # run by node, with the files of the machine
  add_compile_options(-fwasm-exceptions)
  add_link_options(-fwasm-exceptions "SHELL:-s NODERAWFS=1" "SHELL:-s ENVIRONMENT=node" "SHELL:-s WASM_ASYNC_COMPILATION=0"
    "SHELL:-s EXIT_RUNTIME=1" "SHELL:-s ALLOW_MEMORY_GROWTH=1" "SHELL:-s MAXIMUM_MEMORY=2GB" "SHELL:-s TOTAL_STACK=8MB")
endif()
add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
if(ARENA_CHECKS)
  add_compile_definitions(ARENA_CHECKS)
endif()
if(ARENA_STRESS)
  add_compile_definitions(ARENA_STRESS)
  add_compile_options(${QUICK_BUILD} -g1)
endif()
if(ARENA_SANITIZE STREQUAL "threads")
  add_compile_options(-fsanitize=thread)
  add_link_options(-fsanitize=thread)
elseif(ARENA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=undefined,float-cast-overflow -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
