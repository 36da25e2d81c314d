# Debian 13's paraview-dev declares ParaView's Python modules as files that its packages have under other names
# (vtkCommonCore.so for vtkCommonCore.cpython-313-x86_64-linux-gnu.so), and CMake refuses all of ParaView for it.
# Nothing here links to those modules. So, before find_package(ParaView): where such a file is missing, the
# targets of its export are declared as empty ones, and the package's own declarations step aside.
#
# Looks into ParaView_DIR or else where Debian has the package. On Debian 13 with another ParaView beside
# Debian's, set ParaView_DIR.
function(zyl_declare_missing_python_modules)
  if(ParaView_DIR)
    set(packages "${ParaView_DIR}")
  else()
    file(GLOB packages "/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/cmake/paraview-*")
  endif()
  foreach(package IN LISTS packages)
    file(GLOB exports "${package}/*Python*-targets.cmake" "${package}/vtk/*Python*-targets.cmake")
    foreach(export IN LISTS exports)
      file(STRINGS "${export}" items REGEX "_expected_target IN ITEMS ")
      string(REGEX REPLACE "\\.cmake$" "-*.cmake" files "${export}")
      file(GLOB files "${files}")
      if(items AND files)
        list(GET files 0 files)
        file(STRINGS "${files}" file REGEX "IMPORTED_LOCATION_[A-Z]+ .*/python3/.*\\.so\"" LIMIT_COUNT 1)
        string(REGEX REPLACE ".*{_IMPORT_PREFIX}(.*)\"" "\\1" file "${file}")
        string(REGEX REPLACE "/lib/.*" "" prefix "${package}")
        if(file AND NOT EXISTS "${prefix}${file}")
          string(REGEX REPLACE ".* IN ITEMS (.*)\\)" "\\1" targets "${items}")
          separate_arguments(targets)
          foreach(target IN LISTS targets)
            if(NOT TARGET "${target}")
              add_library("${target}" INTERFACE IMPORTED)
            endif()
          endforeach()
        endif()
      endif()
    endforeach()
  endforeach()
endfunction()

zyl_declare_missing_python_modules()
