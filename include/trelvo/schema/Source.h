#pragma once

namespace trelvo::schema {

/// Where an injected statement came from. The numbers belong to the code that fills them in; they
/// pass through as 32-bit values, and 0 reads as unset.
enum Source : unsigned int { SourceUnset = 0 };

}  // namespace trelvo::schema
