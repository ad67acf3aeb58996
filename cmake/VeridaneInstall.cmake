# Install rules, the CMake package Veridane_Mesh and the pkg-config module veridane-mesh.
include(CMakePackageConfigHelpers)

set(VERIDANE_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/veridane-mesh)
set(VERIDANE_PACKAGEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Veridane_Mesh)

set(headerFolders mesh serialize module platform/afx)
set(installedTargets Veridane_Mesh veridane_afx)
if(NOT VERIDANE_SYSTEM_KERNEL)
    list(APPEND headerFolders platform/opennurbs)
    list(APPEND installedTargets veridane_opennurbs)
endif()

foreach(folder ${headerFolders})
    install(
        DIRECTORY ${folder}/
        DESTINATION ${VERIDANE_INCLUDEDIR}/${folder}
        FILES_MATCHING
        PATTERN "*.h"
        PATTERN detail EXCLUDE)
endforeach()
# The base class of the bridge, whose header is public.
install(FILES serialize/detail/OpenNurbsInterface.h DESTINATION ${VERIDANE_INCLUDEDIR}/serialize/detail)

install(
    TARGETS ${installedTargets}
    EXPORT Veridane_MeshTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The libraries lie in one folder and find each other from wherever that is; an openNURBS of the system
# stays where it was found.
set_target_properties(${installedTargets} PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(Veridane_Mesh PROPERTIES INSTALL_RPATH_USE_LINK_PATH ${VERIDANE_SYSTEM_KERNEL})

install(
    EXPORT Veridane_MeshTargets
    NAMESPACE Veridane::
    DESTINATION ${VERIDANE_PACKAGEDIR})
# A consumer must compile with the kernel that the module was built with, and no other version of it.
if(VERIDANE_SYSTEM_KERNEL)
    install(FILES cmake/FindOpenNURBS.cmake DESTINATION ${VERIDANE_PACKAGEDIR})
    get_filename_component(VERIDANE_KERNEL_FOLDER ${OpenNURBS_LIBRARY} DIRECTORY)
    get_filename_component(VERIDANE_KERNEL_FILE ${OpenNURBS_LIBRARY} NAME)
    get_filename_component(kernelName ${OpenNURBS_LIBRARY} NAME_WE)
    string(REGEX REPLACE "^lib" "" kernelName ${kernelName})
    set(VERIDANE_PC_KERNEL_CFLAGS "-isystem ${OpenNURBS_INCLUDE_DIR}")
    set(VERIDANE_PC_KERNEL_LIBS "-L${VERIDANE_KERNEL_FOLDER} -l${kernelName}")
else()
    set(VERIDANE_PC_KERNEL_CFLAGS "-I\${includedir}/platform/opennurbs")
    set(VERIDANE_PC_KERNEL_LIBS "-lveridane_opennurbs")
endif()
configure_package_config_file(cmake/Veridane_MeshConfig.cmake.in Veridane_MeshConfig.cmake
                              INSTALL_DESTINATION ${VERIDANE_PACKAGEDIR})
write_basic_package_version_file(Veridane_MeshConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/Veridane_MeshConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/Veridane_MeshConfigVersion.cmake
        DESTINATION ${VERIDANE_PACKAGEDIR})

file(RELATIVE_PATH VERIDANE_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(cmake/veridane-mesh.pc.in veridane-mesh.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/veridane-mesh.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
