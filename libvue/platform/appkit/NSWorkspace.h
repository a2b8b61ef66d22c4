#pragma once

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What lies around the application: the desktop.
class LIBVUE_API NSWorkspace : public NSObject {
public:
    static void describe(ClassDescription<NSWorkspace>& c);
    NSWorkspace() noexcept = default;
    [[nodiscard]] static NSWorkspace* sharedWorkspace();

    /// Has the desktop open it in the application that it keeps for such addresses. NO for null, and where there is no
    /// desktop.
    virtual BOOL openURL(const NSURL* url);
    /// The same for a file or a folder; NO where there is none at that path.
    BOOL openFile(const NSString* path);

    /// Whether the desktop asks for less motion: what would slide or grow is then at its end at once.
    [[nodiscard]] virtual BOOL accessibilityDisplayShouldReduceMotion() const;
};

} // namespace libvue
