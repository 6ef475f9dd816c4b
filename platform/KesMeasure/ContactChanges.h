#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/SequenceRecorder.h>

#include <cstddef>
#include <optional>
#include <vector>

/// What a contact has done while a sequence ran, without its bouncing. Any thread.
///
/// A contact has changed when it stands in the new state for the debounce time; the change has the time and
/// the step of the first movement that led to it. A contact that moves and is back sooner has done nothing.
namespace KesMeasure::ContactChanges {

/// The changes of an input, counted from 1, in their order. Of a sequence that has ended.
KES_EXPORT std::vector<KesDriver::InputEvent> find(const SequenceRecord& record, unsigned input,
                                                   KesDriver::DeviceTime debounce);

/// The first of them to the state, in the given step of the sequence (from 0) or a later one.
KES_EXPORT std::optional<KesDriver::InputEvent> findFirst(const SequenceRecord& record,
                                                          KesDriver::InputCondition condition,
                                                          KesDriver::DeviceTime debounce,
                                                          std::size_t fromStep = 0);

/// Whether the contact was closed when the step began, bounces counted.
KES_EXPORT bool isClosedBefore(const SequenceRecord& record, std::size_t step, unsigned input);

} // namespace KesMeasure::ContactChanges
