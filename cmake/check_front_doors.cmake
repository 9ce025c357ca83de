# Run as a test: cmake -DSRC=<src folder> -P check_front_doors.cmake
# Every subsystem folder under SRC has one front-door header named after it (audio/audio.h, ...).
# Files of one folder may include any header of their own folder, but of another folder only its
# front door; the test fails and lists each include that reaches past one.
get_filename_component(SRC "${SRC}" ABSOLUTE)
file(GLOB_RECURSE files RELATIVE ${SRC} ${SRC}/*.h ${SRC}/*.cpp)
if(NOT files)
    message(FATAL_ERROR "no sources under ${SRC}")
endif()
set(offences 0)
foreach(rel IN LISTS files)
    string(REGEX MATCH "^[a-z_]+" own "${rel}")
    file(STRINGS ${SRC}/${rel} includes REGEX "^#include \"[a-z_]+/")
    foreach(line IN LISTS includes)
        string(REGEX MATCH "^#include \"([a-z_]+)/([^\"]+)\"" unused "${line}")
        set(folder "${CMAKE_MATCH_1}")
        set(header "${CMAKE_MATCH_2}")
        if(IS_DIRECTORY ${SRC}/${folder} AND NOT folder STREQUAL own
           AND NOT header STREQUAL "${folder}.h")
            message("${rel}: ${line} -- include \"${folder}/${folder}.h\" instead")
            math(EXPR offences "${offences} + 1")
        endif()
    endforeach()
endforeach()
if(offences GREATER 0)
    message(FATAL_ERROR "${offences} include(s) reach past another folder's front door")
endif()
