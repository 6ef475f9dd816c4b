#pragma once

namespace Overcurrent {

/// The forms of an archive whose parts can be read: 2 and 3.
enum class ArchiveForm { Former, Present };

} // namespace Overcurrent
