# What `cmake --install` installs: the library, its headers, the applications and the package that
# find_package(zyl) finds. The plugin installs itself.
include(CMakePackageConfigHelpers)

set(zyl_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zyl")
set(zyl_plugin_dir "${CMAKE_INSTALL_LIBDIR}/zyl/plugins")

set(zyl_apps)
foreach(app zylview zylsample)
  if(TARGET ${app})
    list(APPEND zyl_apps ${app})
  endif()
endforeach()

# Everything finds the library from where it lies, so that the prefix can be moved.
file(RELATIVE_PATH from_bin "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(zyl zylxml PROPERTIES INSTALL_RPATH "\$ORIGIN")
if(zyl_apps)
  set_target_properties(${zyl_apps} PROPERTIES INSTALL_RPATH "\$ORIGIN/${from_bin}")
endif()

install(TARGETS zyl zylxml EXPORT zylTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zyl")
if(zyl_apps)
  install(TARGETS ${zyl_apps} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

list(TRANSFORM zyl_public_headers PREPEND "${PROJECT_SOURCE_DIR}/src/")
install(FILES ${zyl_public_headers} "${PROJECT_SOURCE_DIR}/src/zylExport.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zyl")

install(EXPORT zylTargets NAMESPACE zyl:: DESTINATION "${zyl_package_dir}")
string(REPLACE ";" " " zyl_paraview_components "${zyl_paraview_components}")
configure_package_config_file(cmake/zylConfig.cmake.in "${PROJECT_BINARY_DIR}/zylConfig.cmake"
  INSTALL_DESTINATION "${zyl_package_dir}"
  PATH_VARS zyl_plugin_dir)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/zylConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/zylConfig.cmake" "${PROJECT_BINARY_DIR}/zylConfigVersion.cmake"
  cmake/zylParaViewPython.cmake
  DESTINATION "${zyl_package_dir}")
