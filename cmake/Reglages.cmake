# Compiler settings that every target of the project shares.
add_library(libvue_reglages INTERFACE)
target_compile_options(libvue_reglages INTERFACE -Wall -Wextra -Wpedantic)
if(LIBVUE_WERROR)
    target_compile_options(libvue_reglages INTERFACE -Werror)
endif()

# With optimisation g++ 12 reports the count of a shared block as used after its deletion where it inlines two releases of
# one reference in a row; the second release is reached only while the first has not deleted the block.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(libvue_reglages INTERFACE "$<$<CONFIG:Release>:-Wno-use-after-free>")
endif()

# Out-of-range subscripts of the standard containers stop a debug build.
add_compile_definitions("$<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>")

foreach(sanitizer IN LISTS LIBVUE_SANITIZE)
    add_compile_options(-fsanitize=${sanitizer} -fno-sanitize-recover=${sanitizer})
    add_link_options(-fsanitize=${sanitizer})
endforeach()
if(LIBVUE_BUILD_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES Clang)
        message(FATAL_ERROR "The fuzz targets need clang: use the preset `fuzz`.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(LIBVUE_LTO)
    include(CheckIPOSupported)
    check_ipo_supported()
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
endif()

# Writes a source with nothing in it, so that a folder whose first source is still to come can be a target already.
function(libvue_fichier_vide variable nom)
    set(fichier "${PROJECT_BINARY_DIR}/vides/${nom}.cpp")
    if(NOT EXISTS "${fichier}")
        file(WRITE "${fichier}" "// Placeholder for a target without sources of its own.\n")
    endif()
    set(${variable} "${fichier}" PARENT_SCOPE)
endfunction()
