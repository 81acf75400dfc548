# Cross build for callers of 32-bit Windows.
set(XV_MINGW i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
