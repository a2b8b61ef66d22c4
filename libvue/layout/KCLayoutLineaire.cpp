#include <libvue/layout/KCLayoutLineaire.h>

#include <algorithm>

#include <libvue/layout/KCLayoutView.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/foundation/KindTest.h>

namespace libvue {

static const ClassRegistration<KCLayoutLineaire> enregistrement;

namespace {

constexpr CGFloat kEcartTexteBoite = 3.0; ///< a box right after a text field stands that much further off
constexpr NSUInteger kMargesVerticales = NSViewMinYMargin | NSViewMaxYMargin;
constexpr NSUInteger kMargesHorizontales = NSViewMinXMargin | NSViewMaxXMargin;

} // namespace

void KCLayoutLineaire::describe(ClassDescription<KCLayoutLineaire>& c) {
    c.answers<&KCLayoutLineaire::layoutView_resizeSubviewsWithOldSize>(op::layoutView_resizeSubviewsWithOldSize);
    c.key<&KCLayoutLineaire::direction, &KCLayoutLineaire::setDirection>("direction");
    c.key<&KCLayoutLineaire::espacement, &KCLayoutLineaire::setEspacement>("espacement");
    c.key<&KCLayoutLineaire::ajusteTailleAuContenu, &KCLayoutLineaire::setAjusteTailleAuContenu>(
        "ajusteTailleAuContenu");
}

void KCLayoutLineaire::setDirection(std::int32_t direction) {
    direction_ = direction;
    if (KCLayoutView* h = hote_) h->setNecessiteLayout(YES);
}

void KCLayoutLineaire::effectueLayout(KCLayoutView* h) {
    // The last one by identity, hidden or not: when it is hidden, the gap after the last visible view stays.
    const NSView* dernier = h->subviews().lastObject();
    KindTest<NSBox> isBox;
    CGFloat a = 0.0, b = 0.0;
    // Place by place in the list as it is then: an observer of a frame may change it.
    for (std::size_t i = 0; i < h->subviews().size(); ++i) {
        NSView* const s = *SubviewList::Iterator(h->subviews(), i);
        if (!s->isHidden()) {
            NSRect f = s->frame();
            if (direction_ == 0) {
                f.origin.x = a;
                a += f.size.width;
                if (s != dernier) a += espacement_;
                b = std::max(b, f.origin.y + f.size.height);
            } else {
                if (i > 0 && isBox(s) && h->subviews()[i - 1]->isKindOfClass(classOf<NSTextField>()))
                    b += kEcartTexteBoite;
                f.origin.y = b;
                a = std::max(a, f.origin.x + f.size.width);
                b += f.size.height;
                if (s != dernier) b += espacement_;
            }
            s->setFrame(f);
        }
    }
    if (ajusteTailleAuContenu_) h->setFrame({h->frame().origin, {a, b}});
}

void KCLayoutLineaire::layoutView_resizeSubviewsWithOldSize(KCLayoutView* h, NSSize ancienne) {
    for (std::size_t i = 0; i < h->subviews().size(); ++i) {
        NSView* const s = *SubviewList::Iterator(h->subviews(), i);
        NSRect f = s->frame();
        const NSUInteger m = s->autoresizingMask();
        // The far margin is kept and the length counted from 0, so that a near offset is added to what the host gained.
        if (direction_ == 0) {
            if ((m & NSViewHeightSizable) && !(m & kMargesVerticales))
                f.size.height =
                    std::max(0.0, h->bounds().size.height - (ancienne.height - (f.origin.y + f.size.height)));
        } else {
            if ((m & NSViewWidthSizable) && !(m & kMargesHorizontales))
                f.size.width = std::max(0.0, h->bounds().size.width - (ancienne.width - (f.origin.x + f.size.width)));
        }
        s->setFrame(f);
    }
}

} // namespace libvue
