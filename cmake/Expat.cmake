# The host stand-in reads XML with Expat. The machine image may carry an Expat
# package older than the archive's (missing security fixes); warn about it.
find_package(EXPAT REQUIRED)
find_program(DPKG_QUERY dpkg-query)
find_program(DPKG dpkg)
if(DPKG_QUERY AND DPKG)
  execute_process(COMMAND ${DPKG_QUERY} -W -f=\${Version} libexpat1-dev
                  OUTPUT_VARIABLE EXPAT_PACKAGE_VERSION ERROR_QUIET)
  set(XMLPLUGIN_EXPAT_MINIMUM "2.5.0-1+deb12u2")
  if(EXPAT_PACKAGE_VERSION)
    execute_process(COMMAND ${DPKG} --compare-versions ${EXPAT_PACKAGE_VERSION} lt
                            ${XMLPLUGIN_EXPAT_MINIMUM}
                    RESULT_VARIABLE EXPAT_IS_OLD)
    if(EXPAT_IS_OLD EQUAL 0)
      message(WARNING "libexpat1-dev ${EXPAT_PACKAGE_VERSION} lacks security fixes; "
                      "run scripts/setup.sh to install the archive's current Expat")
    endif()
  endif()
endif()
