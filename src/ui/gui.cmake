# The desktop window. Only these targets run moc and rcc; the core stays plain C++.
file(GLOB orchidlamp_ui_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
list(REMOVE_ITEM orchidlamp_ui_sources ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
file(GLOB orchidlamp_ui_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.h)

add_library(orchidlamp_ui STATIC ${orchidlamp_ui_sources} ${orchidlamp_ui_headers}
  ${CMAKE_CURRENT_LIST_DIR}/icons.qrc)
set_target_properties(orchidlamp_ui PROPERTIES AUTOMOC ON AUTORCC ON)
target_include_directories(orchidlamp_ui PUBLIC ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(orchidlamp_ui PUBLIC
  orchidlamp_records orchidlamp_export orchidlamp_editing orchidlamp_convert orchidlamp_platform orchidlamp_version
  Qt6::Core Qt6::Gui Qt6::Widgets Qt6::Svg)

add_executable(orchidlamp ${CMAKE_CURRENT_LIST_DIR}/main.cpp)
target_link_libraries(orchidlamp PRIVATE orchidlamp_ui)

# The help PDF beside the program, rendered from the help text at build time.
# ORCHIDLAMP_HELP_PDF names it for whoever installs the program.
add_executable(make_help_pdf ${CMAKE_CURRENT_LIST_DIR}/help/make_help_pdf.cpp)
target_link_libraries(make_help_pdf PRIVATE Qt6::Core Qt6::Gui)
set(ORCHIDLAMP_HELP_PDF "${CMAKE_CURRENT_BINARY_DIR}/Orchidlamp Help.pdf" CACHE INTERNAL "The help PDF beside the program")
add_custom_command(OUTPUT "${ORCHIDLAMP_HELP_PDF}"
  COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
          $<TARGET_FILE:make_help_pdf> ${CMAKE_CURRENT_LIST_DIR}/help/help.md "${ORCHIDLAMP_HELP_PDF}"
  DEPENDS make_help_pdf ${CMAKE_CURRENT_LIST_DIR}/help/help.md
  COMMENT "Rendering Orchidlamp Help.pdf"
  VERBATIM)
add_custom_target(orchidlamp_help ALL DEPENDS "${ORCHIDLAMP_HELP_PDF}")
add_dependencies(orchidlamp orchidlamp_help)
