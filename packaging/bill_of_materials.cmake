# The bill of materials, CycloneDX 1.5: what the programs are linked to, in the versions used for the build. Included when the
# programs are installed.

# query_packages(VARIABLE PACKAGE...): sets the variable to a list of "name version architecture source" of installed Debian
# packages.
function(query_packages variable)
  execute_process(
    COMMAND dpkg-query --show "--showformat=\${Package} \${Version} \${Architecture} \${source:Package}\n" ${ARGN}
    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" found "${found}")
  set(${variable} "${found}" PARENT_SCOPE)
endfunction()

# escape_version(VARIABLE VERSION): as package URLs want it.
function(escape_version variable version)
  string(REPLACE "+" "%2B" version "${version}")
  string(REPLACE ":" "%3A" version "${version}")
  set(${variable} "${version}" PARENT_SCOPE)
endfunction()

# write_bill(FILE PACKAGES BUNDLED): PACKAGES as query_packages sets them; BUNDLED is a list of "name version package", the
# libraries whose source is part of such a package's.
function(write_bill file packages bundled)
  set(components)
  set(linked)
  foreach(package IN LISTS packages)
    separate_arguments(package)
    list(POP_FRONT package name version architecture source)
    escape_version(escaped "${version}")
    set(address "pkg:deb/debian/${name}@${escaped}?arch=${architecture}")
    list(APPEND components "{\"type\": \"library\", \"bom-ref\": \"${address}\", \"name\": \"${name}\", \
\"version\": \"${version}\", \"purl\": \"${address}\", \
\"properties\": [{\"name\": \"debian:source\", \"value\": \"${source}\"}]}")
    list(APPEND linked "\"${address}\"")
  endforeach()
  foreach(library IN LISTS bundled)
    separate_arguments(library)
    list(POP_FRONT library name version package)
    escape_version(escaped "${version}")
    set(address "pkg:generic/${name}@${escaped}")
    list(APPEND components "{\"type\": \"library\", \"bom-ref\": \"${address}\", \"name\": \"${name}\", \
\"version\": \"${version}\", \"purl\": \"${address}\", \
\"properties\": [{\"name\": \"bundled in\", \"value\": \"${package}\"}]}")
    list(APPEND linked "\"${address}\"")
  endforeach()
  list(JOIN components ",\n    " components)
  list(JOIN linked ",\n      " linked)

  string(TIMESTAMP madeAt "%Y-%m-%dT%H:%M:%SZ" UTC)
  string(UUID serialNumber NAMESPACE 6ba7b810-9dad-11d1-80b4-00c04fd430c8 TYPE SHA1
    NAME "corvane-recorder ${PROJECT_VERSION} ${madeAt} ${linked}")
  configure_file("${PROJECT_SOURCE_DIR}/packaging/bill_of_materials.json.in" "${file}" @ONLY)
  # Fails here if the result is not valid JSON.
  file(READ "${file}" written)
  string(JSON components GET "${written}" components)
endfunction()
