# Writes the commit of the sources as a header, which changes only where the commit does, so that a build after a
# commit compiles one small file. Run as cmake -DSOURCE=folder -DHEADER=file -P Commit.cmake.
# The text is empty for sources without their history; a + stands for changes that no commit has.
get_filename_component(ABOVE ${SOURCE} DIRECTORY)
set(ENV{GIT_CEILING_DIRECTORIES} ${ABOVE})  # another project's history is none
execute_process(COMMAND git -C ${SOURCE} describe --always --abbrev=12 --exclude=* --dirty=+
  OUTPUT_VARIABLE COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE FAULT)
if(FAULT)
  set(COMMIT "")
endif()
file(CONFIGURE OUTPUT ${HEADER} CONTENT [[
#pragma once

namespace quorl {
inline constexpr const char* kCommit = "@COMMIT@";
}
]] @ONLY)
