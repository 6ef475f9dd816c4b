#pragma once

/// Marks what a library of the family offers to others; everything else stays hidden.
#define KES_EXPORT __attribute__((visibility("default")))
