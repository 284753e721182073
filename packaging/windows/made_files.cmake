# Completes the program's directory when it is put together: smaller libraries, the overview of the licences, the bill of
# materials. Dates come from SOURCE_DATE_EPOCH.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(ENV{LC_ALL} C.UTF-8)

file(GLOB_RECURSE libraries "${root}/*.dll")
execute_process(COMMAND "${strip}" --strip-unneeded ${libraries} COMMAND_ERROR_IS_FATAL ANY)

include("${PROJECT_SOURCE_DIR}/packaging/bill_of_materials.cmake")

# Qt's own source package, whatever is built from it.
execute_process(COMMAND dpkg-query --show "--showformat=\${source:Version}" qt6-base-dev
  OUTPUT_VARIABLE qtVersion COMMAND_ERROR_IS_FATAL ANY)
query_packages(packages gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev nsis-common qt6-translations-l10n)
list(PREPEND packages "qt6-base ${qtVersion} source qt6-base")

set(bundled)
foreach(library IN ITEMS double-conversion freetype harfbuzz-ng libpng md4c pcre2 tinycbor zlib)
  set(attribution "${qt}/attributions/${library}.json")
  if(NOT EXISTS "${attribution}")
    message(FATAL_ERROR "Qt in ${qt} lacks ${attribution}. Remove that directory: scripts/qt-windows builds it again.")
  endif()
  file(STRINGS "${attribution}" version REGEX "\"Version\": " LIMIT_COUNT 1)
  string(REGEX REPLACE ".*\"Version\": \"([^\"]*)\".*" "\\1" version "${version}")
  list(APPEND bundled "${library} ${version} qt6-base")
endforeach()
write_bill("${root}/corvane-recorder.cdx.json" "${packages}" "${bundled}")

include("${PROJECT_SOURCE_DIR}/packaging/windows/windows_text.cmake")
write_windows_text("${PROJECT_SOURCE_DIR}/packaging/windows/LICENZE.txt.in" "${root}/licenze/LICENZE.txt")
