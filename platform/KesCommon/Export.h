#pragma once

/// Exports a class or function from its library; everything else stays hidden. No thread rule.
#define KES_EXPORT __attribute__((visibility("default")))
