#include <libvue/platform/foundation/JSONDocument.h>

#include <cmath>
#include <vector>

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNull.h>
#include <libvue/platform/foundation/NSNumber.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

/// Builds the objects as the reader goes. False stops it.
class Builder {
public:
    bool Null() { return put(NSNull::null()); }
    bool Bool(bool v) { return put(NSNumber::numberWithBool(v)); }
    bool Int(int v) { return put(NSNumber::numberWithInteger(v)); }
    bool Uint(unsigned v) { return put(NSNumber::numberWithInteger(v)); }
    bool Int64(std::int64_t v) { return put(NSNumber::numberWithInteger(v)); }
    bool Uint64(std::uint64_t v) {
        return put(v <= static_cast<std::uint64_t>(NSNotFound) ? NSNumber::numberWithInteger(static_cast<NSInteger>(v))
                                                               : NSNumber::numberWithUnsignedInteger(v));
    }
    bool Double(double v) { return put(NSNumber::numberWithDouble(v)); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
    bool String(const char* s, rapidjson::SizeType n, bool) { return put(NSString::fromUTF8({s, n})); }
    bool Key(const char* s, rapidjson::SizeType n, bool) {
        levels_.back().key = NSString::fromUTF8({s, n});
        return true;
    }
    bool StartObject() { return open({NSMutableDictionary::dictionary(), nullptr, nullptr}); }
    bool StartArray() { return open({nullptr, NSMutableArray::array(), nullptr}); }
    bool EndObject(rapidjson::SizeType) {
        Ref<NSObject> o = std::move(levels_.back().dictionary);
        levels_.pop_back();
        return put(o);
    }
    bool EndArray(rapidjson::SizeType) {
        Ref<NSObject> o = std::move(levels_.back().list);
        levels_.pop_back();
        return put(o);
    }
    Ref<NSObject> root;
    bool tooDeep = false;

private:
    struct Level {
        Ref<NSMutableDictionary> dictionary;
        Ref<NSMutableArray> list;
        Ref<NSString> key;
    };
    bool open(Level level) {
        // What is built is also given up by recursion.
        tooDeep = levels_.size() >= static_cast<std::size_t>(JSONDocument::deepest);
        if (!tooDeep) levels_.push_back(std::move(level));
        return !tooDeep;
    }
    bool put(NSObject* o) {
        if (levels_.empty())
            root = o;
        else if (levels_.back().list)
            levels_.back().list->addObject(o);
        else
            levels_.back().dictionary->setObject_forKey(o, levels_.back().key);
        return true;
    }
    std::vector<Level> levels_;
};

template <class Out> class Walker {
public:
    explicit Walker(Out& out) : out_(out) {}

    bool write(const NSObject* v) {
        if (depth_ == JSONDocument::deepest) return false;
        ++depth_;
        bool done = writeValue(v);
        --depth_;
        return done;
    }

private:
    bool writeValue(const NSObject* v) {
        if (auto* s = dynamic_cast<const NSString*>(v)) {
            std::string text = s->utf8();
            return out_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        }
        if (auto* n = dynamic_cast<const NSNumber*>(v)) {
            if (n->isBoolean()) return out_.Bool(n->boolValue());
            if (n->isFloating()) return std::isfinite(n->doubleValue()) && out_.Double(n->doubleValue());
            return *n->objCType() == 'Q' ? out_.Uint64(n->unsignedIntegerValue()) : out_.Int64(n->integerValue());
        }
        if (auto* d = dynamic_cast<const NSDictionary*>(v)) {
            out_.StartObject();
            for (auto [key, value] : *d) {
                auto* text = dynamic_cast<const NSString*>(key);
                if (!text) return false;
                std::string name = text->utf8();
                out_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
                if (!write(value)) return false;
            }
            return out_.EndObject();
        }
        if (auto* a = dynamic_cast<const NSArray*>(v)) {
            out_.StartArray();
            for (NSObject* o : *a)
                if (!write(o)) return false;
            return out_.EndArray();
        }
        return v == NSNull::null() && out_.Null();
    }
    Out& out_;
    int depth_ = 0;
};

} // namespace

Ref<NSObject> JSONDocument::read(std::string_view utf8, std::string* fault) {
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag;
    rapidjson::MemoryStream bytes(utf8.data(), utf8.size());
    rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> in(bytes);
    rapidjson::Reader reader;
    Builder builder;
    auto result = reader.Parse<flags>(in, builder);
    if (!result.IsError()) return builder.root;
    if (fault)
        *fault = (builder.tooDeep ? std::string("Nested too deeply") : rapidjson::GetParseError_En(result.Code())) +
                 " (byte " + std::to_string(result.Offset()) + ")";
    return nullptr;
}

bool JSONDocument::write(const NSObject* value, Layout layout, std::string& out) {
    rapidjson::StringBuffer buffer;
    bool done = false;
    if (layout == Layout::indented) {
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
        writer.SetIndent(' ', 2);
        done = Walker(writer).write(value);
    } else {
        rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
        done = Walker(writer).write(value);
    }
    out.assign(buffer.GetString(), buffer.GetSize());
    return done;
}

} // namespace libvue
