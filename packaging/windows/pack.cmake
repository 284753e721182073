# Called by cpack with the program's directory put together: makes corvane-recorder-VERSION-setup.exe and
# corvane-recorder-VERSION.zip from it, the same bytes from the same files.
set(staged "${CPACK_TEMPORARY_DIRECTORY}")
set(sources "${CMAKE_CURRENT_LIST_DIR}")
set(name "${CPACK_PACKAGE_DIRECTORY}/corvane-recorder-${CPACK_PACKAGE_VERSION}")
set(ENV{LC_ALL} C.UTF-8)
set(ENV{TZ} UTC) # zip stores local times

file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${staged}" "${staged}/*")
list(SORT files)

# The files as setup.nsi includes them, and their size in KB (1024 bytes).
set(lines "!macro ProgramFiles\n")
set(size 0)
set(directory "/")
foreach(file IN LISTS files)
  file(SIZE "${staged}/${file}" bytes)
  math(EXPR size "${size} + (${bytes} + 1023) / 1024")
  string(REPLACE "/" "\\" windowsFile "${file}")
  cmake_path(GET file PARENT_PATH parent)
  if(NOT parent STREQUAL directory)
    set(directory "${parent}")
    string(REPLACE "/" "\\" windowsDirectory "${directory}")
    if(windowsDirectory)
      string(PREPEND windowsDirectory "\\")
    endif()
    string(APPEND lines "  SetOutPath \"$INSTDIR${windowsDirectory}\"\n")
  endif()
  string(APPEND lines "  File \"${staged}/${file}\"\n")
  string(APPEND lines "  WriteRegStr HKLM \"\${FILES}\" \"${windowsFile}\" \"\${NEW}\"\n")
endforeach()
string(APPEND lines "!macroend\n")
set(list "${CPACK_TOPLEVEL_DIRECTORY}/program_files.nsh")
file(WRITE "${list}" "${lines}")

# Warnings are errors.
execute_process(
  COMMAND makensis -WX -V2 -INPUTCHARSET UTF8 "-DVERSION=${CPACK_PACKAGE_VERSION}"
    "-DVERSION_NUMBERS=${CPACK_PACKAGE_VERSION_MAJOR}.${CPACK_PACKAGE_VERSION_MINOR}.${CPACK_PACKAGE_VERSION_PATCH}.0"
    "-DSIZE=${size}" "-DPROGRAM_FILES=${list}" "-DSAMPLES=${staged}/esempi"
    "-DICON=${sources}/../../src/app/icons/corvrec-config.ico" "-DOUTPUT=${name}-setup.exe" "${sources}/setup.nsi"
  COMMAND_ERROR_IS_FATAL ANY)

# The zip has one directory. The samples in it are not next to the program, so that unpacking a newer zip over an older one
# replaces nobody's settings.
set(zipped "${CPACK_TOPLEVEL_DIRECTORY}/zip/Corvane Recorder")
file(REMOVE_RECURSE "${CPACK_TOPLEVEL_DIRECTORY}/zip")
file(COPY "${staged}/" DESTINATION "${zipped}")
include("${sources}/windows_text.cmake")
write_windows_text("${sources}/LEGGIMI.txt.in" "${zipped}/LEGGIMI.txt")
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE "${CPACK_TOPLEVEL_DIRECTORY}/zip" "${CPACK_TOPLEVEL_DIRECTORY}/zip/*")
list(SORT files)
list(JOIN files "\n" lines)
file(WRITE "${CPACK_TOPLEVEL_DIRECTORY}/zip.files" "${lines}\n")
file(REMOVE "${name}.zip")

# Runs the command in the zip's parent directory, with the files' names as its input.
function(with_names)
  execute_process(COMMAND ${ARGV} INPUT_FILE "${CPACK_TOPLEVEL_DIRECTORY}/zip.files"
    WORKING_DIRECTORY "${CPACK_TOPLEVEL_DIRECTORY}/zip" COMMAND_ERROR_IS_FATAL ANY)
endfunction()
with_names(xargs --delimiter=\\n chmod 0644)
with_names(xargs --delimiter=\\n touch "--date=@$ENV{SOURCE_DATE_EPOCH}")
with_names(zip -q -9 -X -@ "${name}.zip") # -X: without owners and access times
