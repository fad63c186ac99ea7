# Decks as flat XML, for which no engine is needed.
foreach(test IN ITEMS tst_deckxml tst_slideeffects tst_slideplan tst_decksplitter)
  docdisplay_test(${test} FOLDER import LABELS deck LIBRARIES docimport_deck Qt5::Gui)
  target_include_directories(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}") # what tests share
endforeach()
