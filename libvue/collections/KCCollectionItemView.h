#pragma once

#include <concepts>

#include <libvue/collections/Forward.h>
#include <libvue/platform/foundation/NSGeometry.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What a view must answer to be an item of a KCCollectionView: a view of an application's own class, made from an
/// interface resource. All its views have one size.
///
/// Its subviews take no hits: a click belongs to the item view itself.
///
///     class Carte : public NSView, public KCCollectionItemView { …
///         static NSSize taille() { return {140, 60}; }
///         static void describe(ClassDescription<Carte, NSView>& c) { decritVueItem<Carte>(c); }
class LIBVUE_API KCCollectionItemView {
public:
    virtual ~KCCollectionItemView();
    [[nodiscard]] virtual NSObject* collectionView() const = 0;
    /// The grid keeps the view: not to be kept.
    virtual void setCollectionView(NSObject* grille) = 0;
    [[nodiscard]] virtual NSObject* objetConnectay() const = 0;
    /// The only moment at which the view learns what to show; sent when the object really changes.
    virtual void setObjetConnectay(NSObject* objet) = 0;
};

/// Says in the description of an item view's class that it conforms, and what size its views have.
template <class T, class Super> void decritVueItem(ClassDescription<T, Super>& c) {
    static_assert(std::derived_from<T, KCCollectionItemView>);
    c.template classAnswers<&T::taille>("taille");
}

/// The size that a conforming class gives its views; zero of another class.
[[nodiscard]] LIBVUE_API NSSize tailleVueItem(const Class& classe);
/// Whether views of that class can be items. Null cannot.
[[nodiscard]] LIBVUE_API BOOL estClasseVueItem(const Class* classe);

} // namespace libvue
