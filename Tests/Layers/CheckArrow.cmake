# Compiles one #include with the include folders of one layer.
#
#   cmake -DCOMPILER=… -DFOLDERS=… -DHEADER=… -DEXPECT=found|hidden -P CheckArrow.cmake
#
# A header of a hidden layer must be missing, and for that reason alone: any other error of the compiler fails the check.

list(TRANSFORM FOLDERS PREPEND "-I")
list(REMOVE_DUPLICATES FOLDERS)
set(ENV{LC_ALL} C)
execute_process(
  COMMAND ${COMPILER} -std=c++23 -fsyntax-only -fdiagnostics-color=never ${FOLDERS} -include "${HEADER}" -x c++ /dev/null
  RESULT_VARIABLE status
  ERROR_VARIABLE errors)

if(EXPECT STREQUAL "found")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${HEADER} cannot be included:\n${errors}")
  endif()
elseif(EXPECT STREQUAL "hidden")
  if(status EQUAL 0)
    message(FATAL_ERROR "${HEADER} can be included")
  endif()
  string(FIND "${errors}" "${HEADER}: No such file or directory" isMissing)
  string(FIND "${errors}" "'${HEADER}' file not found" isNotFound)
  if(isMissing EQUAL -1 AND isNotFound EQUAL -1)
    message(FATAL_ERROR "${HEADER} is there, but does not compile:\n${errors}")
  endif()
else()
  message(FATAL_ERROR "EXPECT is found or hidden, not ${EXPECT}")
endif()
