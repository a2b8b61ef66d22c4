#include "Valeurs.h"

#include <cmath>
#include <limits>
#include <set>

#include <libvue/platform/foundation/NSArchiver.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSDate.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSError.h>
#include <libvue/platform/foundation/NSIndexPath.h>
#include <libvue/platform/foundation/NSIndexSet.h>
#include <libvue/platform/foundation/NSKeyedArchiver.h>
#include <libvue/platform/foundation/NSLocale.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumberFormatter.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSSortDescriptor.h>
#include <libvue/platform/foundation/NSURL.h>

using namespace libvue;
using namespace libvue::valeurs;

namespace {

/// A node of a graph that may hold whatever it likes, also itself.
class Node : public NSObject {
public:
    static void describe(ClassDescription<Node>&) {}
    Node() { living.insert(this); }
    ~Node() override { living.erase(this); }
    explicit Node(NSCoder& coder) : Node() {
        coder.beginDecoding(this);
        bool keyed = coder.allowsKeyedCoding();
        next = keyed ? coder.decodeObject_forKey(text(u"next")) : coder.decodeObject();
        other = keyed ? coder.decodeObject_forKey(text(u"other")) : coder.decodeObject();
        value = keyed ? coder.decodeDoubleForKey(text(u"value")) : coder.decodeDouble();
        count = keyed ? coder.decodeIntegerForKey(text(u"count")) : coder.decodeInteger();
        rect = keyed ? coder.decodeRectForKey(text(u"rect")) : coder.decodeRect();
    }
    void encodeWithCoder(NSCoder& coder) const override {
        if (coder.allowsKeyedCoding()) {
            coder.encodeObject_forKey(next, text(u"next"));
            coder.encodeConditionalObject_forKey(other, text(u"other"));
            coder.encodeDouble_forKey(value, text(u"value"));
            coder.encodeInteger_forKey(count, text(u"count"));
            coder.encodeRect_forKey(rect, text(u"rect"));
        } else {
            coder.encodeObject(next);
            coder.encodeConditionalObject(other);
            coder.encodeDouble(value);
            coder.encodeInteger(count);
            coder.encodeRect(rect);
        }
    }
    /// Takes the links off all nodes: what comes from a damaged archive may go round in circles.
    static void cutAll() {
        for (const auto& n : std::vector<Ref<Node>>(living.begin(), living.end()))
            n->next = n->other = nullptr;
    }
    static inline std::set<Node*> living;
    Ref<NSObject> next, other;
    double value = 0;
    NSInteger count = 0;
    NSRect rect;
};

/// Answers to no reading.
class WriteOnly : public NSObject {
public:
    static void describe(ClassDescription<WriteOnly>&) {}
};

/// Reads other values than it wrote.
class Muddled : public NSObject {
public:
    static void describe(ClassDescription<Muddled>&) {}
    Muddled() = default;
    explicit Muddled(NSCoder& coder) {
        (void)coder.decodeDouble(); // an integer was written
        (void)coder.decodeObject();
    }
    void encodeWithCoder(NSCoder& coder) const override { coder.encodeInteger(3); }
};

/// Raises while it is read.
class Raising : public NSObject {
public:
    static void describe(ClassDescription<Raising>&) {}
    Raising() = default;
    explicit Raising(NSCoder&) { raiseNamed(NSGenericException, "no"); }
};

enum class Way { keyed, ordered };

Ref<NSData> archived(const NSObject* root, Way way) {
    return way == Way::keyed ? NSKeyedArchiver::archivedDataWithRootObject(root)
                             : NSArchiver::archivedDataWithRootObject(root);
}
Ref<NSObject> unarchived(const NSData* data, Way way, Ref<NSError>* error = nullptr) {
    return way == Way::keyed ? NSKeyedUnarchiver::unarchiveObjectWithData(data, error)
                             : NSUnarchiver::unarchiveObjectWithData(data, error);
}

Ref<NSObject> everything() {
    auto attributed = NSMutableAttributedString::initWithString(text(u"gras"));
    attributed->addAttribute_value_range(text(u"k"), number(1), {1, 2});
    auto formatter = make<NSNumberFormatter>();
    formatter->setLocale(NSLocale::localeWithLocaleIdentifier(text(u"fr_FR")));
    formatter->setNumberStyle(NSNumberFormatterDecimalStyle);
    formatter->setMinimumFractionDigits(2);
    formatter->setUsesGroupingSeparator(NO);
    formatter->setMaximum(number(9));
    return NSArray::arrayWithObjects(
        {text(u"é\u4E00\n\""),
         textes::wideText(u"a\xD800z"),
         NSMutableString::stringWithString(text(u"m")),
         number(-5),
         NSNumber::numberWithBool(YES),
         NSNumber::numberWithUnsignedInteger(~NSUInteger(0)),
         NSNumber::numberWithFloat(0.1f),
         NSNumber::numberWithDouble(-0.0),
         NSNumber::numberWithDouble(HUGE_VAL),
         NSDecimalNumber::decimalNumberWithText("0.12345678901234567890123456789"),
         NSNull::null(),
         NSValue::valueWithRect({{1, 0.1}, {3, 4}}),
         NSValue::valueWithRange({3, ~NSUInteger(0)}),
         NSData::from(std::string_view("\0\xFF"
                                       "x",
                                       3)),
         NSDate::dateWithTimeIntervalSinceReferenceDate(0.1),
         NSDictionary::dictionaryWithObjectsAndKeys({{text(u"k"), number(1)}, {number(2), text(u"v")}}),
         NSMutableSet::setWithArray(NSArray::arrayWithObjects({number(1), number(2)})),
         NSCountedSet::setWithArray(NSArray::arrayWithObjects({text(u"a"), text(u"a")})),
         NSIndexSet::indexSetWithIndexesInRange({4, 3}),
         NSIndexPath::indexPathForItem_inSection(1, ~NSUInteger(0)),
         NSSortDescriptor::sortDescriptorWithKey_ascending(text(u"n"), NO),
         NSURL::URLWithString(text(u"http://a/%C3%A9?c#d")),
         NSLocale::localeWithLocaleIdentifier(text(u"fr_CA")),
         NSError::errorWithDomain_code_userInfo(
             text(u"d"), 7, NSDictionary::dictionaryWithObject_forKey(text(u"why"), NSLocalizedDescriptionKey)),
         attributed,
         attributed->copyWithZone(),
         make<NSAttributedString>(),
         NSMutableData::dataWithLength(3),
         formatter});
}

} // namespace

TEST(Archive, valuesComeBackAsTheyWere) {
    for (Way way : {Way::keyed, Way::ordered}) {
        auto all = everything();
        Ref<NSError> error;
        auto back = unarchived(archived(all, way), way, &error);
        ASSERT_NE(back, nullptr) << (error ? described(error->localizedDescription()) : "");
        auto *before = as<NSArray>(all), *after = as<NSArray>(back);
        ASSERT_EQ(after->count(), before->count());
        for (NSUInteger i = 0; i + 1 < before->count(); ++i) {
            NSObject *a = before->objectAtIndex(i), *b = after->objectAtIndex(i);
            EXPECT_TRUE(a->isEqual(b)) << i << ": " << described(a) << " became " << described(b);
            EXPECT_EQ(&a->isa(), &b->isa()) << i;
        }
        EXPECT_STREQ(after->at<NSNumber>(4)->objCType(), "c");
        EXPECT_TRUE(std::signbit(after->at<NSNumber>(7)->doubleValue()));
        EXPECT_NE(after->at<NSMutableString>(2), nullptr);
        auto* changing = after->at<NSMutableAttributedString>(24);
        changing->deleteCharactersInRange({0, 2});
        EXPECT_EQ(shown(changing->string()), "as");
        auto* counted = after->at<NSCountedSet>(17);
        EXPECT_EQ(counted->countForObject(text(u"a")), 2u);
        auto* formatter = as<NSNumberFormatter>(after->lastObject());
        EXPECT_EQ(described(formatter->stringFromNumber(number(1234))), "1234,00");
        EXPECT_EQ(described(formatter->maximum()), "9");
    }
}

TEST(Archive, sharedObjectsAndCirclesKeepTheirShape) {
    for (Way way : {Way::keyed, Way::ordered}) {
        auto a = make<Node>(), b = make<Node>();
        auto list = NSMutableArray::arrayWithObjects({a, b, a});
        a->next = b;
        b->next = list;
        b->value = -HUGE_VAL;
        b->count = std::numeric_limits<NSInteger>::min();
        b->rect = {{0.1, 2}, {3, 4}};
        b->other = make<Node>(); // nobody else writes it
        a->other = b;
        auto back = unarchived(archived(list, way), way);
        list->removeAllObjects();
        b->next = nullptr;
        auto* l = as<NSMutableArray>(back);
        ASSERT_NE(l, nullptr);
        auto *x = l->at<Node>(0), *y = l->at<Node>(1);
        ASSERT_TRUE(x && y);
        EXPECT_EQ(l->objectAtIndex(2), x);
        EXPECT_EQ(x->next, y);
        EXPECT_EQ(x->other, y);
        EXPECT_EQ(y->next, l);
        EXPECT_EQ(y->other, nullptr);
        EXPECT_EQ(y->value, -HUGE_VAL);
        EXPECT_EQ(y->count, std::numeric_limits<NSInteger>::min());
        EXPECT_EQ(y->rect, (NSRect{{0.1, 2}, {3, 4}}));
        l->removeAllObjects();
    }
}

TEST(Archive, longChainsAreWrittenAndRefusedWithoutRecursion) {
    Ref<Node> chain;
    for (int i = 0; i < 5000; ++i) {
        auto n = make<Node>();
        n->next = chain;
        chain = n;
    }
    auto data = archived(chain, Way::keyed);
    Ref<NSError> error;
    EXPECT_EQ(unarchived(data, Way::keyed, &error), nullptr);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(described(error->localizedDescription()), "the objects are nested too deeply");
    for (Ref<NSObject> o = chain; auto* n = as<Node>(o);) // by hand, not by a recursion of destructors
        o = std::exchange(n->next, nullptr);
}

TEST(Archive, whatCannotBeReadIsAnError) {
    const struct {
        Ref<NSObject> root;
        Way way;
        const char* reason;
    } rows[] = {
        {make<WriteOnly>(), Way::keyed, "the class cannot be read from an archive: WriteOnly"},
        {NSArray::arrayWithObjects({number(1), make<WriteOnly>()}), Way::ordered,
         "the class cannot be read from an archive: WriteOnly"},
        {make<Muddled>(), Way::ordered, "a value is read as a number and is none"},
        {make<Raising>(), Way::keyed, "Raising raised: NSGenericException: no"},
    };
    for (const auto& row : rows) {
        Ref<NSError> error;
        EXPECT_EQ(unarchived(archived(row.root, row.way), row.way, &error), nullptr);
        ASSERT_NE(error, nullptr) << row.reason;
        EXPECT_EQ(described(error->localizedDescription()), row.reason);
    }
    const struct {
        const char *archive, *reason;
    } texts[] = {
        {"", "this is no archive"},
        {"[]", "this is no archive"},
        {R"({"format":"libvue-archive","version":2})", "another version"},
        {R"({"format":"libvue-archive","version":1,"kind":"ordered","top":[],"objects":[]})", "the other kind"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":[],"objects":[]})", "without objects"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":{"o":7}},"objects":[]})",
         "not in the archive"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":{"o":-1}},"objects":[]})",
         "not in the archive"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":3},"objects":[]})", "is none"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":{"o":0}},"objects":[{"class":"Nowhere","values":{}}]})",
         "an unknown class: Nowhere"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":{"o":0}},"objects":[{"class":"NSArray","values":3}]})",
         "without values"},
        {R"({"format":"libvue-archive","version":1,"kind":"keyed","top":{"root":{"o":0}},"objects":[{"class":"NSMutableString"}]})",
         "without its letters"},
    };
    for (const auto& row : texts) {
        Ref<NSError> error;
        EXPECT_EQ(unarchived(NSData::from(row.archive), Way::keyed, &error), nullptr) << row.archive;
        ASSERT_NE(error, nullptr) << row.archive;
        EXPECT_NE(described(error->localizedDescription()).find(row.reason), std::string::npos)
            << row.archive << ": " << described(error->localizedDescription());
    }
    EXPECT_EQ(unarchived(nullptr, Way::keyed), nullptr);
    auto deep = NSData::from(std::string(100000, '['));
    EXPECT_EQ(unarchived(deep, Way::keyed), nullptr);
}

TEST(Archive, damageNeverGoesUnnoticedAsACrash) {
    for (Way way : {Way::keyed, Way::ordered}) {
        auto a = make<Node>();
        a->next = NSMutableArray::arrayWithObjects({number(1), text(u"é"), NSData::from("x")});
        a->other = a;
        std::string whole(archived(a, way)->view());
        for (std::size_t n = 0; n < whole.size(); ++n)
            ASSERT_EQ(unarchived(NSData::from(std::string_view(whole).substr(0, n)), way), nullptr) << n;
        a->next = everything();
        whole = archived(a, way)->view();
        a->other = nullptr;
        Dice dice(11);
        for (int i = 0; i < 600; ++i) {
            std::string damaged = whole;
            for (std::uint64_t k = 1 + dice.below(3); k > 0; --k)
                damaged[dice.below(damaged.size())] = "0123456789{}[]\",:otnb-e"[dice.below(23)];
            // Any answer will do, except a crash.
            auto back = unarchived(NSData::from(damaged), way);
            Node::cutAll();
        }
    }
}

TEST(Archive, listsThatHoldThemselvesAreComparedWithoutEnd) {
    // A set of two lists, each of which holds itself: they fall into one place, and are compared there.
    const char* const archive = R"({"format":"libvue-archive","version":1,"kind":"ordered","top":[{"o":0}],"objects":[
        {"class":"NSSet","values":[2,{"o":1},{"o":2}]},
        {"class":"NSMutableArray","values":[2,{"o":1},{"o":1}]},
        {"class":"NSMutableArray","values":[2,{"o":2},{"o":2}]}]})";
    const Ref<NSObject> back = unarchived(NSData::from(archive), Way::ordered);
    const auto* set = as<NSSet>(back);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->count(), 2u);
    for (NSObject* list : *set)
        as<NSMutableArray>(list)->removeAllObjects();
}

TEST(Archive, listsThatHoldOneAnotherManyTimesAreComparedOnce) {
    // Two towers of lists, each of which holds the one below it twice: as many ways down as no machine can go.
    constexpr int floors = 60;
    const auto list = [](int below) {
        const std::string o = "{\"o\":" + std::to_string(below) + "}";
        return ",{\"class\":\"NSMutableArray\",\"values\":[2," + o + "," + o + "]}";
    };
    std::string archive = R"({"format":"libvue-archive","version":1,"kind":"ordered","top":[{"o":0}],"objects":[
        {"class":"NSSet","values":[2,{"o":1},{"o":2}]})";
    for (int i = 0; i < floors; ++i)
        archive += list(2 * i + 3) + list(2 * i + 4);
    const std::string ground = R"(,{"class":"NSMutableArray","values":[0]})";
    const Ref<NSObject> back = unarchived(NSData::from(archive + ground + ground + "]}"), Way::ordered);
    const auto* set = as<NSSet>(back);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->count(), 1u) << "the towers are equal";
}

TEST(Archive, theWrongKindOfCoderIsRaised) {
    auto keyed = make<NSKeyedArchiver>();
    auto ordered = make<NSArchiver>();
    const int v = 3;
    textes::expectRaised("NSInvalidArgumentException",
                         {[&] { keyed->encodeInteger(3); }, [&] { (void)keyed->decodeIntegerForKey(text(u"k")); },
                          [&] { ordered->encodeBool_forKey(YES, text(u"k")); },
                          [&] { ordered->encodeValueOfObjCType_at("{NSRect}", &v); }});
    (void)keyed->encodedData();
    EXPECT_EQ(raised([&] { keyed->encodeBool_forKey(YES, text(u"k")); }), "NSInvalidArchiveOperationException");
}

TEST(Archive, plainValuesByLetterAndByKey) {
    const auto comesBack = [](const char* letter, auto value, auto before) {
        auto out = make<NSArchiver>();
        out->encodeValueOfObjCType_at(letter, &value);
        auto in = make<NSUnarchiver>(out->encodedData());
        in->decodeValueOfObjCType_at(letter, &before);
        EXPECT_TRUE(before == value && !in->error()) << letter;
        EXPECT_EQ(in->decodeInteger(), 0) << letter; // one too many
        EXPECT_NE(in->error(), nullptr) << letter;
    };
    comesBack("c", static_cast<signed char>(-3), static_cast<signed char>(0));
    comesBack("S", static_cast<unsigned short>(65535), static_cast<unsigned short>(0));
    comesBack("f", 0.1f, 0.0f);
    comesBack("Q", ~NSUInteger(0), NSUInteger(0));
    comesBack("@", static_cast<NSObject*>(nullptr), Ref<NSObject>(number(1)));

    auto keyed = make<NSKeyedArchiver>();
    keyed->encodeInteger_forKey(NSInteger(1) << 40, text(u"large"));
    keyed->encodeFloat_forKey(0.1f, text(u"float"));
    keyed->encodeBool_forKey(YES, text(u"bool"));
    keyed->encodeObject_forKey(nullptr, text(u"null"));
    keyed->encodePoint_forKey({1, 2}, text(u"point"));
    auto back = make<NSKeyedUnarchiver>(keyed->encodedData());
    EXPECT_EQ(back->decodeIntForKey(text(u"large")), std::numeric_limits<int>::max());
    EXPECT_EQ(back->decodeFloatForKey(text(u"float")), 0.1f);
    EXPECT_TRUE(back->decodeBoolForKey(text(u"bool")));
    EXPECT_TRUE(back->containsValueForKey(text(u"null")));
    EXPECT_FALSE(back->containsValueForKey(text(u"absent")));
    EXPECT_EQ(back->decodeRectForKey(text(u"absent")), NSZeroRect);
    EXPECT_EQ(back->decodePointForKey(text(u"point")), (NSPoint{1, 2}));
    EXPECT_EQ(back->error(), nullptr);
    (void)back->decodePointForKey(text(u"bool"));
    EXPECT_NE(back->error(), nullptr);
}

TEST(Archive, aClassMayStandForAnother) {
    auto data = archived(NSArray::arrayWithObject(number(1)), Way::keyed);
    auto in = make<NSKeyedUnarchiver>(data);
    in->setClass_forClassName(&classOf<NSMutableArray>(), text(u"NSArray"));
    EXPECT_NE(as<NSMutableArray>(in->decodeObjectForKey(text(u"root"))), nullptr);
}
