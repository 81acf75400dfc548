# Cross build for 64-bit Windows, run under Wine.
set(XV_MINGW x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run)
