# Makes --gc-sections mean something for Windows programs. The linker's own script keeps every unwind table (.pdata), and
# a table holds on to its function: so whatever one object of the C++ runtime brings along stays, called or not. Without
# that one KEEP the table entry of a dropped function stays behind as zeros, which sort first and match no address; the
# language data (.xdata), which names exception handlers and types, is still kept.
execute_process(COMMAND ${CMAKE_LINKER} --verbose OUTPUT_VARIABLE script COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "^.*==================================================\n(.*)\n==================================================.*$"
    "\\1" script "${script}")
string(REPLACE "KEEP(*(.pdata*))" "*(.pdata*)" script "${script}")
set(KESTRANE_LINKER_SCRIPT ${CMAKE_BINARY_DIR}/kestrane.ld)
file(CONFIGURE OUTPUT ${KESTRANE_LINKER_SCRIPT} CONTENT "${script}" @ONLY)
