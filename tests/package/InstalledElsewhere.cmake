# Installed below another folder, the program is where the bus, the launchers and KWin look for it:
# BUILD FOLDER.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${FOLDER})
foreach(prefix IN ITEMS ${FOLDER}/one ${FOLDER}/two)
  execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(STRINGS ${prefix}/share/dbus-1/services/app.hollowfernpike.Hollowfernpike.service lines)
  if(NOT "Exec=${prefix}/bin/hollowfernpike" IN_LIST lines OR NOT EXISTS ${prefix}/bin/hollowfernpike)
    message(FATAL_ERROR "${prefix}: ${lines}")
  endif()
  set(entry ${prefix}/share/applications/app.hollowfernpike.Hollowfernpike.desktop)
  file(STRINGS ${entry} lines REGEX "^Exec=")
  list(FILTER lines EXCLUDE REGEX "^Exec=${prefix}/bin/hollowfernpike --action [A-Za-z]+$")
  if(lines)
    message(FATAL_ERROR "${entry}: ${lines}")
  endif()
  execute_process(COMMAND desktop-file-validate ${entry} OUTPUT_VARIABLE faults ERROR_VARIABLE faults
    COMMAND_ERROR_IS_FATAL ANY)
  if(faults)
    message(FATAL_ERROR "${faults}")
  endif()
endforeach()
