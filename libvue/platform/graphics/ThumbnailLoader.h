#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

/// Reads picture files on a thread of its own and makes small images of them, so that a view that scrolls never waits
/// for a file. What was asked for last comes first: it is what has just come into view. Main thread.
class LIBVUE_API ThumbnailLoader : public NSObject {
public:
    static void describe(ClassDescription<ThumbnailLoader>& c);
    using Ticket = std::uint64_t; ///< 0 is none
    /// The image, or null and why there is none.
    using Done = std::function<void(NSImage* image, const std::string& error)>;

    /// The same image at once, on this thread: for a page that is printed, which is drawn only once. Null where there
    /// is none; the reason goes into `error`, which may be null.
    [[nodiscard]] static Ref<NSImage> read(const NSString* path, NSSize size, CGFloat scale, std::string* error);

    ThumbnailLoader();
    /// Waits for the file that is being read; nothing is delivered any more.
    ~ThumbnailLoader() override;

    /// Of at most `size` points at `scale` pixels each. `done` is run by the run loop, never within the call.
    Ticket load(const NSString* path, NSSize size, CGFloat scale, Done done);
    /// Its `done` is not run. A ticket that is done or unknown is ignored.
    void cancel(Ticket ticket);
    /// What was asked for and is neither delivered nor cancelled.
    [[nodiscard]] std::size_t waiting() const noexcept;
    /// Blocks until the thread has read all of it; the run loop's next turn delivers it.
    void wait();

private:
    struct State;
    std::shared_ptr<State> state_;
    Ticket last_ = 0;
};

} // namespace libvue
