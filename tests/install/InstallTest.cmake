# Installs the build into a fresh prefix, runs the installed xmlquery on the example document
# and configures a project that finds the package there. Arguments: BUILD_DIR, SOURCE_DIR,
# PREFIX.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX}
                OUTPUT_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "cmake --install failed: ${result}")
endif()

function(expect_output expected)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE errors
                  RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "${ARGN}\n gave (${result}) [${output}] ${errors}\n expected [${expected}]")
  endif()
endfunction()

expect_output("The Pragmatic Programmer\nStructure and Interpretation of Computer Programs\nLe Petit Prince\n"
              ${PREFIX}/bin/xmlquery ${SOURCE_DIR}/examples/library.xml /library/book/title)
foreach(file include/host/PluginSDK.h include/XmlPlugin/XmlPluginReasons.h share/man/man1/xmlquery.1)
  if(NOT EXISTS ${PREFIX}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install -B ${PREFIX}/consumer
                        -DCMAKE_PREFIX_PATH=${PREFIX}
                OUTPUT_QUIET ERROR_VARIABLE errors RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "find_package(XmlPlugin) failed: ${errors}")
endif()
file(REMOVE_RECURSE ${PREFIX})
