# Writes what the linker must keep of the library: cmake -DNM=... -DARCHIVES=...;... -DPLATFORM=... -DOUTPUT=... -P this.
#
# No export of the module reaches every operation of the library, so the linker would drop most of it. OUTPUT becomes a
# file of linker options, one for each function that one of ARCHIVES defines for others, and for each way to the
# operating system that stands in a last argument: a function of PLATFORM without arguments, such as kernel32().
function(functions_of variable pattern)
  execute_process(COMMAND ${NM} --defined-only --extern-only ${ARGN}
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "T ${pattern}[\r\n]" found "${symbols}")
  list(TRANSFORM found STRIP)
  set(${variable} ${found} PARENT_SCOPE)
endfunction()
functions_of(of_rooms "__ZNK?8quorvane[^\r\n]*" ${ARCHIVES})
functions_of(of_platform "__ZN8quorvane[0-9]+[a-z][A-Za-z0-9]*Ev" ${PLATFORM})
set(functions ${of_rooms} ${of_platform})
list(TRANSFORM functions REPLACE "^T " "-Wl,-u,")
list(REMOVE_DUPLICATES functions)
list(SORT functions)
list(JOIN functions "\n" roots)
file(WRITE ${OUTPUT} "${roots}\n")
