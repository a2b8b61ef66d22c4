#pragma once

/// Marks what the shared library shows; everything else stays hidden.
#define LIBVUE_API __attribute__((visibility("default")))
