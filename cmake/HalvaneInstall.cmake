# What `cmake --install` puts where, in components that are Debian packages of their own (HalvanePackages.cmake):
# program, dialog, library, development, python.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(HALVANE_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING "Where the Python module is installed, below the prefix")

install(TARGETS halvane RUNTIME COMPONENT program)
install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
install(FILES packaging/completions/halvane.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME halvane COMPONENT program)
install(FILES packaging/completions/halvane.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
        COMPONENT program)
file(GLOB schemas CONFIGURE_DEPENDS docs/*.rng docs/*.xsd docs/*.schema.json)
install(FILES ${schemas} DESTINATION ${CMAKE_INSTALL_DATADIR}/halvane COMPONENT program)
if(HALVANE_DIALOG)
  install(TARGETS halvane-dialog RUNTIME COMPONENT dialog)
endif()

# The manual is written from the pages of docs.
find_program(HALVANE_LOWDOWN lowdown)
find_package(Python3 COMPONENTS Interpreter)
if(HALVANE_LOWDOWN AND Python3_FOUND)
  # halvane_manual_page(NAME.SECTION SOURCE COMPONENT)
  function(halvane_manual_page page source component)
    cmake_path(GET page EXTENSION LAST_ONLY section)
    string(REPLACE "." "man" folder ${section})
    set(output ${CMAKE_CURRENT_BINARY_DIR}/man/${page})
    add_custom_command(
      OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/man
      COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/man-page ${page} ${PROJECT_VERSION} ${output}
      DEPENDS ${PROJECT_SOURCE_DIR}/docs/${source} ${PROJECT_SOURCE_DIR}/tools/man-page
      VERBATIM)
    set_property(GLOBAL APPEND PROPERTY HALVANE_MANUAL ${output})
    install(FILES ${output} DESTINATION ${CMAKE_INSTALL_MANDIR}/${folder} COMPONENT ${component})
  endfunction()
  halvane_manual_page(halvane.1 command-line.md program)
  halvane_manual_page(halvane-check.1 checking.md program)
  halvane_manual_page(halvane-control-file.5 control-file.md program)
  halvane_manual_page(halvane-map-document.5 map-document.md program)
  halvane_manual_page(libhalvane.3 embedding.md development)
  get_property(manual GLOBAL PROPERTY HALVANE_MANUAL)
  add_custom_target(halvane_manual ALL DEPENDS ${manual})
else()
  message(STATUS "The manual is not built: it needs lowdown and Python")
endif()

# The library, for find_package(Halvane) and for pkg-config.
install(
  TARGETS halvane_library
  EXPORT HalvaneLibrary
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/halvane.h include/halvane.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# The Python module, which loads the library.
file(GLOB modules CONFIGURE_DEPENDS python/halvane/*.py)
install(FILES ${modules} python/halvane/py.typed DESTINATION ${HALVANE_PYTHON_FOLDER}/halvane COMPONENT python)

# What a library of external processors is built with.
install(TARGETS halvane_host halvane_collection halvane_base EXPORT HalvaneProcessor
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/halvane COMPONENT development)
foreach(layer IN ITEMS base collection host)
  file(GLOB headers CONFIGURE_DEPENDS src/${layer}/*.h)
  install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/halvane/${layer} COMPONENT development)
endforeach()

set(config ${CMAKE_INSTALL_LIBDIR}/cmake/Halvane)
foreach(part IN ITEMS Library Processor)
  install(EXPORT Halvane${part} NAMESPACE Halvane:: DESTINATION ${config} COMPONENT development)
endforeach()
configure_package_config_file(cmake/package/HalvaneConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/HalvaneConfig.cmake
                              INSTALL_DESTINATION ${config})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/HalvaneConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/HalvaneConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/HalvaneConfigVersion.cmake
        DESTINATION ${config} COMPONENT development)

# The folder is found from where the file lies, so that the tree can be moved.
file(RELATIVE_PATH HALVANE_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/package/halvane.pc.in ${CMAKE_CURRENT_BINARY_DIR}/halvane.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/halvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
