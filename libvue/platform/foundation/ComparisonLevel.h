#pragma once

#include <optional>

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// One comparison of two collections, often within that of others. Collections that hold themselves have no end: beyond
/// a depth that nothing sensible has, two that are not the same object are taken as unequal. Those that hold one
/// another many times over have too many ways through them: a long comparison remembers which pairs it has settled.
class ComparisonLevel {
public:
    ComparisonLevel(const NSObject* a, const NSObject* b) noexcept;
    ~ComparisonLevel();
    ComparisonLevel(const ComparisonLevel&) = delete;
    ComparisonLevel& operator=(const ComparisonLevel&) = delete;

    /// The answer, where it is known without looking into them.
    [[nodiscard]] std::optional<BOOL> known() const;
    /// The answer that looking into them gave.
    BOOL found(BOOL areEqual) const;

private:
    const NSObject* a_;
    const NSObject* b_;
};

} // namespace libvue
