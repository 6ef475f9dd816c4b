# Makes the reference; fails for every warning. A member may go without a comment where one would only repeat its
# name: warnings about those do not count, those about classes do.
# usage: cmake -D DOXYGEN=... -D FOLDER=... -P RunDoxygen.cmake (FOLDER has the Doxyfile)
file(REMOVE_RECURSE ${FOLDER}/html)
execute_process(COMMAND ${DOXYGEN} ${FOLDER}/Doxyfile COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${FOLDER}/warnings.txt warnings)
list(FILTER warnings EXCLUDE REGEX "warning: Member .* is not documented\\.$")
if(warnings)
    list(JOIN warnings "\n" text)
    file(REMOVE_RECURSE ${FOLDER}/html)
    message(FATAL_ERROR "${text}")
endif()
