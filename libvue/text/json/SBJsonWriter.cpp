#include <libvue/text/json/SBJsonWriter.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include <libvue/platform/foundation/NSDecimalNumber.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/text/json/JsonOutput.h>
#include <libvue/text/json/NSObjectSBJSON.h>

namespace libvue {

namespace {

const ClassRegistration<SBJsonWriter> registration;

/// What the writer makes of a value.
enum class Sort : std::uint8_t { dictionary, array, text, number, null, other };

/// A value and what it is: the pointer is of the class that the sort names.
struct Sorted {
    Sort sort;
    union {
        const NSDictionary* dictionary;
        const NSArray* array;
        const NSString* text;
        const NSNumber* number;
    };
};

/// The classes that a document is usually made of are told by their type alone; all others by a walk through their
/// bases.
Sorted sorted(const NSObject* value) {
    if (!value) return {Sort::other, {}};
    const std::type_info* type = &typeid(*value);
    Sorted s{Sort::other, {}};
    if (type == &typeid(NSString) || type == &typeid(NSMutableString)) {
        s.sort = Sort::text;
        s.text = static_cast<const NSString*>(value);
    } else if (type == &typeid(NSDecimalNumber) || type == &typeid(NSNumber)) {
        s.sort = Sort::number;
        s.number = static_cast<const NSNumber*>(value);
    } else if (type == &typeid(NSMutableDictionary) || type == &typeid(NSDictionary)) {
        s.sort = Sort::dictionary;
        s.dictionary = static_cast<const NSDictionary*>(value);
    } else if (type == &typeid(NSMutableArray) || type == &typeid(NSArray)) {
        s.sort = Sort::array;
        s.array = static_cast<const NSArray*>(value);
    } else if (type == &typeid(NSNull))
        s.sort = Sort::null;
    else if ((s.dictionary = as<const NSDictionary>(value)))
        s.sort = Sort::dictionary;
    else if ((s.array = as<const NSArray>(value)))
        s.sort = Sort::array;
    else if ((s.text = as<const NSString>(value)))
        s.sort = Sort::text;
    else if ((s.number = as<const NSNumber>(value)))
        s.sort = Sort::number;
    else if (as<const NSNull>(value))
        s.sort = Sort::null;
    return s;
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
        bool written = begin(value);
        while (!open_.empty())
            written = written ? step() : fail();
        if (written) out_.flush();
        return written;
    }

private:
    static constexpr std::size_t usualDepth = 16;

    enum class Kind : std::uint8_t { array, dictionary, proxy };
    struct Open {
        explicit Open(const NSArray* a) : kind(Kind::array), held(a) {}
        explicit Open(const NSDictionary* d) : kind(Kind::dictionary), held(d), entry(std::in_place, d) {}
        explicit Open(NSUInteger before) : kind(Kind::proxy), next(before) {}
        [[nodiscard]] const NSArray& array() const { return static_cast<const NSArray&>(*held); }
        [[nodiscard]] const NSDictionary& dictionary() const { return static_cast<const NSDictionary&>(*held); }

        Kind kind;
        Ref<const NSObject> held;
        NSUInteger next = 0; ///< of a proxy: how many proxies it comes right behind
        /// The keys where they were sorted, or where code that may change the dictionary has run since.
        Ref<NSArray> keys;
        std::optional<NSDictionary::Iterator> entry; ///< the next one, while there are no `keys`
        NSObject* key = nullptr;                     ///< whose value is being written
    };

    /// Writes a scalar, or opens a container or a proxy.
    bool begin(NSObject* value) {
        const Sorted s = sorted(value);
        switch (s.sort) {
        case Sort::text:
            out_.putQuoted(*s.text);
            return true;
        case Sort::number:
            number(*s.number);
            return true;
        case Sort::dictionary:
            if (!deeper()) return false;
            out_.put('{');
            open_.emplace_back(s.dictionary);
            if (writer_.sortKeys_) {
                const auto keys = s.dictionary->allKeys();
                open_.back().keys = keys->sortedArrayUsingSelector(sel("compare:"));
            }
            return true;
        case Sort::array:
            if (!deeper()) return false;
            out_.put('[');
            open_.emplace_back(s.array);
            return true;
        case Sort::null:
            out_.put("null");
            return true;
        default:
            return other(value);
        }
    }

    /// Goes on with the innermost open container.
    bool step() {
        Open& top = open_.back();
        switch (top.kind) {
        case Kind::array:
            return stepArray(top);
        case Kind::dictionary:
            return stepDictionary(top);
        default:
            close();
            return true;
        }
    }

    bool stepArray(Open& top) {
        const NSArray& a = top.array();
        if (top.next < a.count()) {
            separate(top.next++);
            return begin(a.data()[top.next - 1]);
        }
        end(a.count(), ']');
        return true;
    }

    bool stepDictionary(Open& top) {
        const NSDictionary& d = top.dictionary();
        NSObject* value = nullptr;
        if (top.keys) {
            if (top.next == top.keys->count()) {
                end(d.count(), '}');
                return true;
            }
            top.key = top.keys->data()[top.next];
            value = d.objectForKey(top.key);
        } else {
            if (*top.entry == std::default_sentinel) {
                end(d.count(), '}');
                return true;
            }
            const auto entry = **top.entry;
            top.key = entry.key;
            value = entry.value;
            ++*top.entry;
        }
        separate(top.next++);
        const Sorted key = sorted(top.key);
        if (key.sort != Sort::text) {
            writer_.addErrorWithCode_description(SBJSONErrorUnsupported, u"JSON object key must be string"_ns);
            close();
            return false;
        }
        out_.putQuoted(*key.text);
        if (writer_.humanReadable_)
            out_.put(" : ");
        else
            out_.put(':');
        return begin(value);
    }

    /// Passes a failure on from the value to the innermost open container, which ends with it. It goes no further than
    /// a proxy, which counts as written whatever came of it.
    bool fail() {
        Open& top = open_.back();
        const bool proxy = top.kind == Kind::proxy;
        if (top.kind == Kind::dictionary) {
            const auto text = NSString::stringWithFormat(u"Unsupported value for key %@ in object"_ns, top.key);
            writer_.addErrorWithCode_description(SBJSONErrorUnsupported, text);
        }
        close();
        return proxy;
    }

    /// The depth stays raised where it fails.
    bool deeper() {
        if (writer_.maxDepth_ == 0 || ++writer_.depth_ <= writer_.maxDepth_) return true;
        writer_.addErrorWithCode_description(SBJSONErrorDepth, u"Nested too deep"_ns);
        return false;
    }

    void separate(NSUInteger before) {
        if (before) out_.put(',');
        if (writer_.humanReadable_) indent();
    }

    /// The depth goes down even while there is no limit and it never went up: it wraps around then.
    void end(NSUInteger count, char bracket) {
        --writer_.depth_;
        if (writer_.humanReadable_ && count) indent();
        out_.put(bracket);
        close();
    }

    void indent() {
        const NSUInteger length = 2 * writer_.depth_ + 1;
        // A depth that wrapped around asks for more than a text can hold, which is for the text to refuse.
        if (length > std::numeric_limits<std::uint32_t>::max()) {
            const auto line = u"\n"_ns;
            const auto padded = line->stringByPaddingToLength_withString_startingAtIndex(length, u" "_ns, 0);
            return out_.putPlain(*padded);
        }
        out_.put('\n');
        out_.putRepeated(' ', length - 1);
    }

    void close() {
        open_.pop_back();
        settled_ = std::min(settled_, open_.size());
    }

    void number(const NSNumber& n) {
        if (typeid(n) == typeid(NSDecimalNumber)) return out_.putDecimal(static_cast<const NSDecimalNumber&>(n));
        const char type = n.objCType()[0];
        if (type == 'c') return out_.put(n.boolValue() ? "true" : "false");
        if (typeid(n) == typeid(NSNumber)) {
            if (type == 'Q') return out_.putUnsigned(n.unsignedIntegerValue());
            if (!n.isFloating()) return out_.putInteger(n.integerValue());
        } else
            settle();
        const auto text = n.stringValue();
        if (!text) raiseNamed(NSInvalidArgumentException, "a number has no text");
        out_.putPlain(*text);
    }

    /// What offers a proxy is written as that.
    bool other(NSObject* value) {
        NSUInteger before = 0;
        if (!open_.empty() && open_.back().kind == Kind::proxy) before = open_.back().next + 1;
        const auto proxyOf = op::proxyForJson.of(value);
        if (!proxyOf || before > mostProxies) {
            const auto name = value ? value->className() : Ref<NSString>();
            const auto text = NSString::stringWithFormat(u"JSON serialisation not supported for %@"_ns, name.get());
            writer_.addErrorWithCode_description(SBJSONErrorUnsupported, text);
            return false;
        }
        settle();
        const Ref<NSObject> proxy = proxyOf();
        open_.emplace_back(before);
        return begin(proxy);
    }

    /// Before code of the application runs: open dictionaries go on by the keys that they have now, and keep those,
    /// whatever that code does to them.
    void settle() {
        for (; settled_ < open_.size(); ++settled_) {
            Open& o = open_[settled_];
            if (o.kind == Kind::dictionary && !o.keys) o.keys = o.dictionary().allKeys();
        }
    }

    SBJsonWriter& writer_;
    JsonOutput out_;
    std::vector<Open> open_;
    std::size_t settled_ = 0; ///< how many of the outermost are settled
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
    Ref<NSObject> written = value;
    NSUInteger proxies = 0;
    for (; proxies <= mostProxies; ++proxies) {
        const Sort sort = sorted(written).sort;
        if (sort == Sort::dictionary || sort == Sort::array) {
            if (auto text = stringWithFragment(written)) return text;
            break;
        }
        const auto proxyOf = op::proxyForJson.of(written);
        if (!proxyOf) break;
        written = proxyOf();
    }
    // Each object on the way gives the reason anew, whatever the one that stands for it gave.
    for (NSUInteger times = proxies + 1; times; --times) {
        clearErrorTrace();
        addErrorWithCode_description(SBJSONErrorFragment, u"Not valid type for JSON"_ns);
    }
    return nullptr;
}

} // namespace libvue
