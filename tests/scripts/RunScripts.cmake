# Runs scripts one after the other through the program, off screen and on the virtual clock, with one settings
# file that is new at the beginning: what one script leaves is there for the next. Where an .ini file stands beside
# the first script the settings begin with it, "@WORK@" in it being that directory. "# Started with OPTIONS" as a
# script's first line adds these. DECODER is installed there as DREAM.exe; each one that was started has to end by
# itself.
#
# cmake -DPROGRAM=quorlsdr -DFOLDER=bandplans -DWORK=directory -DDECODER=program -DSCRIPTS="a.txt b.txt"
#   -P RunScripts.cmake
separate_arguments(SCRIPTS)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${FOLDER}/ DESTINATION ${WORK}/plans)  # the radio writes what it remembers into its plans
file(COPY ${FOLDER}/../themes DESTINATION ${WORK}/plans)
list(GET SCRIPTS 0 FIRST)
string(REGEX REPLACE "txt$" "ini" FIRST ${CMAKE_CURRENT_LIST_DIR}/${FIRST})
if(EXISTS ${FIRST})
  configure_file(${FIRST} ${WORK}/settings.ini @ONLY)
endif()
configure_file(${DECODER} ${WORK}/DREAM.exe COPYONLY)
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

# Real time: the decoder doesn't know of the virtual one.
function(count_lines LINE RESULT)
  set(FOUND)
  if(EXISTS ${WORK}/DREAM.exe.txt)
    file(STRINGS ${WORK}/DREAM.exe.txt FOUND REGEX "^${LINE}")
  endif()
  list(LENGTH FOUND NUMBER)
  set(${RESULT} ${NUMBER} PARENT_SCOPE)
endfunction()
foreach(TRY RANGE 200)
  count_lines("process" STARTED)
  count_lines("end" ENDED)
  if(STARTED EQUAL ENDED)
    break()
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} -E sleep 0.05)
endforeach()
if(NOT STARTED EQUAL ENDED)
  message(FATAL_ERROR "${STARTED} decoders were started, ${ENDED} have ended")
endif()
if(DEFINED STARTS AND NOT STARTED EQUAL STARTS)
  message(FATAL_ERROR "${STARTED} decoders were started instead of ${STARTS}")
endif()
