#pragma once

#include <cstddef>
#include <cstdint>

/// The property of a fuzz target for one entry of the archive of the program Overcurrent: whatever bytes
/// stand in it, in an archive whose other entries are good, reading and repairing end in a result, and an
/// archive that was read gives bytes that read back as the same. The good entries are those of an archive
/// with results.
void checkArchivePart(const char* entry, const std::uint8_t* bytes, std::size_t size);
