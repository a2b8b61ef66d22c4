#pragma once

#include <cstdint>
#include <limits>

namespace libvue {

using BOOL = bool;
inline constexpr BOOL YES = true;
inline constexpr BOOL NO = false;

using CGFloat = double;
using NSInteger = std::int64_t;
using NSUInteger = std::uint64_t;
using NSTimeInterval = double; ///< Seconds.
using unichar = char16_t;      ///< One UTF-16 code unit.

/// Stands for the absence of an index wherever one is returned.
inline constexpr NSInteger NSNotFound = std::numeric_limits<NSInteger>::max();

enum NSComparisonResult : NSInteger { NSOrderedAscending = -1, NSOrderedSame = 0, NSOrderedDescending = 1 };

} // namespace libvue
