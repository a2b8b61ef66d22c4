#pragma once

namespace libvue {

/// One comparison of collections within others. Two that hold themselves have no end: beyond a depth that nothing
/// sensible has, collections that are not the same object are taken as unequal.
class ComparisonLevel {
public:
    ComparisonLevel() noexcept { ++depth; }
    ~ComparisonLevel() { --depth; }
    ComparisonLevel(const ComparisonLevel&) = delete;
    ComparisonLevel& operator=(const ComparisonLevel&) = delete;
    [[nodiscard]] bool isTooDeep() const noexcept { return depth > deepest; }

private:
    static constexpr int deepest = 2000;
    static inline int depth = 0;
};

} // namespace libvue
