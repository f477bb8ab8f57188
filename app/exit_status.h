// What the program tells the shell.
#pragma once

namespace verdanth {

constexpr int kSuccess = 0;
constexpr int kFindings = 1;       // check found something, and the plant can be used all the same
constexpr int kFailure = 2;        // nothing came of it: a bad request, an unusable file, a failed write
constexpr int kSignalStatus = 128; // plus the number of the signal that ended the work

} // namespace verdanth
