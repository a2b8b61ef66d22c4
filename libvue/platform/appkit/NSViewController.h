#pragma once

#include <libvue/platform/appkit/NSResponder.h>

namespace libvue {

/// Makes a view on first use and stands for what the view shows. It is in the responder chain only where someone puts
/// it.
class LIBVUE_API NSViewController : public NSResponder {
public:
    static void describe(ClassDescription<NSViewController, NSResponder>& c);
    NSViewController();
    /// The interface resource that loadView takes the view from; a null bundle is NSNib's choice, a null name means
    /// none.
    NSViewController(NSString* nibName, NSBundle* bundle);
    ~NSViewController() override;

    /// Made by loadView on first use, after which viewDidLoad is sent.
    [[nodiscard]] virtual NSView* view();
    virtual void setView(NSView* view);
    [[nodiscard]] BOOL isViewLoaded() const noexcept { return view_ != nullptr; }
    /// The base takes the view from the interface resource, to which the controller is the owner; without one, or where
    /// that gives none, it makes an empty view. An override gives one to setView:.
    virtual void loadView();
    virtual void viewDidLoad() {}

    /// Observable as "representedObject".
    [[nodiscard]] NSObject* representedObject() const noexcept { return represented_; }
    virtual void setRepresentedObject(NSObject* object);
    /// Observable as "title"; null where none was set.
    [[nodiscard]] NSString* title() const noexcept;
    virtual void setTitle(NSString* title);
    [[nodiscard]] NSString* nibName() const noexcept;
    [[nodiscard]] NSBundle* nibBundle() const noexcept;
    /// Ends the editing in the view; NO where the editor refuses.
    BOOL commitEditing();

private:
    Ref<NSView> view_;
    Ref<NSObject> represented_;
    Ref<NSString> title_;
    Ref<NSString> nibName_;
    Ref<NSBundle> bundle_;
};

} // namespace libvue
