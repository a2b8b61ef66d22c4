#include <libvue/platform/foundation/CollectionText.h>

#include <algorithm>
#include <vector>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSSet.h>
#include <libvue/platform/foundation/NSString.h>
#include <libvue/platform/foundation/StringBuilder.h>

namespace libvue {

namespace {

bool isPlainWord(const NSString* s) {
    for (NSUInteger i = 0; i < s->length(); ++i) {
        unichar c = s->unit(i);
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_')) return false;
    }
    return s->length() > 0;
}

/// What is being described, from the outermost on. A collection may hold itself, also by way of an object that
/// describes what it holds with a text of its own; so all such texts share one list.
class Open {
public:
    explicit Open(const NSObject& o) { all().push_back(&o); }
    ~Open() { all().pop_back(); }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;
    static bool admits(const NSObject& o) {
        constexpr std::size_t deepest = 32;
        const auto& open = all();
        return open.size() < deepest && std::find(open.begin(), open.end(), &o) == open.end();
    }

private:
    static std::vector<const NSObject*>& all() {
        static std::vector<const NSObject*> open;
        return open;
    }
};

class Writer {
public:
    void append(const NSObject& o) {
        if (!Open::admits(o)) {
            text.append("...");
            return;
        }
        const Open open(o);
        ++depth_;
        if (auto* a = dynamic_cast<const NSArray*>(&o))
            appendList(*a, "(", ")");
        else if (auto* d = dynamic_cast<const NSDictionary*>(&o))
            appendDictionary(*d);
        else if (auto* s = dynamic_cast<const NSSet*>(&o))
            appendList(*s, "{(", ")}");
        else if (auto* word = dynamic_cast<const NSString*>(&o))
            appendText(word);
        else
            text.append(o.description());
        --depth_;
    }
    StringBuilder text;

private:
    template <class List> void appendList(const List& list, const char* open, const char* close) {
        text.append(open);
        bool first = true;
        for (NSObject* o : list) {
            text.append(first ? "\n" : ",\n");
            first = false;
            indent();
            append(*o);
        }
        end(close);
    }
    void appendDictionary(const NSDictionary& d) {
        text.append("{");
        for (auto [key, value] : d) {
            text.append("\n");
            indent();
            append(*key);
            text.append(" = ");
            append(*value);
            text.append(";");
        }
        end("}");
    }
    void appendText(const NSString* s) {
        if (isPlainWord(s)) {
            text.append(s);
            return;
        }
        text.append("\"");
        for (NSUInteger i = 0; i < s->length(); ++i) {
            unichar c = s->unit(i);
            if (c == '"' || c == '\\') text.append('\\');
            text.append(c);
        }
        text.append("\"");
    }
    void indent() { text.appendRepeated(u' ', 4 * static_cast<NSUInteger>(depth_)); }
    void end(const char* close) {
        --depth_;
        text.append("\n");
        indent();
        text.append(close);
        ++depth_;
    }
    int depth_ = 0;
};

} // namespace

Ref<NSString> collectionText(const NSObject* collection) {
    Writer w;
    w.append(*collection);
    return w.text.build();
}

} // namespace libvue
