# How everything of ours is compiled.

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# We live in other people's processes: nothing of ours may be seen by their dynamic linker.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Woverloaded-virtual
                    -Wextra-semi -Wundef -Wformat=2 -Wimplicit-fallthrough -Wfloat-conversion)
# The hue arithmetic is exact to the last bit on every machine, so no operations are fused.
add_compile_options(-ffp-contract=off)
# A designated initialiser names what differs; the other members have their defaults.
add_compile_options(-Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 follows a growing vector or string into impossible branches of its own library.
    add_compile_options(-Wno-array-bounds -Wno-restrict
                        -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(VELMORA_WERROR)
    add_compile_options(-Werror)
endif()

if(VELMORA_SANITIZE)
    add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VELMORA_SANITIZE})
endif()

if(VELMORA_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(VELMORA_CCACHE ccache)
if(VELMORA_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VELMORA_CCACHE})
endif()
