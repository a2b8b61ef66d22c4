#include <libvue/platform/foundation/ComparisonLevel.h>

#include <cstdint>
#include <map>
#include <utility>

namespace libvue {

namespace {

struct Comparison {
    int depth = 0;
    std::uint32_t pairs = 0; // since the outermost began
    std::map<std::pair<const NSObject*, const NSObject*>, BOOL> settled;
};
thread_local Comparison current;

constexpr int deepest = 2000;
/// Fewer are compared sooner than remembered.
constexpr std::uint32_t many = 10000;

} // namespace

ComparisonLevel::ComparisonLevel(const NSObject* a, const NSObject* b) noexcept : a_(a), b_(b) {
    ++current.depth;
    ++current.pairs;
}

ComparisonLevel::~ComparisonLevel() {
    if (--current.depth > 0) return;
    current.pairs = 0;
    current.settled.clear();
}

std::optional<BOOL> ComparisonLevel::known() const {
    if (current.depth > deepest) return NO;
    if (current.pairs < many) return std::nullopt;
    const auto at = current.settled.find({a_, b_});
    return at == current.settled.end() ? std::nullopt : std::optional(at->second);
}

BOOL ComparisonLevel::found(BOOL areEqual) const {
    if (current.pairs >= many) current.settled.emplace(std::pair(a_, b_), areEqual);
    return areEqual;
}

} // namespace libvue
