# Looks for what brimlet.hpp lacks: a call of every exported function, and in the view of every flat record a reading of
# every field.
#   -DEXPORTS=... -DLAYOUT=... -DBINDING=...
file(READ ${BINDING} text)
set(missing "")

file(STRINGS ${EXPORTS} names REGEX "^[^#]")
foreach(name IN LISTS names)
    if(NOT text MATCHES "::${name}[^A-Za-z]")
        list(APPEND missing ${name})
    endif()
endforeach()

file(STRINGS ${LAYOUT} fields REGEX "\\.")
foreach(field IN LISTS fields)
    string(REGEX MATCH "^(Flat([A-Za-z]+))\\.([A-Za-z]+)" ignored "${field}")
    set(record ${CMAKE_MATCH_1})
    set(view ${CMAKE_MATCH_2}View)
    set(name ${CMAKE_MATCH_3})
    string(FIND "${text}" "class ${view} : public View<${record}>" begin)
    string(SUBSTRING "${text}" ${begin} -1 rest)
    string(FIND "${rest}" "\n};" length)
    string(SUBSTRING "${rest}" 0 ${length} body)
    if(begin EQUAL -1 OR NOT (name STREQUAL id OR body MATCHES "flat->${name}[^A-Za-z]")) # View has the id
        list(APPEND missing ${record}.${name})
    endif()
endforeach()

list(LENGTH names functions)
list(LENGTH fields count)
if(NOT functions EQUAL 96 OR NOT count EQUAL 132)
    message(FATAL_ERROR "${functions} functions and ${count} fields to look for, not 96 and 132")
endif()
if(missing)
    message(FATAL_ERROR "missing in brimlet.hpp: ${missing}")
endif()
