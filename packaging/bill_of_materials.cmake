# CycloneDX 1.5: the Debian packages that the programs are linked to, in the versions used for the build. Included by
# made_files.cmake when the programs are installed.
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
execute_process(
  COMMAND dpkg-query --show "--showformat=\${Package} \${Version} \${Architecture} \${source:Package}\n" ${libraries}
  OUTPUT_VARIABLE versions OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" versions "${versions}")

# purl(VARIABLE NAME VERSION ARCHITECTURE): the package's URL, with + and : in the version escaped.
function(purl variable name version architecture)
  string(REPLACE "+" "%2B" version "${version}")
  string(REPLACE ":" "%3A" version "${version}")
  set(${variable} "pkg:deb/debian/${name}@${version}?arch=${architecture}" PARENT_SCOPE)
endfunction()

set(components)
set(linked)
foreach(library IN LISTS versions)
  separate_arguments(library)
  list(GET library 0 name)
  list(GET library 1 version)
  list(GET library 2 architecture)
  list(GET library 3 source)
  purl(address "${name}" "${version}" "${architecture}")
  list(APPEND components "{\"type\": \"library\", \"bom-ref\": \"${address}\", \"name\": \"${name}\", \
\"version\": \"${version}\", \"purl\": \"${address}\", \
\"properties\": [{\"name\": \"debian:source\", \"value\": \"${source}\"}]}")
  list(APPEND linked "\"${address}\"")
endforeach()
list(JOIN components ",\n    " components)
list(JOIN linked ",\n      " linked)

string(TIMESTAMP madeAt "%Y-%m-%dT%H:%M:%SZ" UTC)
string(UUID serialNumber NAMESPACE 6ba7b810-9dad-11d1-80b4-00c04fd430c8 TYPE SHA1
  NAME "corvane-recorder ${PROJECT_VERSION} ${madeAt} ${linked}")
configure_file("${packaging}/bill_of_materials.json.in" "${doc}/corvane-recorder.cdx.json" @ONLY)
# Fails here if the result is not valid JSON.
file(READ "${doc}/corvane-recorder.cdx.json" written)
string(JSON components GET "${written}" components)
