# How everything is compiled for WebAssembly: exceptions, and what this compiler and its platform lack.
set(module_directory ${CMAKE_CURRENT_LIST_DIR}/module)
add_compile_options(-Wno-sign-conversion -Wno-shorten-64-to-32 "$<$<COMPILE_LANGUAGE:CXX>:-fwasm-exceptions>"
                    "$<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${module_directory}/missing.h>")
add_link_options(-fwasm-exceptions)
include_directories(${module_directory})
