# Filled with the package configuration: find_package(zrcorvale) and pkg-config.
