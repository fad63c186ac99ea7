# Frames are the same to the pixel on all processors only if no compiler fuses a multiplication and an
# addition on its own.
get_target_property(options docdisplay_objects COMPILE_OPTIONS)
if(NOT "-ffp-contract=off" IN_LIST options)
  message(FATAL_ERROR "The library must be compiled with -ffp-contract=off")
endif()
