#include <disposition/Cadre.h>

#include <algorithm>
#include <cmath>

#include <disposition/Scene.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSBezierPath.h>
#include <libvue/platform/graphics/NSColor.h>
#include <libvue/platform/graphics/NSFont.h>
#include <libvue/platform/graphics/NSStringDrawing.h>
#include <libvue/platform/graphics/NSTextAttributes.h>

namespace galerie {

namespace {

constexpr CGFloat kBord = 10, kTitre = 20;

Ref<NSDictionary> attributsDuTitre() {
    return NSDictionary::dictionaryWithObjectsAndKeys(
        {{NSFontAttributeName, NSFont::systemFontOfSize(10)},
         {NSForegroundColorAttributeName, NSColor::secondaryLabelColor()}});
}

} // namespace

Cadre::Cadre(NSString* nom, std::int32_t direction, CGFloat espacement)
    : nom_(nom), lineaire_(make<KCLayoutLineaire>()), disposition_(make<KCLayoutView>(NSZeroRect)) {
    disposition_->setFrameOrigin({kBord, kTitre});
    addSubview(disposition_);
    disposition_->setLayoutManager(lineaire_);
    lineaire_->setDirection(direction);
    lineaire_->setEspacement(espacement);
    lineaire_->setAjusteTailleAuContenu(YES);
    NSNotificationCenter::defaultCenter()->addObserver<&Cadre::adapte>(this, NSViewFrameDidChangeNotification,
                                                                       disposition_);
    adapte();
}

Cadre::~Cadre() { NSNotificationCenter::defaultCenter()->removeObserver(this); }

void Cadre::setNom(NSString* nom) {
    nom_ = nom;
    adapte();
    setNeedsDisplay(YES);
}

Cadre* Cadre::autourDe(const NSView* vue) {
    for (NSView* v = vue ? vue->superview() : nullptr; v; v = v->superview())
        if (auto* c = as<Cadre>(v)) return c;
    return nullptr;
}

NSUInteger Cadre::profondeur() const {
    NSUInteger n = 0;
    for (const Cadre* c = autourDe(this); c; c = autourDe(c))
        ++n;
    return n;
}

Scene* Cadre::scene() const {
    for (NSView* v = superview(); v; v = v->superview())
        if (auto* s = as<Scene>(v)) return s;
    return nullptr;
}

void Cadre::disposeANouveau() { disposition_->setNecessiteLayout(YES); }

// Runs within the pass of the layout view inside, so that the one outside finds the new size.
void Cadre::adapte() {
    const NSSize d = disposition_->frame().size;
    const CGFloat titre = std::ceil(sizeWithAttributes(nom_, attributsDuTitre()).width);
    const NSSize taille{std::max(d.width, titre + 16) + 2 * kBord, std::max(d.height, 12.0) + kTitre + kBord};
    if (NSEqualSizes(taille, frame().size)) return;
    setNeedsDisplay(YES);
    setFrameSize(taille);
}

void Cadre::drawRect(const NSRect&) {
    NSColor* encre = NSColor::secondaryLabelColor();
    const auto forme = NSBezierPath::bezierPathWithRoundedRect_xRadius_yRadius(NSInsetRect(bounds(), 0.5, 0.5), 8, 8);
    encre->colorWithAlphaComponent(0.05)->setFill();
    forme->fill();
    encre->colorWithAlphaComponent(0.28)->setStroke();
    forme->stroke();
    const auto titre = NSString::stringWithFormat(
        u"%@  %@"_ns, lineaire_->direction() == 0 ? u"→"_ns.get() : u"↓"_ns.get(), nom_.get());
    drawAtPoint_withAttributes(titre, {kBord, 4}, attributsDuTitre());
}

void Cadre::mouseDown(NSEvent* e) {
    Scene* s = scene();
    if (!s) return;
    // What comes up here from a leaf is about that leaf.
    const NSPoint p = disposition_->convertPoint_fromView(e->locationInWindow(), nullptr);
    NSView* touchee = nullptr;
    if (NSPointInRect(p, disposition_->bounds()))
        for (NSView* v : disposition_->subviews())
            if (!v->isHidden() && NSPointInRect(p, v->frame())) touchee = v;
    s->prendsLeClavier();
    s->choisit(touchee ? touchee : this);
}

AccessibilityDescription Cadre::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"group"_ns;
    d.label = nom_;
    return d;
}

} // namespace galerie
