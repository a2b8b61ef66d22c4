#include <foundation/Valeurs.h>

#include <libvue/platform/coredata/NSManagedObject.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSURL.h>
#include <libvue/text/formats/NSCountedSetKerlanAdditions.h>
#include <libvue/text/formats/NSDictionaryMerge.h>
#include <libvue/text/formats/NSFileManagerAjoutKerlan.h>
#include <libvue/text/formats/NSURLAjoutKerlan.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

using Paires = std::initializer_list<std::pair<const char16_t*, Ref<NSObject>>>;

Ref<NSDictionary> dictionnaire(Paires paires) {
    const Ref<NSMutableDictionary> d = NSMutableDictionary::dictionary();
    for (const auto& [cle, valeur] : paires)
        d->setObject_forKey(valeur, text(cle));
    return d;
}

std::string attributs(const Ref<NSDictionary>& d) { return d ? described(d->objectForKey(NSFileType)) : "(null)"; }

} // namespace

TEST(Extensions, areAnsweredByName) {
    const auto entite = make<NSEntityDescription>(text(u"E"));
    const auto objet = NSManagedObject::initWithEntity_insertIntoManagedObjectContext(entite, nullptr);
    const struct {
        Ref<NSObject> receveur;
        std::initializer_list<const char*> operations;
    } rows[] = {
        {text(u"[1]"),
         {"JSONFragmentValue", "JSONValue", "JSONFragment", "JSONRepresentation", "matchedByPattern:",
          "matchedByPattern:options:", "substringMatchedByPattern:", "substringMatchedByPattern:options:",
          "substringsCapturedByPattern:", "substringsCapturedByPattern:options:", "escapedPattern"}},
        {NSURL::URLWithString(text(u"http://a.org")), {"ajusteEncodage"}},
        {NSDictionary::dictionary(), {"dictionaryByMergingWith:"}},
        {NSCountedSet::set(), {"objectsByOcccurence"}},
        {Ref<NSObject>(NSFileManager::defaultManager()), {"attributesOfItemAtPath:traverseLink:error:"}},
        {objet,
         {"copyAttributesFromObject:", "addObject:toToManyRelationshipForKey:",
          "copyToOneRelationshipForKey:fromObject:useExisting:",
          "copyToManyRelationshipForKey:fromObject:useExisting:"}},
    };
    for (const auto& row : rows)
        for (const char* operation : row.operations)
            EXPECT_TRUE(row.receveur->respondsToSelector(sel(operation))) << operation;
    const Ref<NSObject> lu = rows[0].receveur->performSelector(sel("JSONValue"));
    EXPECT_EQ(described(lu->performSelector(sel("JSONRepresentation"))), "[1]");
}

TEST(NSURLAjoutKerlan, escapesAreThoseThatAreNeeded) {
    const struct {
        const char16_t *avant, *apres;
    } rows[] = {
        {u"http://a.org/%C3%A9t%C3%A9", u"http://a.org/%C3%A9t%C3%A9"},
        {u"http://a.org/%61%2Db", u"http://a.org/a-b"},
        {u"http://a.org/deux%20mots#haut", u"http://a.org/deux%20mots#haut"},
        {u"http://a.org/x%23y", u"http://a.org/x#y"}, // an escaped mark becomes a bare one
        {u"http://a.org/?q=%e2%82%ac", u"http://a.org/?q=%E2%82%AC"},
        {u"http://a.org/%FF", nullptr},
    };
    for (const auto& row : rows) {
        const Ref<NSURL> url = NSURL::URLWithString(text(row.avant));
        ASSERT_NE(url, nullptr) << shown(row.avant);
        const Ref<NSURL> ajuste = ajusteEncodage(url);
        EXPECT_EQ(ajuste ? shown(ajuste->absoluteString()) : "none", row.apres ? shown(row.apres) : "none");
    }
    EXPECT_EQ(ajusteEncodage(nullptr), nullptr);
}

TEST(NSDictionaryMerge, theReceiverWinsAndDictionariesAreMerged) {
    const Ref<NSDictionary> a = dictionnaire({{u"a", dictionnaire({{u"x", number(1)}})}, {u"b", number(2)}});
    const Ref<NSDictionary> b = dictionnaire(
        {{u"a", dictionnaire({{u"y", number(3)}})}, {u"b", dictionnaire({{u"z", number(4)}})}, {u"c", number(5)}});
    const Ref<NSDictionary> fusion = dictionnaire(
        {{u"a", dictionnaire({{u"x", number(1)}, {u"y", number(3)}})}, {u"b", number(2)}, {u"c", number(5)}});
    const struct {
        Ref<NSDictionary> a, b, fusion;
    } rows[] = {
        {a, b, fusion},
        {b, a,
         dictionnaire({{u"a", dictionnaire({{u"x", number(1)}, {u"y", number(3)}})},
                       {u"b", dictionnaire({{u"z", number(4)}})},
                       {u"c", number(5)}})},
        {a, nullptr, a},
        {dictionnaire({{u"k", dictionnaire({})}}), dictionnaire({{u"k", number(1)}}),
         dictionnaire({{u"k", dictionnaire({})}})},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(isEqual(dictionaryByMergingWith(row.a, row.b), row.fusion))
            << described(dictionaryByMergingWith(row.a, row.b));
    EXPECT_EQ(dictionaryByMergingWith(nullptr, b), nullptr);
    // Neither side changed, nor what is nested in it.
    EXPECT_EQ(a->get<NSDictionary>(text(u"a"))->count(), 1u);
    EXPECT_EQ(b->get<NSDictionary>(text(u"a"))->count(), 1u);
}

TEST(NSDictionaryMerge, depthCostsNoStack) {
    Ref<NSDictionary> a = dictionnaire({{u"x", number(1)}}), b = dictionnaire({{u"y", number(2)}});
    for (int i = 0; i < 60000; ++i) {
        a = NSDictionary::dictionaryWithObject_forKey(a, text(u"k"));
        b = NSDictionary::dictionaryWithObject_forKey(b, text(u"k"));
    }
    const Ref<NSDictionary> fusion = dictionaryByMergingWith(a, b);
    const NSDictionary* fond = fusion;
    while (const auto* plusBas = fond->get<NSDictionary>(text(u"k")))
        fond = plusBas;
    EXPECT_EQ(fond->count(), 2u);
}

TEST(NSCountedSetKerlanAdditions, theMostFrequentComeFirst) {
    const Ref<NSCountedSet> s = NSCountedSet::set();
    const struct {
        const char16_t* mot;
        int fois;
    } rows[] = {{u"le", 3}, {u"chat", 1}, {u"de", 7}, {u"la", 5}, {u"mère", 2}};
    for (const auto& row : rows)
        for (int i = 0; i < row.fois; ++i)
            s->addObject(text(row.mot));
    EXPECT_EQ(shown(objectsByOcccurence(s)), "|de|la|le|m\\u00E8re|chat|");
}

TEST(NSFileManagerAjoutKerlan, linksAreFollowedToTheirEnd) {
    Folder dossier;
    auto* m = NSFileManager::defaultManager();
    dossier.write("fichier", "abc");
    const auto lie = [&](const std::string& nom, const std::string& cible) {
        std::filesystem::create_symlink(cible, dossier.path / nom);
    };
    lie("absolu", (dossier.path / "fichier").string());
    lie("deux", (dossier.path / "absolu").string());
    lie("relatif", "fichier");
    lie("rompu", (dossier.path / "nulle-part").string());
    const struct {
        const char* nom;
        BOOL suit;
        const char* type;
        bool erreur;
    } rows[] = {
        {"fichier", YES, "NSFileTypeRegular", false},
        {"absolu", YES, "NSFileTypeRegular", false},
        {"deux", YES, "NSFileTypeRegular", false},
        {"relatif", NO, "NSFileTypeSymbolicLink", false},
        {"relatif", YES, "(null)", true}, // looked for beneath the link, where nothing is
        {"rompu", YES, "(null)", true},
        {"absent", YES, "(null)", true},
    };
    for (const auto& row : rows) {
        Ref<NSError> erreur;
        EXPECT_EQ(attributs(attributesOfItemAtPath_traverseLink_error(m, dossier.at(row.nom), row.suit, &erreur)),
                  row.type)
            << row.nom << row.suit;
        EXPECT_EQ(erreur != nullptr, row.erreur) << row.nom;
    }
    EXPECT_EQ(attributesOfItemAtPath_traverseLink_error(m, dossier.at("absent"), YES, nullptr), nullptr);
}

TEST(NSFileManagerAjoutKerlan, aLongChainOfLinksHasAnEnd) {
    Folder dossier;
    dossier.write("0", "abc");
    constexpr int liens = 300; // many more than the system would follow by itself
    for (int i = 1; i <= liens; ++i)
        std::filesystem::create_symlink(dossier.path / std::to_string(i - 1), dossier.path / std::to_string(i));
    EXPECT_EQ(attributs(attributesOfItemAtPath_traverseLink_error(NSFileManager::defaultManager(),
                                                                  dossier.at(std::to_string(liens)), YES, nullptr)),
              "NSFileTypeRegular");
}
