# Installed below another folder, the program is where the bus looks for it: BUILD FOLDER.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${FOLDER})
foreach(prefix IN ITEMS ${FOLDER}/one ${FOLDER}/two)
  execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(STRINGS ${prefix}/share/dbus-1/services/app.hollowfernpike.Hollowfernpike.service lines)
  if(NOT "Exec=${prefix}/bin/hollowfernpike" IN_LIST lines OR NOT EXISTS ${prefix}/bin/hollowfernpike)
    message(FATAL_ERROR "${prefix}: ${lines}")
  endif()
endforeach()
