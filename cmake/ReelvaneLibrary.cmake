# reelvane_library(media DEPENDS support SOURCES probe_report.cpp)
#
# Adds the static library of one folder. Its include root holds only that folder, so a library sees
# nothing but what it names under DEPENDS: an include against the layers does not compile.
function(reelvane_library folder)
  cmake_parse_arguments(arg "" "" "DEPENDS;SOURCES" ${ARGN})
  reelvane_refuse_parent_includes()
  set(root ${PROJECT_BINARY_DIR}/include-roots/${folder})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} SYMBOLIC)
  add_library(reelvane_${folder} STATIC ${arg_SOURCES})
  target_include_directories(reelvane_${folder} PUBLIC ${root})
  if(NOT CMAKE_AUTOMOC)  # moc would meet each header twice, by both of its paths
    file(GLOB headers CONFIGURE_DEPENDS ${root}/${folder}/*.h ${root}/${folder}/*/*.h)
    target_sources(reelvane_${folder} PUBLIC FILE_SET HEADERS BASE_DIRS ${root} FILES ${headers})
  endif()
  list(TRANSFORM arg_DEPENDS PREPEND reelvane_)
  target_link_libraries(reelvane_${folder} PUBLIC reelvane_options ${arg_DEPENDS})
endfunction()

# A path that climbs out of its folder would go round the include roots.
function(reelvane_refuse_parent_includes)
  file(GLOB files CONFIGURE_DEPENDS *.h *.cpp */*.h */*.cpp)
  foreach(file IN LISTS files)
    file(STRINGS ${file} climbing REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<][^\">]*\\.\\./")
    if(climbing)
      message(FATAL_ERROR "${file} includes by a parent path: ${climbing}")
    endif()
  endforeach()
endfunction()
