#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSTimer.h>

namespace libvue {

/// One bit a mode.
using RunLoopModes = std::uint32_t;

/// Something that a run loop does at its time: fires a timer, performs an operation, or runs a block.
struct RunLoopWork {
    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

    NSTimeInterval deadline = 0;
    std::uint64_t order = 0; ///< of scheduling
    RunLoopModes modes = 0;
    std::size_t place = nowhere; ///< in the heap
    Ref<NSTimer> timer;
    Ref<NSObject> target;
    SEL selector = nullptr;
    Ref<NSObject> argument;
    std::function<void()> block;
};

/// What is to be done, by time and then by order of scheduling. Owns what is in it.
class RunLoopHeap {
public:
    RunLoopHeap() = default;
    RunLoopHeap(const RunLoopHeap&) = delete;
    RunLoopHeap& operator=(const RunLoopHeap&) = delete;
    ~RunLoopHeap();

    /// Gives the work its order.
    RunLoopWork* add(std::unique_ptr<RunLoopWork> work);
    [[nodiscard]] std::unique_ptr<RunLoopWork> take(RunLoopWork* work);
    /// The earliest one in any of those modes that was scheduled before `before`, or null. What is earlier but in other
    /// modes costs a step each.
    [[nodiscard]] RunLoopWork* earliest(RunLoopModes modes, std::uint64_t before) const;
    [[nodiscard]] std::uint64_t nextOrder() const noexcept { return nextOrder_; }
    [[nodiscard]] const std::vector<RunLoopWork*>& all() const noexcept { return items_; }

private:
    static bool isBefore(const RunLoopWork* a, const RunLoopWork* b) noexcept {
        return a->deadline != b->deadline ? a->deadline < b->deadline : a->order < b->order;
    }
    void put(std::size_t place, RunLoopWork* work) noexcept;
    void rise(std::size_t place) noexcept;
    void sink(std::size_t place) noexcept;
    void search(std::size_t place, RunLoopModes modes, std::uint64_t before, RunLoopWork*& best) const;

    std::vector<RunLoopWork*> items_;
    std::uint64_t nextOrder_ = 0;
};

} // namespace libvue
