# What a desktop wants of the map view beside the program: manual page, completions, menu entry, icon.
if(TARGET brindle_map)
  brindle_tool_manual(brindle_map map)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/brindle-map.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
          COMPONENT map)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/brindle-map.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT map)
endif()
