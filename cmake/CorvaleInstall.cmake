# Installs the libraries, their headers, the program, and what find_package(zrcorvale) and pkg-config read.
# Everything finds itself by relative paths, so that an installed tree can be moved.

include(CMakePackageConfigHelpers)

file(RELATIVE_PATH CORVALE_BIN_TO_LIB ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH CORVALE_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" CORVALE_PC_PREFIX "${CORVALE_PC_PREFIX}")
set(CORVALE_CONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zrcorvale)

set_target_properties(zrcorvale PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS rk EXPORT rkTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS zrcorvale EXPORT zrcorvaleTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET corvale_cli)
    set_target_properties(corvale_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${CORVALE_BIN_TO_LIB}")
    install(TARGETS corvale_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

foreach(folder corvale rk)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
endforeach()

# find_package
install(EXPORT rkTargets NAMESPACE rk:: DESTINATION ${CORVALE_CONFIG_DIR})
install(EXPORT zrcorvaleTargets NAMESPACE zrcorvale:: DESTINATION ${CORVALE_CONFIG_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zrcorvaleConfig.cmake.in
    ${PROJECT_BINARY_DIR}/zrcorvaleConfig.cmake INSTALL_DESTINATION ${CORVALE_CONFIG_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrcorvaleConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/zrcorvaleConfig.cmake
    ${PROJECT_BINARY_DIR}/zrcorvaleConfigVersion.cmake
    ${CMAKE_CURRENT_LIST_DIR}/FindCorvaleOpenCV.cmake
    DESTINATION ${CORVALE_CONFIG_DIR})

# pkg-config. Debian's small OpenCV packages bring no file of their own that could be required.
list(TRANSFORM CorvaleOpenCV_INCLUDE_DIR PREPEND "-I" OUTPUT_VARIABLE CORVALE_PC_OPENCV_CFLAGS)
list(JOIN CORVALE_PC_OPENCV_CFLAGS " " CORVALE_PC_OPENCV_CFLAGS)
set(CORVALE_PC_OPENCV_LIBS "-lopencv_imgproc -lopencv_core")
foreach(name rk zrcorvale)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
