#include <trelvo/Library.h>

// Static initialisers and handles do all there is to do.

void trelvo_core_init() {}
void trelvo_core_fini() {}
