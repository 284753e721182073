# Sets packages to the Debian packages that the installed programs are linked to, as bill_of_materials.cmake wants them.
# Included by made_files.cmake.
set(control "${buildDirectory}/bill_of_materials")
set(programs "${root}/lib/corvane-recorder")
file(WRITE "${control}/debian/control" "Source: corvane-recorder\n\nPackage: corvane-recorder\nArchitecture: any\n")
execute_process(
  COMMAND dpkg-shlibdeps -O "-e${programs}/corvrec-config" "-e${programs}/corvrec-lab"
  WORKING_DIRECTORY "${control}" OUTPUT_VARIABLE depends ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE "${control}")
string(REPLACE "shlibs:Depends=" "" depends "${depends}")
string(REGEX REPLACE " \\([^)]*\\)|\n" "" depends "${depends}")
string(REPLACE ", " ";" libraries "${depends}")
query_packages(packages ${libraries})
