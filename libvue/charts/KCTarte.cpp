#include <libvue/charts/KCTarte.h>

#include <algorithm>
#include <typeinfo>

#include <libvue/charts/AnglesRetenus.h>
#include <libvue/charts/KCPointeDeTarte.h>
#include <libvue/charts/KCTranslationAnimation.h>
#include <libvue/charts/KCTranslationInverseAnimation.h>
#include <libvue/charts/NombresTenus.h>
#include <libvue/charts/SecteurVise.h>
#include <libvue/charts/TableAccessible.h>
#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/graphics/CGContext.h>
#include <libvue/platform/graphics/NSShadow.h>

namespace libvue {

static const ClassRegistration<KCTarte> enregistrement;

namespace {

constexpr NSUInteger kCapacite = 8;
constexpr CGFloat kFlouOmbre = 5.0, kAlphaOmbre = 0.6666666666666666;
constexpr NSSize kDecalageOmbre{2.0, -2.0};
constexpr NSTimeInterval kDureeRetour = 0.125, kDureeExtraction = 0.25;

constexpr ConstantString kCleIndex{u"index"}, kCleObjet{u"objet"};

CGContextRef port() {
    NSGraphicsContext* courant = NSGraphicsContext::currentContext();
    return courant ? courant->graphicsPort() : nullptr;
}

template <class A> Ref<A> animation(KCTarte* tarte, KCPointeDeTarte* pointe, NSTimeInterval duree) {
    Ref<A> a = make<A>();
    a->setTarte(tarte);
    a->setPointe(pointe);
    a->setDuration(duree);
    a->setAnimationBlockingMode(NSAnimationBlocking);
    return a;
}

void lance(NSAnimation* a) { a->performSelector_withObject_afterDelay(sel("startAnimation"), nullptr, 0.0); }

} // namespace

void KCTarte::describe(ClassDescription<KCTarte, NSView>& c) {
    c.key<&KCTarte::selectedIndex, &KCTarte::setSelectedIndex>("selectedIndex");
    c.key<&KCTarte::pointes>("pointes");
    c.key<&KCTarte::total>("total");
    c.answers<&KCTarte::initTarte>("initTarte");
    c.answers<&KCTarte::ajoutePointe>("ajoutePointe:");
    c.answers<&KCTarte::enlevePointe>("enlevePointe:");
    c.answers<&KCTarte::selectedIndex>("selectedIndex");
    c.answers<&KCTarte::setSelectedIndex>("setSelectedIndex:");
}

KCTarte::KCTarte() : KCTarte(NSZeroRect) {}
KCTarte::KCTarte(const NSRect& frame) : NSView(frame), mesPointes(NSMutableArray::arrayWithCapacity(kCapacite)) {}
KCTarte::KCTarte(NSCoder& coder) : NSView(coder), mesPointes(NSMutableArray::arrayWithCapacity(kCapacite)) {}
KCTarte::~KCTarte() = default;

void KCTarte::initTarte() {
    mesPointes->removeAllObjects();
    monTotal = 0;
    maSelection = -1;
}

NSPoint KCTarte::centre() const {
    const NSSize taille = bounds().size;
    return {taille.width * 0.5, taille.height * 0.5};
}

CGFloat KCTarte::rayon() const {
    const NSSize taille = bounds().size;
    return std::min(taille.width, taille.height) * 0.5 - kFlouOmbre - KCPointeDeTarte::kDistanceExtraction;
}

// The list.

void KCTarte::ajoutePointe(KCPointeDeTarte* pointe) {
    mesPointes->addObject(pointe);
    monTotal = sommeEnRond(monTotal, pointe->valeur());
    setNeedsDisplay(YES);
}

void KCTarte::enlevePointe(KCPointeDeTarte* pointe) {
    if (mesPointes->indexOfObject(pointe) == NSNotFound) return;
    const Ref<KCPointeDeTarte> gardee(pointe);
    monTotal = differenceEnRond(monTotal, pointe->valeur());
    mesPointes->removeObject(pointe);
    setNeedsDisplay(YES);
}

KCPointeDeTarte* KCTarte::pretePointe(NSUInteger index) const { return mesPointes->at<KCPointeDeTarte>(index); }

void KCTarte::setValeur_deLaPointe(NSInteger valeur, NSUInteger index) {
    if (KCPointeDeTarte* pointe = pretePointe(index)) {
        monTotal = sommeEnRond(differenceEnRond(monTotal, pointe->valeur()), valeur);
        pointe->setValeur(valeur);
    }
    setNeedsDisplay(YES);
}

// Angles.

template <class F> void KCTarte::parcourt(const F& f) const {
    // All of it in single precision, the division first; the rounding of the sum is left as it is.
    const auto total = static_cast<float>(monTotal);
    float angle = 0.0F;
    for (NSUInteger i = 0; i < mesPointes->count(); ++i) {
        NSObject* const o = mesPointes->objectAtIndex(i);
        auto* const pointe =
            typeid(*o) == typeid(KCPointeDeTarte) ? static_cast<KCPointeDeTarte*>(o) : as<KCPointeDeTarte>(o);
        if (!pointe) continue;
        const float ouverture = static_cast<float>(pointe->valeur()) / total * 360.0F;
        const float depart = angle;
        angle = angle + ouverture;
        if (!f(pointe, static_cast<NSInteger>(i), static_cast<double>(depart), static_cast<double>(angle))) return;
    }
}

const AnglesRetenus& KCTarte::anglesRetenus() const {
    if (!angles_) angles_ = std::make_unique<AnglesRetenus>();
    AnglesRetenus& a = *angles_;
    const NSUInteger generation = KCPointeDeTarte::generation_();
    if (a.vaut(*mesPointes, monTotal, generation)) return a;
    a.commence(*mesPointes, monTotal, generation);
    parcourt([&](KCPointeDeTarte* pointe, NSInteger, double, double fin) {
        a.ajoute(static_cast<float>(fin));
        // Another kind of slice may have another outline.
        if (typeid(*pointe) != typeid(KCPointeDeTarte)) a.renonce();
        return true;
    });
    return a;
}

NSInteger KCTarte::indexPointeAtLocation(NSPoint p) const {
    const NSPoint c = centre();
    const CGFloat r = rayon();
    const auto contient = [&](KCPointeDeTarte* pointe, double depart, double fin) {
        const Ref<NSBezierPath> contour =
            pointe->pointeAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(c, r, depart, fin);
        return contour->containsPoint(p) != NO;
    };
    const SecteurVise vise(c, r, p);
    if (vise.fiable())
        if (const AnglesRetenus& angles = anglesRetenus(); angles.ordonnes())
            return angles.cherche(vise, [&](NSInteger i, double depart, double fin) {
                // All of them are plain slices.
                return contient(static_cast<KCPointeDeTarte*>(mesPointes->objectAtIndex(static_cast<NSUInteger>(i))),
                                depart, fin);
            });
    NSInteger trouvee = -1;
    parcourt([&](KCPointeDeTarte* pointe, NSInteger i, double depart, double fin) {
        if (vise.exclut(depart, fin) && typeid(*pointe) == typeid(KCPointeDeTarte)) return true;
        if (contient(pointe, depart, fin)) trouvee = i;
        return trouvee < 0;
    });
    return trouvee;
}

KCPointeDeTarte* KCTarte::pointeAtLocation(NSPoint p) const {
    const NSInteger index = indexPointeAtLocation(p);
    return index < 0 ? nullptr : pretePointe(static_cast<NSUInteger>(index));
}

// Drawing.

void KCTarte::dessineCorps() const {
    const NSPoint c = centre();
    const CGFloat r = rayon();
    if (monTotal != 0) {
        parcourt([&](KCPointeDeTarte* p, NSInteger, double depart, double fin) {
            const Ref<KCPointeDeTarte> gardee(p);
            p->drawAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin(c, r, depart, fin);
            return true;
        });
        return;
    }
    NSColor::lightGrayColor()->setFill();
    NSBezierPath::bezierPathWithOvalInRect({{c.x - r, c.y - r}, {2 * r, 2 * r}})->fill();
}

void KCTarte::drawRect(const NSRect&) {
    const CGContextRef contexte = port();
    CGContextSaveGState(contexte);
    const Ref<NSShadow> ombre = make<NSShadow>();
    ombre->setShadowColor(NSColor::blackColor()->colorWithAlphaComponent(kAlphaOmbre));
    ombre->setShadowBlurRadius(kFlouOmbre);
    ombre->setShadowOffset(kDecalageOmbre);
    ombre->set();
    dessineCorps();
    CGContextRestoreGState(contexte);
    // Once more without the shadow, which would lie on the slices drawn before.
    dessineCorps();
    if (monTotal == 0) return;
    const NSPoint c = centre();
    const CGFloat r = rayon();
    const NSRect cadre = bounds();
    parcourt([&](KCPointeDeTarte* p, NSInteger, double depart, double fin) {
        const Ref<KCPointeDeTarte> gardee(p);
        p->drawEtiquetteAvecCentre_avecRayon_avecAngleDeDepart_avecAngleDeFin_avecCadre(c, r, depart, fin, cadre);
        return true;
    });
}

// Selection.

void KCTarte::mouseDown(NSEvent* e) {
    if (monTotal == 0) return;
    const NSPoint p = convertPoint_fromView(e->locationInWindow(), nullptr);
    const Ref<NSNumber> index = NSNumber::numberWithInteger(indexPointeAtLocation(p));
    performSelector_withObject_afterDelay(sel("setSelectedIndex:"), index, 0.0);
}

Ref<NSNumber> KCTarte::selectedIndex() const { return NSNumber::numberWithInteger(maSelection); }

void KCTarte::posteSelection(NSString* nom, NSInteger index) {
    const Ref<NSNumber> nombre = NSNumber::numberWithInteger(index);
    const Ref<NSDictionary> infos =
        NSDictionary::dictionaryWithObjectsAndKeys({{kCleIndex.get(), nombre}, {kCleObjet.get(), this}});
    NSNotificationCenter::defaultCenter()->postNotificationName_object_userInfo(nom, this, infos);
}

void KCTarte::setSelectedIndex(NSNumber* index) {
    const Ref<KCTarte> self(this);
    const NSInteger ancienne = maSelection;
    NSInteger nouvelle = index ? index->integerValue() : 0;
    if (nouvelle == ancienne || nouvelle >= static_cast<NSInteger>(mesPointes->count())) nouvelle = -1;
    posteSelection(kTarteSelectionWillChange, nouvelle);
    Ref<KCTranslationInverseAnimation> retour;
    if (ancienne >= 0) {
        retour = animation<KCTranslationInverseAnimation>(this, pretePointe(static_cast<NSUInteger>(ancienne)),
                                                          kDureeRetour);
        // The mark is only on the way to another slice.
        if (nouvelle >= 0) retour->addProgressMark(1.0F);
    }
    Ref<KCTranslationAnimation> extraction;
    if (nouvelle >= 0)
        extraction =
            animation<KCTranslationAnimation>(this, pretePointe(static_cast<NSUInteger>(nouvelle)), kDureeExtraction);
    // The order of these is that of the movements.
    if (retour) lance(retour);
    if (extraction) lance(extraction);
    maSelection = nouvelle;
    posteSelection(kTarteSelectionDidChange, maSelection);
}

// What assistive tools are told.

TableAccessible KCTarte::tableAccessible() const {
    TableAccessible table;
    table.lignes.reserve(mesPointes->count());
    const auto total = static_cast<double>(monTotal);
    parcourt([&](KCPointeDeTarte* p, NSInteger i, double, double) {
        const auto valeur = static_cast<double>(p->valeur());
        table.ajoute(p->chaine(), valeur, valeur / total, i == maSelection);
        return true;
    });
    return table;
}

AccessibilityDescription KCTarte::accessibilityDescription() const {
    AccessibilityDescription d = NSView::accessibilityDescription();
    d.role = u"table"_ns;
    d.value = tableAccessible().texte();
    d.action = u"pick"_ns;
    return d;
}

} // namespace libvue
