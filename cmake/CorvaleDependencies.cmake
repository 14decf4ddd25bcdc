# The libraries that Corvale builds on. The OpenCV part is shared with the installed package
# (FindCorvaleOpenCV.cmake), since Debian's small OpenCV packages bring no OpenCVConfig.cmake.

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS thread filesystem system chrono)
find_package(spdlog REQUIRED)
find_package(CorvaleOpenCV REQUIRED)
