# Language, warnings, visibility and sanitizers: what holds for every target of the project.

# Loki's policies and typelists need C++17 or older.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Programs find the shared libraries beside them, in the build tree as in an install tree.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(SHEETVANE_BIN_DIR "${PROJECT_BINARY_DIR}/bin")

# No path of the building machine in what is built.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}/=)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Optimised as a release is, g++ 12 sees such uses in moves of std::variant and std::optional where there are none.
  add_compile_options(-Wno-maybe-uninitialized)
endif()

add_link_options(LINKER:--as-needed)

if(SHEETVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=address,undefined)
endif()
if(SHEETVANE_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -O1)
  add_link_options(-fsanitize=thread)
endif()
if(SHEETVANE_LIBFUZZER)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
