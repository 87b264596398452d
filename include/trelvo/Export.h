#pragma once

/// Marks what the shared library exports. Everything else in it stays hidden.
#define TRELVO_EXPORT __attribute__((visibility("default")))
