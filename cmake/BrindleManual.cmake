# brindle_tool_manual(TARGET COMPONENT): makes the manual page and the completions for bash and zsh of a tool from the help it
# prints, installs them with the component, and tests them. Instrumented builds leave them out: nobody installs those.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

function(brindle_tool_manual target component)
  if(NOT BRINDLE_PLAIN_CODE)
    return()
  endif()
  get_target_property(name ${target} OUTPUT_NAME)
  set(folder ${PROJECT_BINARY_DIR}/manual)
  add_custom_command(
    OUTPUT ${folder}/${name}.1 ${folder}/${name}.bash ${folder}/_${name}
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/tool-manual $<TARGET_FILE:${target}> ${folder}
    DEPENDS ${target} ${PROJECT_SOURCE_DIR}/tools/tool-manual
    COMMENT "Making the manual page and completions of ${name}"
    VERBATIM)
  add_custom_target(${target}_manual ALL DEPENDS ${folder}/${name}.1)
  install(FILES ${folder}/${name}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
  install(FILES ${folder}/${name}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
          RENAME ${name} COMPONENT ${component})
  install(FILES ${folder}/_${name} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT ${component})
  if(BRINDLE_TESTS)
    add_test(NAME ${target}_manual
             COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tests/tool_manual_test.py $<TARGET_FILE:${target}> ${folder})
    set_tests_properties(${target}_manual PROPERTIES TIMEOUT 300)
  endif()
endfunction()
