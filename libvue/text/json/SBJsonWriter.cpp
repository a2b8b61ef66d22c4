#include <libvue/text/json/SBJsonWriter.h>

#include <algorithm>
#include <limits>
#include <vector>

#include <libvue/platform/foundation/Decimal.h>
#include <libvue/platform/foundation/DecimalText.h>
#include <libvue/platform/foundation/DecimalWord.h>
#include <libvue/platform/foundation/DocumentObjects.h>
#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/text/json/JsonOutput.h>
#include <libvue/text/json/NSObjectSBJSON.h>

namespace libvue {

namespace {

const ClassRegistration<SBJsonWriter> registration;

/// What the writer makes of a value: texts and numbers of the platform's own classes, which it can write without asking
/// them, containers, and all others.
enum class Sort : std::uint8_t { text, decimal, number, dictionary, array, null, otherNumber, other };

/// Those of no class that a document is usually made of, found by a walk through their bases.
[[gnu::noinline]] Sort sortByBases(const NSObject* value) {
    if (as<const NSDictionary>(value)) return Sort::dictionary;
    if (as<const NSArray>(value)) return Sort::array;
    if (as<const NSString>(value)) return Sort::text;
    if (as<const NSNumber>(value)) return Sort::otherNumber;
    return as<const NSNull>(value) ? Sort::null : Sort::other;
}

inline Sort sortOf(const NSObject* value) {
    if (!value) return Sort::other;
    const std::type_info* type = &typeid(*value);
    if (type == &typeid(NSMutableString) || type == &typeid(NSString)) return Sort::text;
    if (type == &typeid(NSDecimalNumber)) return Sort::decimal;
    if (type == &typeid(NSMutableDictionary) || type == &typeid(NSDictionary)) return Sort::dictionary;
    if (type == &typeid(NSMutableArray) || type == &typeid(NSArray)) return Sort::array;
    if (type == &typeid(NSNumber)) return Sort::number;
    if (type == &typeid(NSNull)) return Sort::null;
    return sortByBases(value);
}

template <class Unit, std::size_t count> Unit* putLiteral(const char (&text)[count], Unit* at) {
    for (std::size_t i = 0; i + 1 < count; ++i)
        *at++ = static_cast<Unit>(text[i]);
    return at;
}

/// The most proxies that may stand for each other before one of them gives a value: beyond it they go in a circle.
constexpr NSUInteger mostProxies = 10000;

constexpr NSUInteger usualCapacity = 128;

} // namespace

/// One operation of the writer. The containers that are open lie on a stack of its own.
class SBJsonWriter::Engine {
public:
    Engine(SBJsonWriter& writer, NSMutableString& text) : writer_(writer), out_(text) { open_.reserve(usualDepth); }

    /// False where the value, or one in it, could not be written.
    bool write(NSObject* value) {
        pending_ = value;
        isPending_ = true;
        for (Outcome outcome = run<std::uint8_t>();;) {
            if (outcome == Outcome::wider)
                outcome = run<unichar>();
            else if (outcome == Outcome::narrower)
                outcome = run<std::uint8_t>();
            else
                return outcome == Outcome::written;
        }
    }

private:
    static constexpr std::size_t usualDepth = 16;

    enum class Outcome : std::uint8_t { written, failed, wider, narrower };
    enum class Kind : std::uint8_t { array, dictionary, proxy };
    using Entry = detail::DocumentObjects::Entry;
    struct Open {
        explicit Open(const NSArray* a) : kind(Kind::array), container(a) {}
        explicit Open(const NSDictionary* d) : kind(Kind::dictionary), container(d) {
            const auto entries = detail::DocumentObjects::entries(*d);
            entry = entries.data();
            entriesEnd = entry + entries.size();
        }
        explicit Open(NSUInteger before) : kind(Kind::proxy), next(before) {}
        [[nodiscard]] const NSArray& array() const { return static_cast<const NSArray&>(*container); }
        [[nodiscard]] const NSDictionary& dictionary() const { return static_cast<const NSDictionary&>(*container); }

        Kind kind;
        const NSObject* container = nullptr;
        NSUInteger next = 0; ///< of a proxy: how many proxies it comes right behind
        /// The keys where they were sorted, or where code that may change the dictionary has run since.
        Ref<NSArray> keys;
        const Entry* entry = nullptr; ///< the next one, while there are no `keys`
        const Entry* entriesEnd = nullptr;
        NSObject* key = nullptr;  ///< whose value is being written
        Ref<const NSObject> held; ///< the container, once code has run that may let it go
    };

    /// Writes the pending value and goes on with the containers that are open, until there are none, or until units are
    /// needed that are wider: that text is pending then, or its entry has not been begun. Wide units are given up again
    /// after a block that needed none: one letter in a long document does not make all that follows it dearer.
    template <class Unit> Outcome run() {
        Unit* at = out_.block<Unit>();
        NSObject* value = pending_;
        bool hasValue = isPending_;
        for (;;) {
            if (!out_.isReady(at)) {
                at = out_.handOn(at);
                if (sizeof(Unit) > 1 && !out_.tookWide()) {
                    pending_ = value;
                    isPending_ = hasValue;
                    return Outcome::narrower;
                }
            }
            if (!hasValue) {
                if (open_.empty()) break;
                Open& top = open_.back();
                if (top.kind == Kind::array) {
                    const NSArray& a = top.array();
                    if (top.next >= a.count()) {
                        at = end(a.count(), ']', at);
                        continue;
                    }
                    if (top.next) *at++ = ',';
                    if (writer_.humanReadable_) at = indent(at);
                    value = a.data()[top.next++];
                    if (top.next < a.count()) __builtin_prefetch(a.data()[top.next]);
                } else if (top.kind == Kind::dictionary) {
                    if (!nextEntry(top)) {
                        at = end(top.dictionary().count(), '}', at);
                        continue;
                    }
                    const Sort sort = sortOf(top.key);
                    if (sizeof(Unit) == 1 && sort == Sort::text && isWide(top.key)) {
                        isPending_ = false;
                        return wider(at);
                    }
                    if (top.next) *at++ = ',';
                    if (writer_.humanReadable_) at = indent(at);
                    if (sort != Sort::text) {
                        addError(SBJSONErrorUnsupported, u"JSON object key must be string"_ns);
                        close();
                        if (!fail()) return Outcome::failed;
                        continue;
                    }
                    at = out_.putQuoted(static_cast<const NSString&>(*top.key), at);
                    at = writer_.humanReadable_ ? putLiteral(" : ", at) : putLiteral(":", at);
                    value = takeEntry(top);
                } else {
                    close();
                    continue;
                }
            }
            hasValue = false;
            bool written = true;
            switch (sortOf(value)) {
            case Sort::text:
                if (sizeof(Unit) == 1 && isWide(value)) {
                    pending_ = value;
                    isPending_ = true;
                    return wider(at);
                }
                at = out_.putQuoted(static_cast<const NSString&>(*value), at);
                break;
            case Sort::decimal:
                at = Decimal::writeQuickly(static_cast<const NSDecimalNumber&>(*value), at);
                break;
            case Sort::number:
                at = number(static_cast<const NSNumber&>(*value), at);
                break;
            case Sort::dictionary:
                written = deeper();
                if (!written) break;
                *at++ = '{';
                if (static_cast<const NSDictionary*>(value)->count())
                    openDictionary(static_cast<const NSDictionary*>(value));
                else
                    at = endEmpty('}', at);
                break;
            case Sort::array:
                written = deeper();
                if (!written) break;
                *at++ = '[';
                if (static_cast<const NSArray*>(value)->count())
                    open_.emplace_back(static_cast<const NSArray*>(value));
                else
                    at = endEmpty(']', at);
                break;
            case Sort::null:
                at = putLiteral("null", at);
                break;
            case Sort::otherNumber:
                settle();
                at = number(static_cast<const NSNumber&>(*value), at);
                break;
            case Sort::other:
                written = hasValue = other(value);
                if (written) value = proxy_;
                break;
            }
            if (!written && !fail()) return Outcome::failed;
        }
        out_.handOn(at);
        return Outcome::written;
    }

    static bool isWide(const NSObject* text) { return !static_cast<const NSString*>(text)->latin1Contents(); }

    template <class Unit> Outcome wider(Unit* at) {
        out_.handOn(at);
        return Outcome::wider;
    }

    /// The key that comes next; false where there is none. takeEntry() then gives its value, and goes on.
    static bool nextEntry(Open& top) {
        if (top.keys) {
            if (top.next == top.keys->count()) return false;
            top.key = top.keys->data()[top.next];
            return true;
        }
        while (top.entry != top.entriesEnd && !top.entry->key)
            ++top.entry;
        if (top.entry == top.entriesEnd) return false;
        top.key = top.entry->key;
        return true;
    }
    static NSObject* takeEntry(Open& top) {
        ++top.next;
        if (top.keys) return top.dictionary().objectForKey(top.key);
        NSObject* const value = top.entry->value;
        if (++top.entry != top.entriesEnd) __builtin_prefetch(top.entry->value);
        return value;
    }

    void openDictionary(const NSDictionary* d) {
        open_.emplace_back(d);
        if (!writer_.sortKeys_) return;
        settle();
        Ref<NSArray>& keys = open_.back().keys;
        keys = keys->sortedArrayUsingSelector(sel("compare:"));
    }

    /// Passes a failure on from a value to the containers that are open, which end with it. It goes no further than to
    /// a proxy, which counts as written whatever came of it: true then.
    bool fail() {
        while (!open_.empty()) {
            const Open& top = open_.back();
            const Kind kind = top.kind;
            if (kind == Kind::dictionary)
                addError(SBJSONErrorUnsupported,
                         NSString::stringWithFormat(u"Unsupported value for key %@ in object"_ns, top.key));
            close();
            if (kind == Kind::proxy) return true;
        }
        return false;
    }

    /// The trace can be observed.
    void addError(NSUInteger code, const Ref<NSString>& text) {
        settle();
        writer_.addErrorWithCode_description(code, text);
    }

    /// The depth stays raised where it fails.
    bool deeper() {
        if (writer_.maxDepth_ == 0 || ++writer_.depth_ <= writer_.maxDepth_) return true;
        addError(SBJSONErrorDepth, u"Nested too deep"_ns);
        return false;
    }

    /// The depth goes down even while there is no limit and it never went up: it wraps around then.
    template <class Unit> Unit* end(NSUInteger count, char bracket, Unit* at) {
        --writer_.depth_;
        if (writer_.humanReadable_ && count) at = indent(at);
        *at++ = static_cast<Unit>(bracket);
        close();
        return at;
    }

    template <class Unit> Unit* endEmpty(char bracket, Unit* at) {
        --writer_.depth_;
        *at++ = static_cast<Unit>(bracket);
        return at;
    }

    template <class Unit> Unit* indent(Unit* at) {
        const NSUInteger length = 2 * writer_.depth_ + 1;
        // A depth that wrapped around asks for more than a text can hold, which is for the text to refuse.
        if (length > std::numeric_limits<std::uint32_t>::max()) {
            const auto line = u"\n"_ns;
            const auto padded = line->stringByPaddingToLength_withString_startingAtIndex(length, u" "_ns, 0);
            return out_.putPlain(*padded, at);
        }
        *at++ = '\n';
        return out_.putRepeated(' ', length - 1, at);
    }

    void close() {
        open_.pop_back();
        if (settled_ > open_.size()) settled_ = open_.size();
    }

    template <class Unit> Unit* number(const NSNumber& n, Unit* at) {
        if (n.objCType()[0] == 'c') return n.boolValue() ? putLiteral("true", at) : putLiteral("false", at);
        if (typeid(n) == typeid(NSNumber) && !n.isFloating()) {
            const auto bits = static_cast<std::uint64_t>(n.unsignedIntegerValue());
            const bool negative = n.objCType()[0] != 'Q' && static_cast<std::int64_t>(bits) < 0;
            if (negative) *at++ = '-';
            const std::uint64_t magnitude = negative ? 0 - bits : bits;
            const int count = detail::digitCount(magnitude);
            detail::putDigits(magnitude, count, at);
            return at + count;
        }
        const auto text = n.stringValue();
        if (!text) raiseNamed(NSInvalidArgumentException, "a number has no text");
        return out_.putPlain(*text, at);
    }

    /// What offers a proxy is written as that, which is the value that comes next then.
    bool other(NSObject* value) {
        NSUInteger before = 0;
        if (!open_.empty() && open_.back().kind == Kind::proxy) before = open_.back().next + 1;
        const auto proxyOf = op::proxyForJson.of(value);
        if (!proxyOf || before > mostProxies) {
            const auto name = value ? value->className() : Ref<NSString>();
            addError(SBJSONErrorUnsupported,
                     NSString::stringWithFormat(u"JSON serialisation not supported for %@"_ns, name.get()));
            return false;
        }
        settle();
        proxy_ = proxyOf();
        open_.emplace_back(before);
        return true;
    }

    /// Before code of the application runs: open containers are kept, and dictionaries go on by the keys that they have
    /// now, whatever that code does to them.
    void settle() {
        for (; settled_ < open_.size(); ++settled_) {
            Open& o = open_[settled_];
            o.held = o.container;
            if (o.kind == Kind::dictionary && !o.keys) o.keys = o.dictionary().allKeys();
        }
    }

    SBJsonWriter& writer_;
    JsonOutput out_;
    std::vector<Open> open_;
    std::size_t settled_ = 0; ///< how many of the outermost are settled
    NSObject* pending_ =
        nullptr; ///< what is written first, ahead of what the containers hold, where there is something
    bool isPending_ = false;
    Ref<NSObject> proxy_; ///< the last one that was given
};

void SBJsonWriter::describe(ClassDescription<SBJsonWriter, SBJsonBase>& c) {
    c.key<&SBJsonWriter::humanReadable, &SBJsonWriter::setHumanReadable>("humanReadable");
    c.key<&SBJsonWriter::sortKeys, &SBJsonWriter::setSortKeys>("sortKeys");
}

SBJsonWriter::SBJsonWriter() = default;

SBJsonWriter::~SBJsonWriter() = default;

Ref<NSString> SBJsonWriter::stringWithFragment(NSObject* value) {
    clearErrorTrace();
    depth_ = 0;
    const auto text = NSMutableString::stringWithCapacity(usualCapacity);
    if (!Engine(*this, *text).write(value)) return nullptr;
    return text;
}

Ref<NSString> SBJsonWriter::stringWithObject(NSObject* value) {
    const auto isContainer = [](const NSObject* v) {
        const Sort sort = sortOf(v);
        return sort == Sort::dictionary || sort == Sort::array;
    };
    if (isContainer(value)) return stringWithFragment(value);
    Ref<NSObject> written = value;
    NSUInteger refusing = 1; // how many of the objects on the way have to say why
    for (; refusing <= mostProxies; ++refusing) {
        const auto proxyOf = op::proxyForJson.of(written);
        if (!proxyOf) break;
        written = proxyOf();
        if (!isContainer(written)) continue;
        if (auto text = stringWithFragment(written)) return text;
        break;
    }
    // Each of them gives the reason anew, whatever the one that stands for it gave.
    for (; refusing; --refusing) {
        clearErrorTrace();
        addErrorWithCode_description(SBJSONErrorFragment, u"Not valid type for JSON"_ns);
    }
    return nullptr;
}

} // namespace libvue
