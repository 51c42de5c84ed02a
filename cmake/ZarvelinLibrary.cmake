# zv_engine_library(NAME folder DEPS ...): one static library per engine folder, built from every
# source file in it, so adding a file needs no change here.
function(zv_engine_library name folder)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_DEPS} PRIVATE zv_warnings)
endfunction()
