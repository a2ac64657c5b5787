# A page of the manual as HTML: cmake -DCMARK=... -DPAGE=in.md -DTEMPLATE=... -DOUTPUT=out.html -P ...
execute_process(COMMAND ${CMARK} --extension table ${PAGE} OUTPUT_VARIABLE body
                COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ".md\"" ".html\"" body "${body}")
string(REGEX MATCH "<h1>([^<]*)</h1>" heading "${body}")
set(title "${CMAKE_MATCH_1}")
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
