// One post to a thousand observers, beside one signal that a thousand slots were connected to by name. In both the
// emitter counts what it tells, and each observer does next to nothing.

#include <memory>
#include <vector>

#include <QObject>
#include <QString>
#include <QTimer>

#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/foundation/NSString.h>

#include "Banc.h"

using namespace libvue;

namespace {

constexpr int nombre = 1000;
constexpr ConstantString kChange{u"bancChange"};

class Observateur : public NSObject {
public:
    static void describe(ClassDescription<Observateur>& c) { c.answers<&Observateur::change>("change:"); }
    void change(NSNotification*) {
        if (arme_) ++fois_;
    }

private:
    bool arme_ = false;
    int fois_ = 0;
};

banc::Chemin poste() {
    struct Notre {
        Ref<NSObject> objet = make<Observateur>();
        std::vector<Ref<Observateur>> observateurs;
    };
    auto notre = std::make_shared<Notre>();
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    for (int i = 0; i < nombre; ++i) {
        notre->observateurs.push_back(make<Observateur>());
        centre->addObserver_selector_name_object(notre->observateurs.back(), sel("change:"), kChange, notre->objet);
    }

    struct Pair {
        QObject objet;
        std::vector<std::unique_ptr<QTimer>> observateurs;
        bool tour = false;
        const QString noms[2] = {QStringLiteral("a"), QStringLiteral("b")};
    };
    auto pair = std::make_shared<Pair>();
    for (int i = 0; i < nombre; ++i) {
        pair->observateurs.push_back(std::make_unique<QTimer>());
        // A timer that does not run has one test to do in this slot.
        QObject::connect(&pair->objet, SIGNAL(objectNameChanged(QString)), pair->observateurs.back().get(),
                         SLOT(stop()));
    }

    return {[notre, centre] { centre->postNotificationName_object(kChange, notre->objet); },
            [pair] {
                pair->tour = !pair->tour;
                pair->objet.setObjectName(pair->noms[pair->tour]);
            }};
}

/// Posts that nobody hears, a thousand of them, beside as many emissions without a connection.
banc::Chemin posteDansLeVide() {
    auto notre = std::make_shared<Ref<NSObject>>(make<Observateur>());
    NSNotificationCenter* centre = NSNotificationCenter::defaultCenter();
    struct Pair {
        QObject objet;
        bool tour = false;
        const QString noms[2] = {QStringLiteral("a"), QStringLiteral("b")};
    };
    auto pair = std::make_shared<Pair>();
    return {[notre, centre] {
                for (int i = 0; i < nombre; ++i)
                    centre->postNotificationName_object(kChange, *notre);
            },
            [pair] {
                for (int i = 0; i < nombre; ++i) {
                    pair->tour = !pair->tour;
                    pair->objet.setObjectName(pair->noms[pair->tour]);
                }
            }};
}

} // namespace

int main(int argc, char** argv) {
    banc::Banc banc;
    banc.ajoute("post-1000-observers", poste);
    banc.ajoute("post-no-observer", posteDansLeVide);
    return banc.lance(argc, argv);
}
