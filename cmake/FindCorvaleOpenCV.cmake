# Finds OpenCV's core and imgproc (and, where they are installed, imgcodecs and videoio).
#
# The full package with its OpenCVConfig.cmake is taken when it is there. Debian also packages every
# module on its own, without that file: then the single headers and libraries are looked up.
#
# Targets: Corvale::opencv (core, imgproc) and, if found, Corvale::opencv_io (imgcodecs, videoio).

include(FindPackageHandleStandardArgs)

find_package(OpenCV 4 QUIET COMPONENTS core imgproc)
if(OpenCV_FOUND)
    set(CorvaleOpenCV_INCLUDE_DIR ${OpenCV_INCLUDE_DIRS})
    set(CorvaleOpenCV_core opencv_core)
    set(CorvaleOpenCV_imgproc opencv_imgproc)
    find_package(OpenCV 4 QUIET COMPONENTS imgcodecs videoio)
    if(TARGET opencv_imgcodecs AND TARGET opencv_videoio)
        set(CorvaleOpenCV_imgcodecs opencv_imgcodecs)
        set(CorvaleOpenCV_videoio opencv_videoio)
    endif()
else()
    find_path(CorvaleOpenCV_INCLUDE_DIR opencv2/core.hpp PATH_SUFFIXES opencv4)
    foreach(module core imgproc imgcodecs videoio)
        find_library(CorvaleOpenCV_${module} opencv_${module})
        mark_as_advanced(CorvaleOpenCV_${module})
    endforeach()
endif()

find_package_handle_standard_args(CorvaleOpenCV
    REQUIRED_VARS CorvaleOpenCV_core CorvaleOpenCV_imgproc CorvaleOpenCV_INCLUDE_DIR)

if(CorvaleOpenCV_FOUND AND NOT TARGET Corvale::opencv)
    add_library(Corvale::opencv INTERFACE IMPORTED)
    target_include_directories(Corvale::opencv SYSTEM INTERFACE ${CorvaleOpenCV_INCLUDE_DIR})
    target_link_libraries(Corvale::opencv INTERFACE ${CorvaleOpenCV_imgproc} ${CorvaleOpenCV_core})
    if(CorvaleOpenCV_imgcodecs AND CorvaleOpenCV_videoio)
        add_library(Corvale::opencv_io INTERFACE IMPORTED)
        target_link_libraries(Corvale::opencv_io INTERFACE
            Corvale::opencv ${CorvaleOpenCV_videoio} ${CorvaleOpenCV_imgcodecs})
    endif()
endif()
