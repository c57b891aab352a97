# Compares the list of exports, what the linker's files make of it, the functions that the header declares and those
# that the library exports.
function(names_in file expression result)
    file(READ ${file} text)
    string(REGEX MATCHALL "${expression}" found "${text}")
    list(TRANSFORM found REPLACE "${expression}" "\\1")
    set(${result} ${found} PARENT_SCOPE)
endfunction()

file(STRINGS ${LIST} listed REGEX "^[^#]")
names_in(${DEFINITION} "    ([a-z][A-Za-z]+)" defined)
names_in(${HEADER} "BRIMLET_API [a-z0-9_]+ ([a-z][A-Za-z]+)\\(" declared)

if(LIBRARY MATCHES "\\.dll$")
    set(command ${OBJDUMP} -p)
    set(line "\t\\[ *[0-9]+\\] (\\+base\\[ *[0-9]+\\] +[0-9a-f]+ )?") # the table of names; that of addresses has "export"
else()
    set(command ${NM} -D --defined-only)
    set(line "[0-9a-f]+ [A-Za-z] ")
endif()
execute_process(COMMAND ${command} ${LIBRARY} OUTPUT_VARIABLE text RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "${command} cannot read ${LIBRARY}")
endif()
string(REGEX MATCHALL "${line}[^\n]+" exported "${text}")
list(TRANSFORM exported REPLACE "^${line}" "") # a version behind a name, after "@", would stay and show

foreach(names IN ITEMS listed defined declared exported)
    list(SORT ${names})
    list(LENGTH ${names} count)
    if(NOT count EQUAL 96)
        message(FATAL_ERROR "${count} functions ${names}, not 96: ${${names}}")
    endif()
    if(NOT ${names} STREQUAL listed)
        message(FATAL_ERROR "the list and the functions ${names} differ:\n${listed}\n${${names}}")
    endif()
endforeach()
