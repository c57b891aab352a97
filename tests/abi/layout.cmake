# The layout table of the flat records: compares it with the header, or generates a C program that compares it with the
# compiler.
#   -DMODE=names -DTABLE=... -DHEADER=...
#   -DMODE=program -DTABLE=... -DPROGRAM=...
file(STRINGS ${TABLE} lines REGEX "^[^#]")

if(MODE STREQUAL program)
    set(checks "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^([A-Za-z]+)\\.([A-Za-z]+) ([0-9]+) ([0-9]+)$")
            string(APPEND checks "    FIELD(${CMAKE_MATCH_1}, ${CMAKE_MATCH_2}, ${CMAKE_MATCH_3}, ${CMAKE_MATCH_4});\n")
        elseif(line MATCHES "^([A-Za-z]+) ([0-9]+) ([0-9]+)$")
            string(APPEND checks "    RECORD(${CMAKE_MATCH_1}, ${CMAKE_MATCH_2}, ${CMAKE_MATCH_3});\n")
        else()
            message(FATAL_ERROR "invalid line in the table: ${line}")
        endif()
    endforeach()
    file(WRITE ${PROGRAM} "#include \"layout.h\"\n\nint main(void)\n{\n${checks}    return failures != 0;\n}\n")
    return()
endif()

# A field that is missing in the table could hide in padding, so the names are compared too, with their order.
file(READ ${HEADER} text)
string(REGEX REPLACE "/\\*[^*]*\\*+([^/*][^*]*\\*+)*/" "" text "${text}")
string(REGEX MATCHALL "typedef struct [A-Za-z]+|[a-zA-Z0-9_]+ \\*?[A-Za-z]+;" declarations "${text}")
set(declared "")
foreach(declaration IN LISTS declarations)
    if(declaration MATCHES "^typedef struct ([A-Za-z]+)$")
        set(record ${CMAKE_MATCH_1})
        list(APPEND declared ${record})
    elseif(declaration MATCHES " \\*?([A-Za-z]+)$")
        list(APPEND declared ${record}.${CMAKE_MATCH_1})
    endif()
endforeach()
list(TRANSFORM lines REPLACE " .*" "")
if(NOT lines STREQUAL declared)
    message(FATAL_ERROR "the table and the header differ:\n${lines}\n${declared}")
endif()
