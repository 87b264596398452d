#pragma once

#include <trelvo/Export.h>

extern "C" {

/// Has no effect: the library needs no set-up. May be called any number of times, from any thread.
TRELVO_EXPORT void trelvo_core_init();

/// Has no effect: what the library holds is given back by its handles and when the process ends.
TRELVO_EXPORT void trelvo_core_fini();

}  // extern "C"
