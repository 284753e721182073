# The editor's files are in its own directory. Existing files belong to the user: installing a newer editor keeps them.
foreach(name IN ITEMS Corvrec.ini modem.dat)
  set(target "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${name}")
  if(EXISTS "${target}" OR IS_SYMLINK "${target}")
    message(STATUS "Kept: ${target}")
  else()
    file(INSTALL "${CORVREC_SAMPLES}/${name}" DESTINATION "${CMAKE_INSTALL_PREFIX}")
  endif()
endforeach()
