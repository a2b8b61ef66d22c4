#pragma once

#include <string>

#include <libvue/platform/appkit/WebView.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue::test {

/// What is selected on a page.
class Plage : public DOMRange {
public:
    static void describe(ClassDescription<Plage, DOMRange>&) {}
    explicit Plage(const char* texte, DOMNode* debut = nullptr, NSInteger place = 0)
        : texte_(texte), debut_(debut), place_(place) {}
    [[nodiscard]] Ref<NSString> toString() const override { return NSString::fromUTF8(texte_); }
    [[nodiscard]] Ref<DOMNode> startContainer() const override { return debut_; }
    [[nodiscard]] NSInteger startOffset() const override { return place_; }

private:
    std::string texte_;
    Ref<DOMNode> debut_;
    NSInteger place_;
};

/// A web view that answers what it was given.
class Page : public WebView {
public:
    static void describe(ClassDescription<Page, WebView>&) {}
    using WebView::WebView;
    Ref<DOMRange> plage;
    Ref<DOMNode> noeud;
    Weak<NSObject> regles;
    NSPoint demande;      ///< where an element was asked for
    std::string cherchee; ///< what was searched for

    [[nodiscard]] Ref<DOMRange> selectedDOMRange() override { return plage; }
    [[nodiscard]] NSObject* policyDelegate() const override { return regles; }
    [[nodiscard]] Ref<NSDictionary> elementAtPoint(NSPoint p) override {
        demande = p;
        if (!noeud) return NSDictionary::dictionary();
        return NSDictionary::dictionaryWithObject_forKey(noeud, WebElementDOMNodeKey.get());
    }
    BOOL searchFor_direction_caseSensitive_wrap(NSString* texte, BOOL avant, BOOL casse, BOOL boucle) override {
        cherchee =
            texte->utf8() + (avant ? " avant" : " arrière") + (casse ? " casse" : "") + (boucle ? " boucle" : "");
        return YES;
    }
};

} // namespace libvue::test
