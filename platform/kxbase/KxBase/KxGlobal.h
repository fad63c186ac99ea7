#pragma once

/// Marks what the library offers; everything else in it is hidden.
#define KXBASE_EXPORT __attribute__((visibility("default")))
