#pragma once

#include <string>

namespace KesTest {

/// Makes the system fail: the n-th call of one kind, or all from the n-th on.
///
/// Calls on files count when the file lies below one of the given folders, so what the toolkit does with its
/// own files goes on. Threads count unless GLib wants them, which ends the program without one.
///
/// Linked into a test it is armed by the functions below. Preloaded into a program it is armed by the
/// environment: KES_FAIL_KIND, KES_FAIL_AT (0: never, every call is only noted), KES_FAIL_ON (set: from then
/// on), KES_FAIL_BELOW (the folders, with colons between them), and KES_FAIL_LOG, a file that gets one line
/// "<kind> <what>" for each call that has failed, or been noted, and one with the number of all allocations.
/// Any thread; arm it while no other thread makes such calls.
class FailingCalls {
public:
    enum class Kind { None, Open, Read, Write, Sync, Rename, Close, Thread, Allocation };

    static constexpr const char* names[] = {"none",   "open",  "read",   "write",     "sync",
                                            "rename", "close", "thread", "allocation"};

    static void arm(Kind kind, int at, bool isFromThenOn, const std::string& folders);
    static void disarm();
    /// How many calls have failed since it was armed.
    static int count();
    /// Whether this call is to fail, and the errno of that. `what` is only noted.
    static bool fails(Kind kind, const char* what);
};

} // namespace KesTest
