# cmake -DIN=TEXT -DOUT=FILE -P MakeLicence.cmake: copies a text with CR LF line ends, and with lines short enough to be
# seen whole in the dialog's one column, capitals in a wide font included.
execute_process(COMMAND fmt -w 64 ${IN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
file(CONFIGURE OUTPUT ${OUT} CONTENT "${text}" @ONLY NEWLINE_STYLE WIN32)
