#pragma once

#include <vector>

#include <libvue/platform/appkit/NSView.h>

namespace galerie {

using namespace libvue;

/// One page of the gallery. A page is one file that registers itself with an InscriptionPage.
class PageGalerie : public NSObject {
public:
    static void describe(ClassDescription<PageGalerie>&) {}

    /// The name in the list, and the title of the page.
    [[nodiscard]] virtual Ref<NSString> nom() const = 0;
    /// The sentence under the title.
    [[nodiscard]] virtual Ref<NSString> resume() const = 0;
    /// Below it, the page scrolls.
    [[nodiscard]] virtual NSSize tailleMin() const { return {560, 400}; }
    /// Waits for what the page loads by itself, before a picture is taken of it.
    virtual void attends() {}
    /// Made at the first call. It takes any size from tailleMin up.
    [[nodiscard]] NSView* vue();

protected:
    [[nodiscard]] virtual Ref<NSView> construitVue() = 0;

private:
    Ref<NSView> vue_;
};

/// The pages that this application was linked with.
class RegistrePages {
public:
    using Fabrique = Ref<PageGalerie> (*)();
    /// Pages stand in the order of their ranks.
    static void inscrit(int rang, Fabrique fabrique);
    [[nodiscard]] static std::vector<Ref<PageGalerie>> fabriqueToutes();
};

/// At namespace scope in the file of a page: `const InscriptionPage<PageCommandes> inscription{20};`
template <class Page> struct InscriptionPage {
    explicit InscriptionPage(int rang) {
        RegistrePages::inscrit(rang, []() -> Ref<PageGalerie> { return make<Page>(); });
    }
};

} // namespace galerie
