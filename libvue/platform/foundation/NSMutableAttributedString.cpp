#include <algorithm>

#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/NSCoder.h>
#include <libvue/platform/foundation/NSException.h>

namespace libvue {

namespace {

/// Runs a change of several steps between beginEditing and endEditing, also where it raises.
template <class F> void edit(NSMutableAttributedString& s, F change) {
    const Ref<NSMutableAttributedString> kept(&s);
    s.beginEditing();
    try {
        change();
    } catch (...) {
        s.endEditing();
        throw;
    }
    s.endEditing();
}

} // namespace

void NSMutableAttributedString::describe(ClassDescription<NSMutableAttributedString, NSAttributedString>&) {}

NSMutableAttributedString::NSMutableAttributedString()
    : NSAttributedString(make<NSMutableString>(), std::vector<Run>()) {}

NSMutableAttributedString::NSMutableAttributedString(const NSString* s) : NSMutableAttributedString(s, nullptr) {}

NSMutableAttributedString::NSMutableAttributedString(const NSString* s, const NSDictionary* attributes)
    : NSAttributedString(NSMutableString::stringWithString(s), std::vector<Run>()) {
    if (text_->length()) runs_.push_back({0, frozen(attributes)});
}

NSMutableAttributedString::NSMutableAttributedString(const NSAttributedString* other) : NSMutableAttributedString() {
    if (!other) raiseNamed(NSInvalidArgumentException, "an attributed string is needed");
    backing()->setString(other->string());
    runs_ = runsOf(*other);
}

NSMutableAttributedString::NSMutableAttributedString(NSCoder& coder) : NSAttributedString(coder) {
    text_ = make<NSMutableString>(text_);
}

NSMutableAttributedString::~NSMutableAttributedString() = default;

Ref<NSMutableAttributedString> NSMutableAttributedString::initWithString(const NSString* s) {
    return make<NSMutableAttributedString>(s);
}

Ref<NSMutableAttributedString> NSMutableAttributedString::initWithString_attributes(const NSString* s,
                                                                                    const NSDictionary* attributes) {
    return make<NSMutableAttributedString>(s, attributes);
}

Ref<NSMutableAttributedString> NSMutableAttributedString::initWithAttributedString(const NSAttributedString* other) {
    return make<NSMutableAttributedString>(other);
}

std::size_t NSMutableAttributedString::splitAt(NSUInteger i) {
    if (i >= length()) return runs_.size();
    const std::size_t run = runAt(i);
    if (runs_[run].from == i) return run;
    runs_.insert(runs_.begin() + static_cast<std::ptrdiff_t>(run) + 1, {i, runs_[run].attributes});
    return run + 1;
}

/// Makes neighbours one from the run before `first` to the run at `end`, where their attributes are equal.
void NSMutableAttributedString::mergeAround(std::size_t first, std::size_t end) {
    const std::size_t from = first ? first - 1 : 0;
    std::size_t last = std::min(end, runs_.empty() ? 0 : runs_.size() - 1);
    for (std::size_t r = last; r > from; --r)
        if (same(runs_[r - 1].attributes, runs_[r].attributes))
            runs_.erase(runs_.begin() + static_cast<std::ptrdiff_t>(r));
}

void NSMutableAttributedString::replaceCharactersInRange_withString(NSRange range, const NSString* s) {
    checkRange(range);
    const NSUInteger added = s ? s->length() : 0;
    if (range.length == 0 && added == 0) return;
    const NSUInteger old = length();
    Ref<NSDictionary> attributes;
    if (old == 0)
        attributes = frozen(nullptr);
    else
        attributes = runs_[runAt(range.length || range.location == 0 ? range.location : range.location - 1)].attributes;
    const std::size_t first = splitAt(range.location);
    const std::size_t end = splitAt(NSMaxRange(range));
    runs_.erase(runs_.begin() + static_cast<std::ptrdiff_t>(first), runs_.begin() + static_cast<std::ptrdiff_t>(end));
    if (added) runs_.insert(runs_.begin() + static_cast<std::ptrdiff_t>(first), {range.location, attributes});
    for (std::size_t r = first + (added ? 1 : 0); r < runs_.size(); ++r)
        runs_[r].from = runs_[r].from - range.length + added;
    if (s)
        backing()->replaceCharactersInRange_withString(range, s);
    else
        backing()->deleteCharactersInRange(range);
    mergeAround(first, first + 1);
}

void NSMutableAttributedString::setAttributes_range(const NSDictionary* attributes, NSRange range) {
    checkRange(range);
    if (range.length == 0) return;
    Ref<NSDictionary> fresh = frozen(attributes);
    const std::size_t first = splitAt(range.location);
    const std::size_t end = splitAt(NSMaxRange(range));
    runs_[first].attributes = std::move(fresh);
    runs_.erase(runs_.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                runs_.begin() + static_cast<std::ptrdiff_t>(end));
    mergeAround(first, first + 1);
}

void NSMutableAttributedString::changeRuns(NSRange range,
                                           const std::function<Ref<NSDictionary>(NSDictionary*)>& change) {
    checkRange(range);
    edit(*this, [&] {
        for (NSUInteger i = range.location; i < std::min(NSMaxRange(range), length());) {
            NSRange run;
            const Ref<NSDictionary> old = attributesAtIndex_longestEffectiveRange_inRange(i, &run, range);
            run = {i, NSMaxRange(run) - i};
            const Ref<NSDictionary> fresh = change(old);
            if (fresh != old) setAttributes_range(fresh, run);
            i = NSMaxRange(run);
        }
    });
}

void NSMutableAttributedString::addAttribute_value_range(const NSString* name, NSObject* value, NSRange range) {
    if (!name || !value) raiseNamed(NSInvalidArgumentException, "addAttribute: a name and a value are needed");
    const Ref<NSObject> kept(value);
    changeRuns(range, [&](NSDictionary* old) -> Ref<NSDictionary> {
        if (libvue::isEqual(old->objectForKey(name), value)) return old;
        Ref<NSMutableDictionary> fresh = NSMutableDictionary::dictionaryWithDictionary(old);
        fresh->setObject_forKey(value, name);
        return fresh;
    });
}

void NSMutableAttributedString::addAttributes_range(const NSDictionary* attributes, NSRange range) {
    if (!attributes) raiseNamed(NSInvalidArgumentException, "addAttributes: attributes are needed");
    const Ref<NSDictionary> kept = frozen(attributes);
    changeRuns(range, [&](NSDictionary* old) -> Ref<NSDictionary> {
        Ref<NSMutableDictionary> fresh = NSMutableDictionary::dictionaryWithDictionary(old);
        fresh->addEntriesFromDictionary(kept);
        return fresh;
    });
}

void NSMutableAttributedString::removeAttribute_range(const NSString* name, NSRange range) {
    if (!name) raiseNamed(NSInvalidArgumentException, "removeAttribute: a name is needed");
    changeRuns(range, [&](NSDictionary* old) -> Ref<NSDictionary> {
        if (!old->objectForKey(name)) return old;
        Ref<NSMutableDictionary> fresh = NSMutableDictionary::dictionaryWithDictionary(old);
        fresh->removeObjectForKey(name);
        return fresh;
    });
}

void NSMutableAttributedString::replaceCharactersInRange_withAttributedString(NSRange range,
                                                                              const NSAttributedString* s) {
    checkRange(range);
    if (!s) raiseNamed(NSInvalidArgumentException, "an attributed string is needed");
    // What is put in may be this very text, or change when this one does.
    const Ref<NSString> text = NSString::stringWithString(s->string());
    const std::vector<Run> runs = runsOf(*s);
    edit(*this, [&] {
        replaceCharactersInRange_withString(range, text);
        for (std::size_t r = 0; r < runs.size(); ++r) {
            const NSUInteger end = r + 1 < runs.size() ? runs[r + 1].from : text->length();
            setAttributes_range(runs[r].attributes, {range.location + runs[r].from, end - runs[r].from});
        }
    });
}

void NSMutableAttributedString::insertAttributedString_atIndex(const NSAttributedString* s, NSUInteger i) {
    replaceCharactersInRange_withAttributedString({i, 0}, s);
}

void NSMutableAttributedString::appendAttributedString(const NSAttributedString* s) {
    replaceCharactersInRange_withAttributedString({length(), 0}, s);
}

void NSMutableAttributedString::deleteCharactersInRange(NSRange range) {
    replaceCharactersInRange_withString(range, nullptr);
}

void NSMutableAttributedString::setAttributedString(const NSAttributedString* s) {
    replaceCharactersInRange_withAttributedString({0, length()}, s);
}

Ref<NSObject> NSMutableAttributedString::copyWithZone() const { return make<NSAttributedString>(this); }

} // namespace libvue
