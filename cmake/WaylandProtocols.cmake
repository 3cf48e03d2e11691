# What clients say to a Wayland compositor: hfp_wayland_protocol(name file.xml) makes the library `name`
# with the protocol's tables and its header <file-client-protocol.h>. Both are written when the build is
# configured, because the checks read sources that are not built.
function(hfp_wayland_protocol name description)
  cmake_path(GET description STEM protocol)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/${protocol}-client-protocol.h)
  set(tables ${CMAKE_CURRENT_BINARY_DIR}/${protocol}-protocol.cpp)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${description})
  if(${description} IS_NEWER_THAN ${header} OR ${description} IS_NEWER_THAN ${tables})
    execute_process(COMMAND ${WAYLAND_SCANNER} client-header ${description} ${header}
      COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND ${WAYLAND_SCANNER} private-code ${description} ${tables}
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
  # The tables are written for C, where constants are visible to other sources by themselves; in C++
  # they need the declarations of the header for that, which say nothing of visibility.
  set_source_files_properties(${tables} PROPERTIES COMPILE_OPTIONS "-include;${header};-Wno-attributes")
  add_library(${name} STATIC ${tables})
  target_include_directories(${name} SYSTEM PUBLIC ${CMAKE_CURRENT_BINARY_DIR})
  target_link_libraries(${name} PUBLIC PkgConfig::WAYLAND)
endfunction()
