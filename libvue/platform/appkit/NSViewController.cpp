#include <libvue/platform/appkit/NSViewController.h>

#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSText.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSBundle.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

void NSViewController::describe(ClassDescription<NSViewController, NSResponder>& c) {
    c.key<&NSViewController::view, &NSViewController::setView>("view");
    c.key<&NSViewController::representedObject, &NSViewController::setRepresentedObject>("representedObject");
    c.key<&NSViewController::title, &NSViewController::setTitle>("title");
}

NSViewController::NSViewController() = default;
NSViewController::NSViewController(NSString* nibName, NSBundle* bundle) : nibName_(nibName), bundle_(bundle) {}
NSViewController::~NSViewController() = default;

NSView* NSViewController::view() {
    if (view_) return view_;
    const Ref<NSViewController> self(this);
    loadView();
    if (view_) viewDidLoad();
    return view_;
}

void NSViewController::setView(NSView* view) {
    const Ref<NSView> old = view_;
    view_ = view;
}

void NSViewController::loadView() {
    Ref<NSArray> objects;
    const Ref<NSNib> nib = nibName_ ? NSNib::initWithNibNamed_bundle(nibName_, bundle_) : nullptr;
    if (nib && nib->instantiateNibWithOwner_topLevelObjects(this, &objects) && view_) return;
    setView(make<NSView>(NSMakeRect(0, 0, 100, 100)));
}

void NSViewController::setRepresentedObject(NSObject* object) {
    const Ref<NSObject> old = represented_;
    willChangeValueForKey(u"representedObject"_ns);
    represented_ = object;
    didChangeValueForKey(u"representedObject"_ns);
}

NSString* NSViewController::title() const noexcept { return title_; }

void NSViewController::setTitle(NSString* title) {
    willChangeValueForKey(u"title"_ns);
    title_ = title ? NSString::stringWithString(title) : nullptr;
    didChangeValueForKey(u"title"_ns);
}

NSString* NSViewController::nibName() const noexcept { return nibName_; }
NSBundle* NSViewController::nibBundle() const noexcept { return bundle_; }

BOOL NSViewController::commitEditing() {
    NSWindow* w = view_ ? view_->window() : nullptr;
    auto* first = w ? as<NSView>(w->firstResponder()) : nullptr;
    if (!first || !first->isDescendantOf(view_) || !as<NSText>(first)) return YES;
    return w->makeFirstResponder(nullptr);
}

} // namespace libvue
