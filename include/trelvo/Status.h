#pragma once

namespace trelvo {

/// How an operation ended: a plain 32-bit number without text or class.
///
/// Routine failures are returned as a Status. The same type is thrown, by value, only for what a
/// caller cannot be expected to test for (`catch (trelvo::Status status)`); each function that
/// throws says so. The numbers are fixed for good; 5, 8, 9, 10 and 16 are reserved.
enum Status : unsigned int {
  StatusOk = 0,            ///< Success.
  StatusFailed = 1,        ///< Failed, with no more particular reason.
  StatusInternal = 2,      ///< A programming or platform fault that correct callers never meet.
  StatusOutOfMemory = 3,   ///< An allocation failed.
  StatusNotFound = 4,      ///< The key, property or remote object does not exist.
  StatusWrongState = 6,    ///< The object's type or state, or an empty handle, rules it out.
  StatusNotSupported = 7,  ///< The operation or algorithm is not available here.
  StatusInvalidParameter = 11,  ///< An argument is missing or out of range.
  StatusFileError = 12,         ///< A file could not be opened, read, written, sought or parsed.
  StatusNoConnection = 13,      ///< No connection of an allowed type is available.
  StatusChecksumMismatch = 14,  ///< Received data does not match the expected checksum.
  StatusCancelled = 15,         ///< The request was cancelled.
  StatusKeyFailure = 17,        ///< A key could not be made or decrypted.
};

}  // namespace trelvo
