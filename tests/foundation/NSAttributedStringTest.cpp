#include "Textes.h"

#include <algorithm>
#include <random>
#include <vector>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSNumber.h>

using namespace libvue;
using namespace libvue::textes;

namespace {

Ref<NSDictionary> attributes(const char16_t* name, int value) {
    return NSDictionary::dictionaryWithObject_forKey(NSNumber::numberWithInt(value), text(name));
}

/// Each run as its characters and its attributes, such as "ab{a=1}".
std::string shownRuns(const NSAttributedString& s) {
    std::string out;
    for (NSUInteger i = 0; i < s.length();) {
        NSRange run;
        NSDictionary* d = s.attributesAtIndex_effectiveRange(i, &run);
        EXPECT_EQ(run.location, i);
        out += shown(s.string()->substringWithRange(run)) + "{";
        std::vector<std::string> pairs;
        for (auto [key, value] : *d)
            pairs.push_back(shown(as<NSString>(key)) + "=" + std::to_string(as<NSNumber>(value)->intValue()));
        std::sort(pairs.begin(), pairs.end());
        for (const std::string& pair : pairs)
            out += (out.back() == '{' ? "" : ",") + pair;
        out += "}";
        i = NSMaxRange(run);
    }
    return out;
}

Ref<NSMutableAttributedString> sample() {
    Ref<NSMutableAttributedString> s = NSMutableAttributedString::initWithString(text(u"abcdef"));
    s->addAttribute_value_range(text(u"a"), NSNumber::numberWithInt(1), {0, 4});
    s->addAttribute_value_range(text(u"b"), NSNumber::numberWithInt(2), {2, 3});
    return s;
}

/// What a character and its attribute are, one by one: the model that the runs must agree with.
struct Cell {
    unichar unit;
    int value; // 0: no attribute
};

} // namespace

TEST(NSAttributedStringTest, attributesMakeRunsThatJoinAgain) {
    const Ref<NSMutableAttributedString> s = sample();
    EXPECT_EQ(shownRuns(*s), "ab{a=1}cd{a=1,b=2}e{b=2}f{}");
    s->removeAttribute_range(text(u"b"), {0, 6});
    EXPECT_EQ(shownRuns(*s), "abcd{a=1}ef{}");
    s->addAttributes_range(attributes(u"a", 1), {3, 3});
    EXPECT_EQ(shownRuns(*s), "abcdef{a=1}");
    s->setAttributes_range(nullptr, {2, 2});
    EXPECT_EQ(shownRuns(*s), "ab{a=1}cd{}ef{a=1}");
    s->setAttributes_range(attributes(u"a", 1), {2, 2});
    EXPECT_EQ(shownRuns(*s), "abcdef{a=1}");
    s->setAttributes_range(attributes(u"c", 3), {0, 6});
    s->setAttributes_range(attributes(u"c", 4), {6, 0}); // an empty range changes nothing
    EXPECT_EQ(shownRuns(*s), "abcdef{c=3}");
    s->replaceCharactersInRange_withString({0, 6}, text(u"ancien"));
    EXPECT_EQ(shownRuns(*s), "ancien{c=3}");
    s->deleteCharactersInRange({0, 6});
    s->replaceCharactersInRange_withString({0, 0}, text(u"neuf"));
    EXPECT_EQ(shownRuns(*s), "neuf{}");
}

TEST(NSAttributedStringTest, effectiveRanges) {
    const Ref<NSMutableAttributedString> s = sample();
    NSRange r;
    EXPECT_EQ(s->attribute_atIndex_effectiveRange(text(u"b"), 0, &r), nullptr);
    EXPECT_EQ(r, (NSRange{0, 2}));
    // Over several runs as far as the one attribute stays.
    EXPECT_NE(s->attribute_atIndex_longestEffectiveRange_inRange(text(u"a"), 3, &r, {0, 6}), nullptr);
    EXPECT_EQ(r, (NSRange{0, 4}));
    s->attribute_atIndex_longestEffectiveRange_inRange(text(u"a"), 3, &r, {1, 2});
    EXPECT_EQ(r, (NSRange{1, 2}));
    EXPECT_EQ(s->attribute_atIndex_longestEffectiveRange_inRange(text(u"a"), 5, &r, {0, 6}), nullptr);
    EXPECT_EQ(r, (NSRange{4, 2}));
    EXPECT_EQ(s->attribute_atIndex_longestEffectiveRange_inRange(text(u"none"), 1, &r, {0, 6}), nullptr);
    EXPECT_EQ(r, (NSRange{0, 6}));
    s->attributesAtIndex_longestEffectiveRange_inRange(2, &r, {0, 3});
    EXPECT_EQ(r, (NSRange{2, 1}));

    expectRaised("NSRangeException",
                 {[&] { (void)s->attributesAtIndex_effectiveRange(6, nullptr); },
                  [&] { (void)s->attributesAtIndex_longestEffectiveRange_inRange(0, nullptr, NSMakeRange(0, 7)); },
                  [&] { (void)s->attributedSubstringFromRange(NSMakeRange(5, 2)); },
                  [&] { s->setAttributes_range(nullptr, NSMakeRange(7, 0)); },
                  [&] { s->deleteCharactersInRange(NSMakeRange(6, 1)); },
                  [&] { s->insertAttributedString_atIndex(s, 7); },
                  [&] { (void)make<NSAttributedString>()->attribute_atIndex_effectiveRange(text(u"a"), 0, nullptr); }});
    expectRaised("NSInvalidArgumentException",
                 {[&] { s->addAttribute_value_range(text(u"a"), nullptr, NSMakeRange(0, 1)); },
                  [&] { (void)NSAttributedString::initWithString(nullptr); }});
    EXPECT_EQ(shownRuns(*s), "ab{a=1}cd{a=1,b=2}e{b=2}f{}");
}

TEST(NSAttributedStringTest, attributedTextGoesInWithItsOwnAttributes) {
    const Ref<NSMutableAttributedString> s = sample();
    s->replaceCharactersInRange_withAttributedString({1, 4}, NSAttributedString::initWithString(text(u"-")));
    EXPECT_EQ(shownRuns(*s), "a{a=1}-f{}");
    s->insertAttributedString_atIndex(s, 1);
    EXPECT_EQ(shownRuns(*s), "aa{a=1}-f-f{}");
    s->appendAttributedString(NSAttributedString::initWithString_attributes(text(u"z"), attributes(u"a", 1)));
    EXPECT_EQ(shownRuns(*s), "aa{a=1}-f-f{}z{a=1}");
    s->setAttributedString(sample());
    EXPECT_TRUE(s->isEqual(sample()));
    s->setAttributedString(NSAttributedString::initWithString(text(u"")));
    EXPECT_EQ(s->length(), 0u);
    EXPECT_TRUE(s->isEqual(make<NSAttributedString>()));
}

TEST(NSAttributedStringTest, aCopyStandsApart) {
    const Ref<NSMutableAttributedString> s = sample();
    Ref<NSMutableDictionary> changing = NSMutableDictionary::dictionary();
    changing->setObject_forKey(NSNumber::numberWithInt(9), text(u"c"));
    s->setAttributes_range(changing, {0, 1});
    const Ref<NSObject> copy = s->copyWithZone();
    const Ref<NSAttributedString> part = s->attributedSubstringFromRange({1, 4});
    changing->setObject_forKey(NSNumber::numberWithInt(8), text(u"c"));
    s->replaceCharactersInRange_withString({0, 5}, text(u"x"));
    EXPECT_EQ(shownRuns(*as<NSAttributedString>(copy.get())), "a{c=9}b{a=1}cd{a=1,b=2}e{b=2}f{}");
    EXPECT_EQ(shownRuns(*part), "b{a=1}cd{a=1,b=2}e{b=2}");
    EXPECT_EQ(shown(part->string()), "bcde");
    EXPECT_EQ(as<NSMutableAttributedString>(copy.get()), nullptr);
    EXPECT_EQ(copy->copyWithZone().get(), copy.get());
    EXPECT_EQ(part->isEqual(sample()->attributedSubstringFromRange({1, 4})), YES);
    EXPECT_EQ(part->isEqual(NSAttributedString::initWithString(text(u"bcde"))), NO);
    EXPECT_EQ(part->hash(), NSAttributedString::initWithString(text(u"bcde"))->hash());
}

TEST(NSAttributedStringTest, runsAgreeWithOneCharacterAtATime) {
    std::mt19937 random(20240611);
    const auto below = [&](NSUInteger n) { return static_cast<NSUInteger>(random() % n); };
    Ref<NSMutableAttributedString> s = make<NSMutableAttributedString>();
    std::vector<Cell> model;
    for (int step = 0; step < 3000; ++step) {
        const NSUInteger from = below(model.size() + 1),
                         length = below(std::min<NSUInteger>(model.size() - from, 6) + 1);
        const NSRange range{from, length};
        const auto begin = model.begin() + static_cast<std::ptrdiff_t>(from),
                   end = begin + static_cast<std::ptrdiff_t>(length);
        const int value = static_cast<int>(below(3));
        if (below(2) && length) {
            if (value)
                s->addAttribute_value_range(text(u"v"), NSNumber::numberWithInt(value), range);
            else
                s->removeAttribute_range(text(u"v"), range);
            for (auto c = begin; c != end; ++c)
                c->value = value;
        } else {
            std::u16string added(below(model.size() > 60 ? 2 : 5),
                                 static_cast<unichar>(below(20) ? 'a' + below(26) : 0x2019));
            const int inherited = model.empty() ? 0 : length || from == 0 ? model[from].value : model[from - 1].value;
            s->replaceCharactersInRange_withString(range, text(added));
            const auto at = model.erase(begin, end);
            std::vector<Cell> cells;
            for (const unichar c : added)
                cells.push_back({c, inherited});
            model.insert(at, cells.begin(), cells.end());
        }
        ASSERT_EQ(s->length(), model.size());
        for (NSUInteger i = 0; i < model.size();) {
            NSRange run;
            const NSObject* v = s->attribute_atIndex_effectiveRange(text(u"v"), i, &run);
            ASSERT_EQ(run.location, i) << "step " << step;
            for (NSUInteger k = i; k < NSMaxRange(run); ++k) {
                ASSERT_EQ(s->string()->characterAtIndex(k), model[k].unit) << "step " << step;
                ASSERT_EQ(v ? as<const NSNumber>(v)->intValue() : 0, model[k].value) << "step " << step << " at " << k;
            }
            i = NSMaxRange(run);
            if (i < model.size()) {
                ASSERT_NE(model[i].value, model[i - 1].value) << "two runs that are one, step " << step;
            }
        }
    }
}

TEST(NSAttributedStringTest, everyChangeGoesThroughThePrimitives) {
    class Storage : public NSMutableAttributedString {
    public:
        void replaceCharactersInRange_withString(NSRange range, const NSString* s) override {
            log += "r" + shown(range);
            NSMutableAttributedString::replaceCharactersInRange_withString(range, s);
        }
        void setAttributes_range(const NSDictionary* a, NSRange range) override {
            log += "s" + shown(range);
            NSMutableAttributedString::setAttributes_range(a, range);
        }
        void beginEditing() override { log += "<"; }
        void endEditing() override { log += ">"; }
        std::string log;
    };
    Ref<Storage> s = make<Storage>();
    s->appendAttributedString(sample());
    EXPECT_EQ(s->log, "<r{0, 0}s{0, 2}s{2, 2}s{4, 1}s{5, 1}>");
    s->log.clear();
    s->addAttribute_value_range(text(u"a"), NSNumber::numberWithInt(1), {1, 5});
    EXPECT_EQ(s->log, "<s{4, 1}s{5, 1}>"); // only where it is not there yet
    s->log.clear();
    s->deleteCharactersInRange({0, 1});
    EXPECT_EQ(s->log, "r{0, 1}");
    EXPECT_EQ(shownRuns(*s), "b{a=1}cde{a=1,b=2}f{a=1}");
}

TEST(NSAttributedStringTest, enumerationLetsTheBlockChangeTheRun) {
    const Ref<NSMutableAttributedString> s = sample();
    std::string seen;
    s->enumerateAttributesInRange_options_usingBlock({1, 4}, 0, [&](NSDictionary* d, NSRange r, BOOL*) {
        seen += shown(r) + std::to_string(d->count());
        s->setAttributes_range(attributes(u"z", 7), r);
    });
    EXPECT_EQ(seen, "{1, 1}1{2, 2}2{4, 1}1");
    EXPECT_EQ(shownRuns(*s), "a{a=1}bcde{z=7}f{}");
    seen.clear();
    sample()->enumerateAttribute_inRange_options_usingBlock(
        text(u"a"), {0, 6}, NSAttributedStringEnumerationReverse,
        [&](NSObject* value, NSRange r, BOOL*) { seen += shown(r) + (value ? "+" : "-"); });
    EXPECT_EQ(seen, "{4, 2}-{0, 4}+");
    seen.clear();
    sample()->enumerateAttribute_inRange_options_usingBlock(text(u"a"), {0, 6}, 0,
                                                            [&](NSObject*, NSRange r, BOOL* stop) {
                                                                seen += shown(r);
                                                                *stop = YES;
                                                            });
    EXPECT_EQ(seen, "{0, 4}");
    // The block may take away what is still to come.
    const Ref<NSMutableAttributedString> shrinking = sample();
    int turns = 0;
    shrinking->enumerateAttributesInRange_options_usingBlock({0, 6}, 0, [&](NSDictionary*, NSRange, BOOL*) {
        ++turns;
        shrinking->deleteCharactersInRange({1, shrinking->length() - 1});
    });
    EXPECT_EQ(turns, 1);
}

TEST(NSAttributedStringTest, words) {
    // The platform's own, not those that the toolkit installs.
    NSAttributedString::installWordBoundaries(nullptr, nullptr);
    const Ref<NSAttributedString> s = NSAttributedString::initWithString(text(u"un  mot,\u00E9t\u00E9.  Fin"));
    //                                                                         0123456789 ...
    struct Click {
        NSUInteger index;
        NSRange range;
    };
    for (const auto& [index, range] :
         {Click{0, {0, 2}}, {2, {2, 2}}, {3, {2, 2}}, {5, {4, 3}}, {7, {7, 1}}, {9, {8, 3}}, {16, {14, 3}}})
        EXPECT_EQ(s->doubleClickAtIndex(index), range) << index;
    EXPECT_EQ(raised([&] { (void)s->doubleClickAtIndex(17); }), "NSRangeException");
    struct Move {
        NSUInteger from;
        BOOL forward;
        NSUInteger to;
    };
    for (const auto& [from, forward, to] : {Move{0, YES, 2},
                                            {1, YES, 2},
                                            {2, YES, 7},
                                            {7, YES, 11},
                                            {11, YES, 17},
                                            {17, YES, 17},
                                            {17, NO, 14},
                                            {15, NO, 14},
                                            {14, NO, 8},
                                            {8, NO, 4},
                                            {4, NO, 0},
                                            {1, NO, 0},
                                            {0, NO, 0}})
        EXPECT_EQ(s->nextWordFromIndex_forward(from, forward), to) << from << (forward ? " on" : " back");
    EXPECT_EQ(raised([&] { (void)s->nextWordFromIndex_forward(18, NO); }), "NSRangeException");

    NSAttributedString::installWordBoundaries(
        [](const NSAttributedString*, NSUInteger i) {
            return NSRange{i, 0};
        },
        [](const NSAttributedString*, NSUInteger i, BOOL forward) { return forward ? i + 100 : i + 1000; });
    const NSRange click = s->doubleClickAtIndex(50);
    const NSUInteger on = s->nextWordFromIndex_forward(1, YES), back = s->nextWordFromIndex_forward(1, NO);
    NSAttributedString::installWordBoundaries(nullptr, nullptr);
    EXPECT_EQ(click, (NSRange{50, 0}));
    EXPECT_EQ(on, 101u);
    EXPECT_EQ(back, 1001u);
    EXPECT_EQ(s->nextWordFromIndex_forward(0, YES), 2u);
}
