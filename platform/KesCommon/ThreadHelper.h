#pragma once

#include <KesCommon/Export.h>

#include <string>
#include <thread>

/// Names of threads, and the way to wait for the end of one. Any thread.
namespace Kes::ThreadHelper {

/// Names the calling thread for debuggers and process viewers. The system keeps 15 bytes; a longer name
/// is shortened to the whole UTF-8 characters that fit.
KES_EXPORT void setCurrentThreadName(const std::string& name);

/// The name as the system keeps it.
KES_EXPORT std::string getCurrentThreadName();

/// Returns when the thread has ended; does nothing for one that cannot be joined.
///
/// The worker may emit signals and wait for the GUI thread until its end: meanwhile the caller lets go
/// of the signal gate, and the GUI thread goes on serving its queue (see WaitService), so functions that
/// others have posted may run inside this call.
/// Throws std::system_error when a thread tries to join itself.
KES_EXPORT void join(std::thread& thread);

} // namespace Kes::ThreadHelper
