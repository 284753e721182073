# The editor's own directory holds its files. They are the user's once they are there: putting a newer editor into the
# same directory leaves them alone.
foreach(name IN ITEMS Corvrec.ini modem.dat)
  set(target "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${name}")
  if(EXISTS "${target}" OR IS_SYMLINK "${target}")
    message(STATUS "Kept: ${target}")
  else()
    file(INSTALL "${CORVREC_SAMPLES}/${name}" DESTINATION "${CMAKE_INSTALL_PREFIX}")
  endif()
endforeach()
