#[=======================================================================[.rst:
FindOpenNURBS
-------------

Finds an installed openNURBS of any release: the header ``opennurbs.h`` and its library. It lies beside
the package Veridane_Mesh, whose installations find with it the kernel they were built with.

``OpenNURBS_ROOT``, as a variable or in the environment, names the folder to look in first.

Result:

``OpenNURBS::OpenNURBS``
  the library with its headers and the definitions that its users need
``OpenNURBS_FOUND``, ``OpenNURBS_VERSION``
  the version from the headers: the date form of the older releases, like 201307115, or the four
  numbers of the newer ones, like 8.12.24282.7000
``OpenNURBS_INCLUDE_DIR``, ``OpenNURBS_LIBRARY``
  cache entries, to be set by hand where the search goes wrong
#]=======================================================================]

find_path(
    OpenNURBS_INCLUDE_DIR opennurbs.h
    PATH_SUFFIXES openNURBS opennurbs OpenNURBS OpenNurbs opennurbsStatic
    DOC "Folder of opennurbs.h")
find_library(
    OpenNURBS_LIBRARY
    NAMES openNURBS opennurbs OpenNURBS opennurbs_public opennurbsStatic opennurbs_public_staticlib
    DOC "Library of openNURBS")
mark_as_advanced(OpenNURBS_INCLUDE_DIR OpenNURBS_LIBRARY)

# The last word of the #define of a name, with the line's other words dropped; empty without the file.
function(_opennurbs_defined_value file name result)
    set(value "")
    if(EXISTS ${OpenNURBS_INCLUDE_DIR}/${file})
        file(STRINGS ${OpenNURBS_INCLUDE_DIR}/${file} lines
             REGEX "^[ \t]*#[ \t]*define[ \t]+${name}[ \t]+[0-9]")
        if(lines MATCHES "${name}[ \t]+([0-9,]+)")
            set(value ${CMAKE_MATCH_1})
        endif()
    endif()
    set(${result} ${value} PARENT_SCOPE)
endfunction()

unset(OpenNURBS_VERSION)
if(OpenNURBS_INCLUDE_DIR)
    _opennurbs_defined_value(opennurbs_public_version.h VERSION_WITH_COMMAS OpenNURBS_VERSION)
    string(REPLACE "," "." OpenNURBS_VERSION "${OpenNURBS_VERSION}")
    if(NOT OpenNURBS_VERSION)
        _opennurbs_defined_value(opennurbs_version.h OPENNURBS_VERSION OpenNURBS_VERSION)
    endif()
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    OpenNURBS
    REQUIRED_VARS OpenNURBS_LIBRARY OpenNURBS_INCLUDE_DIR
    VERSION_VAR OpenNURBS_VERSION)

if(OpenNURBS_FOUND AND NOT TARGET OpenNURBS::OpenNURBS)
    add_library(OpenNURBS::OpenNURBS UNKNOWN IMPORTED)
    set_target_properties(
        OpenNURBS::OpenNURBS PROPERTIES IMPORTED_LOCATION ${OpenNURBS_LIBRARY}
                                        INTERFACE_INCLUDE_DIRECTORIES ${OpenNURBS_INCLUDE_DIR})
    get_filename_component(_opennurbs_library ${OpenNURBS_LIBRARY} NAME)
    get_filename_component(_opennurbs_folder ${OpenNURBS_LIBRARY} DIRECTORY)
    if(_opennurbs_library MATCHES "(\\.a|[Ss]tatic(lib)?\\.lib)$")
        # What a static library needs beside it, as far as it was built apart: newer releases only.
        foreach(part opennurbs_public_freetype freetype263 zlib android_uuid uuid)
            find_library(OpenNURBS_${part}_LIBRARY ${part} HINTS ${_opennurbs_folder})
            mark_as_advanced(OpenNURBS_${part}_LIBRARY)
            if(OpenNURBS_${part}_LIBRARY)
                set_property(TARGET OpenNURBS::OpenNURBS APPEND
                             PROPERTY INTERFACE_LINK_LIBRARIES ${OpenNURBS_${part}_LIBRARY})
            endif()
        endforeach()
    elseif(WIN32)
        # The headers import from a DLL only when told to; elsewhere the definition changes nothing.
        set_property(TARGET OpenNURBS::OpenNURBS PROPERTY INTERFACE_COMPILE_DEFINITIONS
                                                          OPENNURBS_IMPORTS)
    endif()
endif()
