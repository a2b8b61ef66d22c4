#include <libvue/collections/KCCollectionItemView.h>

namespace libvue {

KCCollectionItemView::~KCCollectionItemView() = default;

namespace {

using Taille = NSSize();

Taille* tailleDe(const Class& classe) {
    const OperationEntry* e = classe.classOperation(sel("taille"));
    return e && *e->signature == typeid(Taille) ? reinterpret_cast<Taille*>(e->run) : nullptr;
}

} // namespace

NSSize tailleVueItem(const Class& classe) {
    Taille* t = tailleDe(classe);
    return t ? t() : NSZeroSize;
}

BOOL estClasseVueItem(const Class* classe) { return classe && tailleDe(*classe); }

} // namespace libvue
