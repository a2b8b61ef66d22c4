#pragma once

#include <functional>
#include <vector>

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace galerie {

using namespace libvue;

/// What the page of the grid can show: a list of objects, and the item view that shows one.
class SourceDeGrille : public NSObject {
public:
    static void describe(ClassDescription<SourceDeGrille>&) {}

    /// In the popup button of sources.
    [[nodiscard]] virtual Ref<NSString> nom() const = 0;
    /// How many objects there can be, and how many at first.
    [[nodiscard]] virtual NSUInteger maximum() = 0;
    [[nodiscard]] virtual NSUInteger auDebut() = 0;
    /// The first `nombre` objects, at most `maximum`.
    [[nodiscard]] virtual Ref<NSArray> objets(NSUInteger nombre) = 0;
    /// Of the item views, and the resource of the application that holds one.
    [[nodiscard]] virtual const Class& classeVue() const = 0;
    [[nodiscard]] virtual Ref<NSString> nomNib() const = 0;
    /// What stands above the grid for this source; null for nothing.
    [[nodiscard]] virtual NSView* barre() { return nullptr; }
    /// Sent each time the page begins to show it.
    virtual void commence() {}
    /// Waits for what it loads by itself, before a picture is taken.
    virtual void attends() {}
    /// The page's: the source has other objects now.
    std::function<void()> surChangement;
    /// One object, for the line below the grid.
    [[nodiscard]] virtual Ref<NSString> dit(NSObject* objet) const = 0;
};

/// A source is made once a page: `const InscriptionSource<DossierDImages> inscription{20};` at namespace scope.
class RegistreSources {
public:
    using Fabrique = Ref<SourceDeGrille> (*)();
    /// In the order of their ranks.
    static void inscrit(int rang, Fabrique fabrique);
    [[nodiscard]] static std::vector<Ref<SourceDeGrille>> fabriqueToutes();
};

template <class Source> struct InscriptionSource {
    explicit InscriptionSource(int rang) {
        RegistreSources::inscrit(rang, []() -> Ref<SourceDeGrille> { return make<Source>(); });
    }
};

} // namespace galerie
