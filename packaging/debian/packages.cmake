# Debian packages, made by cpack: one for each component. They are for the owner's own machines:
# a licence and a maintainer are the owner's to choose, so the packages say that there is none yet.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vokcube)
set(CPACK_PACKAGE_VENDOR "the owner")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL program library development window)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The owner of VokCubeQ17 <root@localhost>" CACHE STRING
 "Who answers for the Debian packages: Name <address>")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(library libvokcubeq17-${PROJECT_VERSION_MAJOR})
set(same "(= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME vokcube)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${library} ${same}")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "vokcube-qt")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "run saved cube queries into Excel workbooks
Data sources and period sets are saved once; a run reads one of each, asks
a cube file or an OLAP server and leaves a workbook. Builds cube files from
CSV tables, answers MDX, needs no server and no spreadsheet program.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "saved cube queries for other programs
The shared library that runs saved cube queries into Excel workbooks, with
its module for cube servers and its reader of Jet databases.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvokcubeq17-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} ${same}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "python3-openpyxl")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "saved cube queries, for writing programs
Headers for C and C++20, files for pkg-config and CMake, and a Python
module, to run saved cube queries into Excel workbooks.")
set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME vokcube-qt)
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "vokcube ${same}")
set(CPACK_COMPONENT_WINDOW_DESCRIPTION "windows of vokcube
The windows in which saved cube queries are edited and run, in English,
Hebrew and Russian, on Qt 6.")

# Each package has its own copyright, change log and exceptions from the package checker's rules.
foreach(component program library development window)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${package})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${folder}/changelog.Debian @ONLY)
  vok_gzip(${folder}/changelog.Debian)
  install(FILES ${folder}/changelog.Debian.gz ${CMAKE_CURRENT_LIST_DIR}/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
  if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/${component}.exceptions)
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/${component}.exceptions RENAME ${package}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component}
      EXCLUDE_FROM_ALL)
  endif()
endforeach()
include(CPack)
