# The package's files that are made while it is put together: AppStream metadata, changelog, man pages, and the list of
# what the programs are built from. Times are those of SOURCE_DATE_EPOCH.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(doc "${root}/share/doc/corvane-recorder")
set(packaging "${PROJECT_SOURCE_DIR}/packaging")
set(ENV{LC_ALL} C.UTF-8)

# compress(FILE): Debian's way, without a name or a time inside.
function(compress file)
  execute_process(COMMAND gzip --best --no-name --force "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP releaseDay "%Y-%m-%d" UTC)
configure_file("${packaging}/${id}.metainfo.xml.in" "${root}/share/metainfo/${id}.metainfo.xml" @ONLY)

string(TIMESTAMP releaseTime "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${packaging}/changelog.in" "${doc}/changelog" @ONLY)
compress("${doc}/changelog")

foreach(page IN ITEMS app/corvrec-config.1 tools/lab/corvrec-lab.1)
  cmake_path(GET page FILENAME name)
  configure_file("${PROJECT_SOURCE_DIR}/${page}" "${root}/share/man/man1/${name}" COPYONLY)
  compress("${root}/share/man/man1/${name}")
endforeach()

include("${packaging}/bill_of_materials.cmake")
