#pragma once

#include <utility>

namespace libvue {

/// Runs a function at the end of a block, however the block ends.
template <class F> class ScopeExit {
public:
    explicit ScopeExit(F end) : end_(std::move(end)) {}
    ~ScopeExit() { end_(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

private:
    F end_;
};

} // namespace libvue
