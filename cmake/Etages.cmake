# One object library a storey, and one include root a storey.
#
# A root is a folder that holds links to the headers of its storey alone, under their usual path (`libvue/...`). A storey is
# compiled with the roots that it may see and without the source tree, so a forbidden include finds no file.

# The roots depend on the source tree only: build folders under build/ share them, which lets ccache share objects as well.
cmake_path(IS_PREFIX PROJECT_SOURCE_DIR "${PROJECT_BINARY_DIR}" NORMALIZE dans_les_sources)
if(dans_les_sources)
    set(LIBVUE_RACINES "${PROJECT_SOURCE_DIR}/build/roots")
else()
    set(LIBVUE_RACINES "${PROJECT_BINARY_DIR}/roots")
endif()

# Two configurations may run at once on shared roots, so a link that is right already is left alone.
function(libvue_lien cible lien)
    if(IS_SYMLINK "${lien}")
        file(READ_SYMLINK "${lien}" actuelle)
        if(actuelle STREQUAL cible)
            return()
        endif()
    endif()
    cmake_path(GET lien PARENT_PATH parent)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${cible}" "${lien}" RESULT resultat SYMBOLIC)
    if(NOT resultat EQUAL 0 AND NOT IS_SYMLINK "${lien}")
        message(FATAL_ERROR "Cannot link ${lien} to ${cible}: ${resultat}")
    endif()
endfunction()

# The headers of some libraries lie where every compiler looks. A root of headers that refuse to compile stands in front of
# them for each storey that may not know the library.
function(libvue_interdire bibliotheque dossier)
    foreach(inclusion IN LISTS ARGN CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
        file(GLOB entetes RELATIVE "${inclusion}" "${inclusion}/${dossier}/*.h")
        foreach(entete IN LISTS entetes)
            set(refus "${LIBVUE_RACINES}/interdits/${bibliotheque}/${entete}")
            if(NOT EXISTS "${refus}")
                file(WRITE "${refus}" "#error \"this storey may not know ${bibliotheque}\"\n")
            endif()
        endforeach()
    endforeach()
    set_property(GLOBAL APPEND PROPERTY LIBVUE_INTERDITS ${bibliotheque})
endfunction()

# libvue_etage(name FOLDERS folder... [FLAT] [SEES storey...] [KNOWS library...] [LINK target...])
#
# KNOWS names the libraries of libvue_interdire that this storey may use all the same.
# FLAT keeps out the subfolders of the folders, which are storeys of their own: sources and headers are taken one by one.
function(libvue_etage nom)
    cmake_parse_arguments(PARSE_ARGV 1 ETAGE "FLAT" "" "FOLDERS;SEES;KNOWS;LINK")
    set(racine "${LIBVUE_RACINES}/${nom}")
    set(sources "")
    foreach(dossier IN LISTS ETAGE_FOLDERS)
        set(origine "${PROJECT_SOURCE_DIR}/libvue/${dossier}")
        if(ETAGE_FLAT)
            file(GLOB trouves CONFIGURE_DEPENDS "${origine}/*.cpp")
            file(GLOB entetes CONFIGURE_DEPENDS "${origine}/*.h")
            file(GLOB liens "${racine}/libvue/${dossier}/*.h")
            foreach(lien IN LISTS liens)
                cmake_path(GET lien FILENAME fichier)
                if(NOT EXISTS "${origine}/${fichier}")
                    file(REMOVE "${lien}")
                endif()
            endforeach()
            foreach(entete IN LISTS entetes)
                cmake_path(GET entete FILENAME fichier)
                libvue_lien("${entete}" "${racine}/libvue/${dossier}/${fichier}")
            endforeach()
            file(MAKE_DIRECTORY "${racine}/libvue")
        else()
            file(GLOB_RECURSE trouves CONFIGURE_DEPENDS "${origine}/*.cpp")
            libvue_lien("${origine}" "${racine}/libvue/${dossier}")
        endif()
        list(APPEND sources ${trouves})
    endforeach()
    if(NOT sources)
        libvue_fichier_vide(sources ${nom})
    endif()

    add_library(vue_${nom} OBJECT ${sources})
    set_target_properties(vue_${nom} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_definitions(vue_${nom} PRIVATE LIBVUE_BUILDING=1)
    target_include_directories(vue_${nom} PRIVATE "${racine}")
    foreach(vu IN LISTS ETAGE_SEES)
        target_include_directories(vue_${nom} PRIVATE "${LIBVUE_RACINES}/${vu}")
    endforeach()
    get_property(interdits GLOBAL PROPERTY LIBVUE_INTERDITS)
    foreach(interdit IN LISTS interdits)
        if(NOT interdit IN_LIST ETAGE_KNOWS)
            target_include_directories(vue_${nom} PRIVATE "${LIBVUE_RACINES}/interdits/${interdit}")
        endif()
    endforeach()
    target_link_libraries(vue_${nom} PRIVATE libvue_reglages ${ETAGE_LINK})
    set_property(GLOBAL APPEND PROPERTY LIBVUE_ETAGES ${nom})
endfunction()
