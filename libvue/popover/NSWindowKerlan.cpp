#include <libvue/popover/NSWindowKerlan.h>

#include <libvue/platform/appkit/NSEvent.h>
#include <libvue/platform/appkit/NSWindow.h>
#include <libvue/platform/appkit/WebView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>

namespace libvue {

namespace {

/// The web view that the object, a view of the class of that name, belongs to; null for anything else.
Ref<WebView> vueWebDe(NSResponder* r) {
    if (!r) return nullptr;
    const Class* classe = NSClassFromString(u"WebHTMLView"_ns);
    if (!classe || !r->isKindOfClass(*classe)) return nullptr;
    const auto sa = op::_webView.of(r);
    return sa ? Ref<WebView>(sa()) : Ref<WebView>();
}

bool contient(const Ref<NSString>& texte, NSString* partie) { return texte && texte->rangeOfString(partie).length > 0; }

Ref<NSString> enMinuscules(const Ref<NSString>& texte) { return texte ? texte->lowercaseString() : Ref<NSString>(); }

bool estUn(const Ref<NSString>& nom, NSString* autre) { return nom && nom->isEqualToString(autre); }

/// The caret stands behind the last character of a text.
bool estEnFinDeTexte(DOMRange* plage) {
    const Ref<DOMNode> debut = plage->startContainer();
    if (!debut || debut->nodeType() != DOM_TEXT_NODE) return false;
    const Ref<NSString> texte = debut->nodeValue();
    return plage->startOffset() == static_cast<NSInteger>(texte ? texte->length() : 0);
}

/// A node that reacts to a single click by itself, or asks to be left alone.
bool refuseLeDouble(DOMNode* noeud) {
    const Ref<NSString> nom = enMinuscules(noeud->nodeName());
    if (estUn(nom, u"a"_ns) || estUn(nom, u"select"_ns) || estUn(nom, u"svg"_ns)) return true;
    auto* element = as<DOMElement>(noeud);
    if (!element) return false;
    const Ref<NSString> classe = enMinuscules(element->getAttribute(u"class"_ns));
    return (estUn(nom, u"span"_ns) && contient(classe, u"liensyn"_ns)) || contient(classe, u"zerl_double_clic"_ns);
}

} // namespace

void getAllWindowDescendants(NSWindow* window, NSMutableArray* descendants) {
    if (!window || !descendants) return;
    const Ref<NSArray> enfants = window->childWindows();
    for (NSUInteger i = 0; i < enfants->count(); ++i) {
        auto* enfant = enfants->at<NSWindow>(i);
        descendants->addObject(enfant);
        getAllWindowDescendants(enfant, descendants);
    }
}

BOOL devraitBloquerEvenement(NSWindow*, NSEvent* e) {
    if (!e || e->type() != NSKeyDown) return NO;
    const Ref<NSWindow> fenetre = e->window();
    if (!fenetre) return NO;
    const NSString* touches = e->charactersIgnoringModifiers();
    const unichar c = touches && touches->length() > 0 ? touches->characterAtIndex(0) : unichar{0};
    const bool gauche = c == NSLeftArrowFunctionKey, droite = c == NSRightArrowFunctionKey;
    if (!gauche && !droite) return NO;

    static const SEL cmdNaviguer = sel("cmdNaviguer:");
    if (e->modifierFlags() & NSCommandKeyMask)
        if (const Ref<NSObject> delegue(fenetre->delegate()); delegue && delegue->respondsToSelector(cmdNaviguer)) {
            (void)delegue->performSelector_withObject(cmdNaviguer, e);
            return YES;
        }
    // Whatever the modifiers are.
    const Ref<WebView> web = vueWebDe(fenetre->firstResponder());
    if (!web) return NO;
    const auto commande = op::webView_doCommandBySelector.of(web->policyDelegate());
    if (!commande) return NO;
    (void)commande(web, sel(droite ? "moveRight:" : "moveLeft:"));
    return YES;
}

BOOL devraitDoublerEvenement(NSWindow*, NSEvent* e) {
    if (!e || (e->type() != NSLeftMouseDown && e->type() != NSLeftMouseUp)) return NO;
    if (e->modifierFlags() & NSControlKeyMask) return NO;
    const Ref<NSWindow> fenetre = e->window();
    if (!fenetre || !fenetre->contentView()) return NO;
    const Ref<WebView> web = vueWebDe(fenetre->contentView()->hitTest(e->locationInWindow()));
    if (!web || e->clickCount() != 1) return NO;
    if (const Ref<DOMRange> plage = web->selectedDOMRange()) {
        const Ref<NSString> choisi = plage->toString();
        if (choisi && choisi->length() > 0) return NO;
        if (estEnFinDeTexte(plage)) return NO;
    }
    const Ref<NSDictionary> element = web->elementAtPoint(web->convertPoint_fromView(e->locationInWindow(), nullptr));
    Ref<DOMNode> noeud = element ? Ref<DOMNode>(element->get<DOMNode>(WebElementDOMNodeKey)) : Ref<DOMNode>();
    // The node itself; those around it may well be divisions.
    if (as<DOMHTMLImageElement>(noeud) || as<DOMHTMLDivElement>(noeud)) return NO;
    for (; noeud; noeud = noeud->parentNode())
        if (refuseLeDouble(noeud)) return NO;
    return YES;
}

} // namespace libvue
