# SPDX-License-Identifier: MIT
# Each file that goes to a desktop, read by the tool that its readers use.
function(zelk_packaging_test name)
  add_test(NAME "packaging: ${name}" COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/tests/${ARGV1}" ${ARGV2})
  set_tests_properties("packaging: ${name}" PROPERTIES TIMEOUT 120)
endfunction()

zelk_packaging_test("desktop entries, metainfo, icons and MIME types are valid" check-desktop-files)
zelk_packaging_test("manual pages and completions are clean and name every option" check-manuals "${CMAKE_BINARY_DIR}/bin")
zelk_packaging_test("an installation into a home names its programs and can be undone" check-user-installation "${CMAKE_BINARY_DIR}")
