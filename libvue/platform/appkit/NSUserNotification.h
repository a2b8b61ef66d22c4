#pragma once

#include <functional>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

inline constexpr ConstantString NSUserNotificationDefaultSoundName{u"NSUserNotificationDefaultSoundName"};

/// What the desktop is to show in its corner. Changing one that was delivered changes nothing on the screen.
class LIBVUE_API NSUserNotification : public NSObject {
public:
    static void describe(ClassDescription<NSUserNotification>& c);
    NSUserNotification();
    ~NSUserNotification() override;

    [[nodiscard]] NSString* title() const noexcept;
    void setTitle(NSString* title);
    /// Stands above the informative text; null for none.
    [[nodiscard]] NSString* subtitle() const noexcept;
    void setSubtitle(NSString* subtitle);
    [[nodiscard]] NSString* informativeText() const noexcept;
    void setInformativeText(NSString* text);
    /// Null for no sound; any other name is the desktop's sound for messages.
    [[nodiscard]] NSString* soundName() const noexcept;
    void setSoundName(NSString* name);
    /// Whether the desktop has shown it.
    [[nodiscard]] BOOL isPresented() const noexcept { return presented_; }

    /// Run, once and from the run loop, where nobody could show it. Without one the log says so.
    void setFailureHandler_(std::function<void()> handler) { failed_ = std::move(handler); }

private:
    friend class NSUserNotificationCenter;
    Ref<NSString> title_, subtitle_, text_, sound_;
    std::function<void()> failed_;
    NSUInteger number_ = 0; ///< of its last delivery
    bool presented_ = false;
};

} // namespace libvue
