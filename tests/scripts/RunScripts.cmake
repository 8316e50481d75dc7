# Runs scripts one after the other through the program, off screen and on the virtual clock, with one settings
# file that is new at the beginning: what one script leaves is there for the next. Where an .ini file stands beside
# the first script the settings begin with it. "# Started with OPTIONS" as a script's first line adds these.
#
# cmake -DPROGRAM=quorlsdr -DFOLDER=bandplans -DWORK=directory -DSCRIPTS="a.txt b.txt" -P RunScripts.cmake
separate_arguments(SCRIPTS)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${FOLDER}/ DESTINATION ${WORK}/plans)  # the radio writes what it remembers into its plans
list(GET SCRIPTS 0 FIRST)
string(REGEX REPLACE "txt$" "ini" FIRST ${CMAKE_CURRENT_LIST_DIR}/${FIRST})
if(EXISTS ${FIRST})
  configure_file(${FIRST} ${WORK}/settings.ini COPYONLY)
endif()
set(ENV{QT_QPA_PLATFORM} offscreen)
foreach(SCRIPT ${SCRIPTS})
  set(OPTIONS)
  file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/${SCRIPT} LINE LIMIT_COUNT 1)
  if(LINE MATCHES "^# Started with (.*)$")
    separate_arguments(OPTIONS UNIX_COMMAND "${CMAKE_MATCH_1}")
  endif()
  execute_process(
    COMMAND ${PROGRAM} --demo --virtual-time --settings ${WORK}/settings.ini --folder ${WORK}/plans --script
            ${CMAKE_CURRENT_LIST_DIR}/${SCRIPT} ${OPTIONS}
    WORKING_DIRECTORY ${WORK}
    RESULT_VARIABLE CODE
    OUTPUT_VARIABLE OUTPUT
    ERROR_VARIABLE ERRORS)
  if(NOT CODE EQUAL 0)
    message(FATAL_ERROR "${SCRIPT} ended with ${CODE}\n${OUTPUT}${ERRORS}")
  endif()
endforeach()
