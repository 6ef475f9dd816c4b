#pragma once

namespace Overcurrent {

/// The forms of an archive whose parts can be read, in their order. The second one lacks some settings and
/// decisions, and of a ramp the step before the change; the third one knows one stage and one fault.
enum class ArchiveForm { Second = 2, Third, Present };

} // namespace Overcurrent
