# Makes the build of Qt for Windows shorter, without changes to Qt's source. Qt's project(QtBase) includes it.

# precompile(TARGET HEADER...): adds to the target's precompiled headers.
function(precompile target)
  list(TRANSFORM ARGN REPLACE ".+" "$<$<COMPILE_LANGUAGE:CXX>:<\\0$<ANGLE-R>>")
  target_precompile_headers(${target} PRIVATE ${ARGN})
endfunction()

# Qt's precompiled headers lack what takes half of the time: <windows.h> and the private headers that most files include.
function(precompile_more)
  precompile(Core QtCore/qt_windows.h)
  precompile(Gui QtCore/qt_windows.h private/qguiapplication_p.h QtCore/qdebug.h)
  precompile(Widgets
    QtCore/qt_windows.h private/qapplication_p.h private/qwidget_p.h private/qabstractscrollarea_p.h qstyleoption.h
    qabstractitemview.h qlineedit.h qmenu.h QtGui/qtextdocument.h QtCore/qdebug.h)
  target_precompile_headers(QWindowsIntegrationPlugin PRIVATE ${QtBase_SOURCE_DIR}/src/gui/kernel/qt_gui_pch.h)
  precompile(QWindowsIntegrationPlugin QtCore/qt_windows.h QtGui/private/qguiapplication_p.h)
  # They use names that are macros in <windows.h>.
  set(sources ${QtBase_SOURCE_DIR}/src)
  set_source_files_properties(
    ${sources}/corelib/serialization/qxmlstream.cpp ${sources}/corelib/serialization/qxmlstreamgrammar.cpp
    ${sources}/corelib/text/qunicodetools.cpp
    TARGET_DIRECTORY Core PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  set_source_files_properties(${sources}/gui/painting/qpagesize.cpp
    TARGET_DIRECTORY Gui PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# HarfBuzz is made for being compiled in one piece; Qt does not use the part that reduces fonts.
function(unite_harfbuzz)
  get_target_property(sources BundledHarfbuzz SOURCES)
  list(FILTER sources EXCLUDE REGEX "hb-subset")
  set_target_properties(BundledHarfbuzz PROPERTIES SOURCES "${sources}" UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
endfunction()

# At the end, when the targets exist.
cmake_language(DEFER CALL precompile_more)
cmake_language(DEFER CALL unite_harfbuzz)
