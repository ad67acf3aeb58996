# Install rules, the CMake package Veridane_Mesh and the pkg-config module veridane-mesh.
include(CMakePackageConfigHelpers)

set(VERIDANE_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/veridane-mesh)
set(VERIDANE_PACKAGEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Veridane_Mesh)

foreach(folder mesh serialize module platform/afx platform/opennurbs)
    install(
        DIRECTORY ${folder}/
        DESTINATION ${VERIDANE_INCLUDEDIR}/${folder}
        FILES_MATCHING
        PATTERN "*.h"
        PATTERN detail EXCLUDE)
endforeach()

install(
    TARGETS Veridane_Mesh veridane_afx veridane_opennurbs
    EXPORT Veridane_MeshTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The libraries lie in one folder and find each other from wherever that is.
set_target_properties(Veridane_Mesh veridane_afx veridane_opennurbs PROPERTIES INSTALL_RPATH "$ORIGIN")

install(
    EXPORT Veridane_MeshTargets
    NAMESPACE Veridane::
    DESTINATION ${VERIDANE_PACKAGEDIR})
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
