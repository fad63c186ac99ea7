# The in-house libraries KxBase and KxCommon: the open stand-ins of this repository, or installed
# ones. Either way the targets are KxBase::kxbase and KxCommon::kxcommon.
if(DOCDISPLAY_KXBASE STREQUAL "system")
  include(DocDisplayFindKx)
else()
  add_subdirectory(platform/kxbase)
  add_subdirectory(platform/kxcommon)
endif()
