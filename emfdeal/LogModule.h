#pragma once

/// The module that the encoder's lines of the log name.
constexpr const char *kLogModule = "VPrnt";
