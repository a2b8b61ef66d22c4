#include <libvue/text/chaines/ZerlCharacterSet.h>

#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

NSCharacterSet* apostrophes = nullptr;
NSCharacterSet* mot = nullptr;

const ClassRegistration<ZerlCharacterSet> enregistrement;

} // namespace

void ZerlCharacterSet::describe(ClassDescription<ZerlCharacterSet, NSCharacterSet>& c) {
    c.classAnswers<&ZerlCharacterSet::apostropheCharacterSet>("apostropheCharacterSet");
    c.classAnswers<&ZerlCharacterSet::motCharacterSet>("motCharacterSet");
}

void ZerlCharacterSet::initialize(const Class& receiver) {
    if (mot || &receiver != &classOf<ZerlCharacterSet>()) return;
    apostrophes = keptForever(NSCharacterSet::characterSetWithCharactersInString(u"'\u2019"_ns));
    Ref<NSMutableCharacterSet> lettres = make<NSMutableCharacterSet>(NSCharacterSet::alphanumericCharacterSet());
    lettres->addCharactersInString(u"-"_ns);
    const Ref<NSObject> fige = lettres->copyWithZone();
    mot = keptForever(Ref<NSCharacterSet>(static_cast<NSCharacterSet*>(fige.get())));
}

NSCharacterSet* ZerlCharacterSet::apostropheCharacterSet() {
    if (!apostrophes) initialize(classOf<ZerlCharacterSet>());
    return apostrophes;
}

NSCharacterSet* ZerlCharacterSet::motCharacterSet() {
    if (!mot) initialize(classOf<ZerlCharacterSet>());
    return mot;
}

} // namespace libvue
