#pragma once

#include <libvue/platform/backend/Drawing.h>
#include <libvue/platform/graphics/NSBezierPath.h>

namespace libvue {

struct NSBezierPath::State {
    backend::Path path;
    backend::Stroke stroke;
    NSPoint start; ///< of the subpath that is open
    NSWindingRule rule = NSNonZeroWindingRule;
    CGFloat flatness = 0.6;

    [[nodiscard]] bool hasCurrentPoint() const noexcept { return !path.points.empty(); }
    /// After a close it is where the subpath began.
    [[nodiscard]] NSPoint current() const noexcept {
        return path.verbs.back() == backend::PathVerb::close ? start : path.points.back();
    }
    void move(NSPoint p) {
        start = p;
        // Moves that nothing is drawn from leave no trace.
        if (!path.verbs.empty() && path.verbs.back() == backend::PathVerb::move)
            path.points.back() = p;
        else {
            path.verbs.push_back(backend::PathVerb::move);
            path.points.push_back(p);
        }
    }
    /// What is drawn after a close is a subpath of its own.
    void reopen() {
        if (path.verbs.back() == backend::PathVerb::close) move(start);
    }
    void line(NSPoint p) {
        reopen();
        path.verbs.push_back(backend::PathVerb::line);
        path.points.push_back(p);
    }
    void close() {
        if (hasCurrentPoint() && path.verbs.back() != backend::PathVerb::close)
            path.verbs.push_back(backend::PathVerb::close);
    }
    /// To be called where the points were changed from outside.
    void findStart();
    /// Where the points of an element lie, and where its subpath began. Raises NSRangeException out of range.
    struct Place {
        std::size_t point = 0;
        NSPoint start;
    };
    [[nodiscard]] Place placeOf(NSInteger index) const;
};

} // namespace libvue
