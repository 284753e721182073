# Creates the files that are generated when the package is put together: AppStream metadata, changelog, man pages, bill of
# materials. Their dates come from SOURCE_DATE_EPOCH.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(doc "${root}/share/doc/corvane-recorder")
set(packaging "${PROJECT_SOURCE_DIR}/packaging")
set(ENV{LC_ALL} C.UTF-8)

# compress(FILE): as Debian wants it, without a name or time inside.
function(compress file)
  execute_process(COMMAND gzip --best --no-name --force "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP releaseDay "%Y-%m-%d" UTC)
configure_file("${packaging}/${id}.metainfo.xml.in" "${root}/share/metainfo/${id}.metainfo.xml" @ONLY)

string(TIMESTAMP releaseTime "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${packaging}/changelog.in" "${doc}/changelog" @ONLY)
compress("${doc}/changelog")

# man_page(SOURCE DIRECTORY): installs the page under its source's name without the language.
function(man_page source directory)
  cmake_path(GET source FILENAME name)
  string(REPLACE .it. . name "${name}")
  configure_file("${PROJECT_SOURCE_DIR}/${source}" "${root}/share/man/${directory}/${name}" COPYONLY)
  compress("${root}/share/man/${directory}/${name}")
endfunction()

man_page(src/app/corvrec-config.1 man1)
man_page(src/app/corvrec-config.it.1 it/man1)
man_page(tools/lab/corvrec-lab.1 man1)

include("${packaging}/bill_of_materials.cmake")
include("${packaging}/linked_packages.cmake")
write_bill("${doc}/corvane-recorder.cdx.json" "${packages}" "")
