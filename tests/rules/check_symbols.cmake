# cmake -DNM=… -DLIBRARY=… -DEXPECTED=… -P check_symbols.cmake
cmake_minimum_required(VERSION 3.16)
execute_process(COMMAND "${NM}" -DC --defined-only "${LIBRARY}"
                OUTPUT_VARIABLE output RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
# The linker's own marks, and what the sanitizers need (their own marks, type information of Qt's
# classes), are nobody's interface.
string(REGEX REPLACE "[^\n]* (__bss_start(__)?|_?_bss_end__|__end__|_edata|_end|_init|_fini|__odr_asan[^\n]*|typeinfo (name )?for QObjectData)\n" "" output "${output}")
string(REGEX REPLACE "(^|\n)[0-9a-f]* +[A-Za-z] " "\\1" output "${output}")
string(REPLACE "\n" ";" found "${output}")
list(REMOVE_ITEM found "")
list(REMOVE_DUPLICATES found)
list(SORT found)
file(STRINGS "${EXPECTED}" expected)

set(added ${found})
list(REMOVE_ITEM added ${expected} "")
set(gone ${expected})
list(REMOVE_ITEM gone ${found} "")
list(JOIN added "\n  " added_text)
list(JOIN gone "\n  " gone_text)
if(added OR gone)
  message(FATAL_ERROR "exported but not in ${EXPECTED}:\n  ${added_text}\n"
                      "in the list but not exported:\n  ${gone_text}")
endif()
