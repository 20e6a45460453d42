# zobgp_readme_example(target library...): the first ```cpp block of README.md as a program, so that
# what a newcomer copies compiles and runs.
# Makes no target when the file has no such block.
function(zobgp_readme_example target)
  set(readme ${PROJECT_SOURCE_DIR}/README.md)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${readme})
  set(text "")
  if(EXISTS ${readme})
    file(READ ${readme} text)
  endif()
  set(opening "\n```cpp\n")
  string(FIND "${text}" "${opening}" begin)
  if(begin EQUAL -1)
    return()
  endif()
  string(LENGTH "${opening}" length)
  math(EXPR begin "${begin} + ${length}")
  string(SUBSTRING "${text}" ${begin} -1 text)
  string(FIND "${text}" "\n```" end)
  string(SUBSTRING "${text}" 0 ${end} code)

  set(source ${PROJECT_BINARY_DIR}/${target}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "@code@\n" @ONLY)
  add_executable(${target} ${source})
  target_link_libraries(${target} PRIVATE ${ARGN})
  target_compile_options(${target} PRIVATE -UNDEBUG) # its assertions are what it shows
endfunction()
