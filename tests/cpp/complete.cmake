# Looks for what brimlet.hpp lacks: a call of every exported function, in the view of every flat record a reading of
# every field, and every result code.
#   -DEXPORTS=... -DLAYOUT=... -DCODES=... -DBINDING=...
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

file(STRINGS ${CODES} codes REGEX "^ +BRIMLET_[A-Z_]+ *=")
foreach(code IN LISTS codes)
    string(REGEX MATCH "BRIMLET_[A-Z_]+" name "${code}")
    if(NOT text MATCHES " = ${name}[^A-Z_]")
        list(APPEND missing ${name})
    endif()
endforeach()

if(missing)
    message(FATAL_ERROR "missing in brimlet.hpp: ${missing}")
endif()

list(LENGTH names functions)
list(LENGTH fields field_count)
list(LENGTH codes code_count)
if(NOT functions EQUAL 96 OR NOT field_count EQUAL 132 OR NOT code_count EQUAL 19)
    message(FATAL_ERROR
        "${functions} functions, ${field_count} fields and ${code_count} codes to look for, not 96, 132 and 19")
endif()
