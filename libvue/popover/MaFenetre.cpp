#include <libvue/popover/MaFenetre.h>

#include <libvue/platform/appkit/NSScreen.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/popover/KCPopover.h>

namespace libvue {

static const ClassRegistration<MaFenetre> enregistrement;

namespace {

NSRect surEcran(const NSRect& r, const NSScreen* screen) {
    return screen ? NSOffsetRect(r, screen->frame().origin.x, screen->frame().origin.y) : r;
}

constexpr ConstantString kCadre{u"NSWindowRect"}, kStyle{u"NSWindowStyleMask"}, kTitre{u"NSWindowTitle"},
    kVue{u"NSWindowView"};

} // namespace

void MaFenetre::describe(ClassDescription<MaFenetre, KCTransientPanel>& c) {
    c.answers<&MaFenetre::windowDidMove>("windowDidMove:");
    c.key<&MaFenetre::popover, &MaFenetre::setPopover>("popover");
}

MaFenetre::MaFenetre() { observeSesMouvements(); }

MaFenetre::MaFenetre(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing, BOOL defer)
    : KCTransientPanel(contentRect, styleMask, backing, defer) {
    observeSesMouvements();
}

MaFenetre::MaFenetre(const NSRect& contentRect, NSUInteger styleMask, NSBackingStoreType backing, BOOL defer,
                     NSScreen* screen)
    : MaFenetre(surEcran(contentRect, screen), styleMask, backing, defer) {}

MaFenetre::MaFenetre(NSCoder& coder)
    : MaFenetre(coder.decodeRectForKey(kCadre.get()), static_cast<NSUInteger>(coder.decodeIntegerForKey(kStyle.get())),
                NSBackingStoreBuffered, YES) {
    coder.beginDecoding(this);
    if (const Ref<NSString> titre = as<NSString>(coder.decodeObjectForKey(kTitre.get()))) setTitle(titre);
    if (const Ref<NSView> vue = as<NSView>(coder.decodeObjectForKey(kVue.get()))) setContentView(vue);
}

void MaFenetre::encodeWithCoder(NSCoder& coder) const {
    coder.encodeRect_forKey(contentRectForFrameRect(frame()), kCadre.get());
    coder.encodeInteger_forKey(static_cast<NSInteger>(styleMask()), kStyle.get());
    if (title()) coder.encodeObject_forKey(title(), kTitre.get());
    coder.encodeObject_forKey(contentView(), kVue.get());
}

MaFenetre::~MaFenetre() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

void MaFenetre::observeSesMouvements() {
    NSNotificationCenter::defaultCenter()->addObserver<&MaFenetre::windowDidMove>(this, NSWindowDidMoveNotification,
                                                                                  this);
}

KCPopover* MaFenetre::popover() const noexcept { return popover_; }
void MaFenetre::setPopover(KCPopover* popover) { popover_ = popover; }

void MaFenetre::mouseDragged(NSEvent* e) {
    KCTransientPanel::mouseDragged(e);
    dragEnCours_ = YES;
}

void MaFenetre::windowDidMove(NSNotification*) {
    if (!dragEnCours_) return;
    const Ref<MaFenetre> moi(this);
    if (const Ref<KCPopover> p = popover_.ref(); p && p->attachay()) p->decrochePopover();
    dragEnCours_ = NO;
}

void MaFenetre::cancelOperation(NSObject* sender) {
    const Ref<KCPopover> p = popover_.ref();
    if (p && p->attachay()) {
        if (!performCancelButton()) p->close();
    } else
        KCTransientPanel::cancelOperation(sender);
}

} // namespace libvue
