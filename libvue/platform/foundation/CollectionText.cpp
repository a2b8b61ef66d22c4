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

class Writer {
public:
    void append(const NSObject& o) {
        // A collection may hold itself.
        constexpr std::size_t deepest = 32;
        if (open_.size() == deepest || std::find(open_.begin(), open_.end(), &o) != open_.end()) {
            text.append("...");
            return;
        }
        open_.push_back(&o);
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
        open_.pop_back();
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
    std::vector<const NSObject*> open_; ///< what is being written, from the outermost one on
    int depth_ = 0;
};

} // namespace

Ref<NSString> collectionText(const NSObject* collection) {
    Writer w;
    w.append(*collection);
    return w.text.build();
}

} // namespace libvue
