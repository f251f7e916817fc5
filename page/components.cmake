# The components of the report page, as texts in a source file: REPORT_PAGE_SOURCE. The command and the
# page are made of the same.
set(page_components ${CMAKE_CURRENT_LIST_DIR}/components)
set(page_scripts dom report_data identity tiles fixes findings causes effects words differences details
    filters list keys report embedded)
set(PAGE_SCRIPT "")
foreach(script ${page_scripts})
  file(READ ${page_components}/${script}.js text)
  string(APPEND PAGE_SCRIPT "${text}\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page_components}/${script}.js)
endforeach()
file(READ ${page_components}/report.html PAGE_BODY)
file(READ ${page_components}/style.css PAGE_STYLE)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${page_components}/report.html ${page_components}/style.css)
set(REPORT_PAGE_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/report_page.cpp)
configure_file(${PROJECT_SOURCE_DIR}/tools/infraconvert/reports/report_page.cpp.in ${REPORT_PAGE_SOURCE} @ONLY)
