#include <libvue/platform/foundation/RunLoopHeap.h>

namespace libvue {

RunLoopHeap::~RunLoopHeap() {
    for (RunLoopWork* w : items_)
        delete w;
}

RunLoopWork* RunLoopHeap::add(std::unique_ptr<RunLoopWork> work) {
    work->order = nextOrder_++;
    items_.push_back(work.get());
    RunLoopWork* added = work.release();
    put(items_.size() - 1, added);
    rise(added->place);
    return added;
}

std::unique_ptr<RunLoopWork> RunLoopHeap::take(RunLoopWork* work) {
    const std::size_t place = work->place;
    RunLoopWork* last = items_.back();
    items_.pop_back();
    if (last != work) {
        put(place, last);
        sink(place);
        rise(last->place);
    }
    work->place = RunLoopWork::nowhere;
    return std::unique_ptr<RunLoopWork>(work);
}

RunLoopWork* RunLoopHeap::earliest(RunLoopModes modes, std::uint64_t before) const {
    RunLoopWork* best = nullptr;
    search(0, modes, before, best);
    return best;
}

void RunLoopHeap::search(std::size_t place, RunLoopModes modes, std::uint64_t before, RunLoopWork*& best) const {
    if (place >= items_.size()) return;
    RunLoopWork* w = items_[place];
    if (best && !isBefore(w, best)) return;
    if ((w->modes & modes) && w->order < before) {
        best = w;
        return;
    }
    search(2 * place + 1, modes, before, best);
    search(2 * place + 2, modes, before, best);
}

void RunLoopHeap::put(std::size_t place, RunLoopWork* work) noexcept {
    items_[place] = work;
    work->place = place;
}

void RunLoopHeap::rise(std::size_t place) noexcept {
    RunLoopWork* w = items_[place];
    while (place > 0 && isBefore(w, items_[(place - 1) / 2])) {
        put(place, items_[(place - 1) / 2]);
        place = (place - 1) / 2;
    }
    put(place, w);
}

void RunLoopHeap::sink(std::size_t place) noexcept {
    RunLoopWork* w = items_[place];
    for (;;) {
        std::size_t child = 2 * place + 1;
        if (child >= items_.size()) break;
        if (child + 1 < items_.size() && isBefore(items_[child + 1], items_[child])) ++child;
        if (!isBefore(items_[child], w)) break;
        put(place, items_[child]);
        place = child;
    }
    put(place, w);
}

} // namespace libvue
