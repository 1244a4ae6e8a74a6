# fonklav_delay_load(TARGET LIBRARY FUNCTION...): links a library of the system that is loaded by the first call of one
# of these functions and not along with the program. Behind each name stand the bytes of the arguments, which are a part
# of the name in 32-bit code.
function(fonklav_delay_load target library)
  list(JOIN ARGN "\n" functions)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    string(REGEX REPLACE "@[0-9]+" "" functions "${functions}")
  endif()
  set(stem ${CMAKE_CURRENT_BINARY_DIR}/${library})
  file(CONFIGURE OUTPUT ${stem}.def CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${functions}\n")
  execute_process(COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${stem}.def --output-delaylib ${stem}.a
    COMMAND_ERROR_IS_FATAL ANY)
  target_link_libraries(${target} PUBLIC ${stem}.a delayimp)
endfunction()
