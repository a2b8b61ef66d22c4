#include <libvue/platform/appkit/NSPasteboard.h>

#include <algorithm>
#include <string>

#include <libvue/platform/backend/Backend.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSData.h>
#include <libvue/platform/foundation/NSRunLoop.h>

namespace libvue {

namespace {

constexpr ConstantString kGeneral{u"general"};

/// The types of the platform and what the desktop calls them.
struct TypeName {
    const ConstantString& type;
    std::string_view mime;
};
constexpr TypeName typeNames[] = {{NSStringPboardType, "text/plain"},
                                  {NSRTFPboardType, "text/rtf"},
                                  {NSHTMLPboardType, "text/html"},
                                  {NSURLPboardType, "text/uri-list"}};

std::string mimeOf(const NSString* type) {
    for (const TypeName& n : typeNames)
        if (type->isEqualToString(n.type)) return std::string(n.mime);
    return type->utf8();
}

Ref<NSString> typeOf(std::string_view mime) {
    // Plain text may name its encoding, and rich text goes by two names.
    if (mime.starts_with("text/plain")) return NSStringPboardType.get();
    if (mime == "application/rtf") return NSRTFPboardType.get();
    for (const TypeName& n : typeNames)
        if (mime == n.mime) return n.type.get();
    return NSString::fromUTF8(mime);
}

std::vector<Ref<NSPasteboard>>& table() {
    static std::vector<Ref<NSPasteboard>> boards;
    return boards;
}

} // namespace

void NSPasteboard::describe(ClassDescription<NSPasteboard>&) {}

NSPasteboard::NSPasteboard(NSString* name)
    : name_(name),
      place_(name->isEqualToString(kGeneral)       ? Place::desktop
             : name->isEqualToString(NSFindPboard) ? Place::findText
                                                   : Place::process) {}
NSPasteboard::~NSPasteboard() = default;

NSPasteboard* NSPasteboard::pasteboardWithName(NSString* name) {
    const Ref<NSString> wanted = name ? NSString::stringWithString(name) : Ref<NSString>(kGeneral.get());
    for (const auto& b : table())
        if (b->name_->isEqualToString(wanted)) return b;
    (void)classOf<NSPasteboard>();
    table().push_back(adopt(new NSPasteboard(wanted)));
    return table().back();
}

NSPasteboard* NSPasteboard::generalPasteboard() { return pasteboardWithName(kGeneral); }

backend::Clipboard* NSPasteboard::shared() const {
    const backend::Backend& current = backend::Backend::current();
    if (place_ == Place::process) return nullptr;
    return place_ == Place::desktop ? current.clipboard.get() : current.findText.get();
}

NSPasteboard::Item* NSPasteboard::item(const NSString* type) {
    const auto at =
        std::find_if(items_.begin(), items_.end(), [&](const Item& i) { return i.type->isEqualToString(type); });
    return at == items_.end() ? nullptr : &*at;
}

NSInteger NSPasteboard::clearContents() {
    items_.clear();
    owner_ = nullptr;
    foreign_ = false;
    ++changes_;
    publish();
    return changes_;
}

NSInteger NSPasteboard::declareTypes_owner(NSArray* types, NSObject* owner) {
    const Ref<NSPasteboard> self(this);
    const Ref<NSArray> kept(types);
    const Ref<NSObject> keptOwner(owner);
    if (const Ref<NSObject> former = owner_.ref(); former && former != owner)
        if (auto tell = op::pasteboardChangedOwner.of(former)) tell(this);
    items_.clear();
    foreign_ = false;
    ++changes_;
    return addTypes_owner(types, owner);
}

NSInteger NSPasteboard::addTypes_owner(NSArray* types, NSObject* owner) {
    if (foreign_) return changes_;
    owner_ = owner;
    if (types)
        for (NSObject* o : *types)
            if (auto* t = as<NSString>(o); t && !item(t)) items_.push_back({t, nullptr});
    publish();
    if (shared() && op::pasteboard_provideDataForType.of(owner))
        NSRunLoop::mainRunLoop()->performBlock([self = Ref<NSPasteboard>(this)] { self->keepPromises(); });
    return changes_;
}

BOOL NSPasteboard::setString_forType(NSString* s, NSString* type) {
    return s && setData_forType(s->dataUsingEncoding(NSUTF8StringEncoding), type);
}

BOOL NSPasteboard::setData_forType(NSData* data, NSString* type) {
    if (!type) return NO;
    followClipboard();
    Item* i = item(type);
    if (!i || foreign_) return NO;
    i->data = data;
    publish();
    return YES;
}

void NSPasteboard::publish() {
    backend::Clipboard* board = shared();
    if (!board) return;
    std::vector<backend::Clipboard::Item> out;
    for (const Item& i : items_) {
        if (!i.data) continue;
        const auto* bytes = static_cast<const std::uint8_t*>(i.data->bytes());
        out.push_back({mimeOf(i.type), std::vector<std::uint8_t>(bytes, bytes + i.data->length())});
    }
    // Whatever changes it besides comes from elsewhere.
    published_ = board->changeCount() + 1;
    board->set(std::move(out));
}

void NSPasteboard::keepPromises() {
    followClipboard();
    if (foreign_) return;
    std::vector<Ref<NSString>> missing;
    for (const Item& i : items_)
        if (!i.data) missing.push_back(i.type);
    for (const auto& type : missing)
        (void)dataForType(type);
}

void NSPasteboard::followClipboard() {
    backend::Clipboard* board = shared();
    if (!board || board->changeCount() == published_) return;
    items_.clear();
    owner_ = nullptr;
    for (const std::string& mime : board->types()) {
        const auto type = typeOf(mime);
        if (!item(type)) items_.push_back({type, nullptr});
    }
    ++changes_;
    foreign_ = true;
    published_ = board->changeCount();
}

Ref<NSArray> NSPasteboard::types() {
    followClipboard();
    auto out = NSMutableArray::array();
    for (const Item& i : items_)
        out->addObject(i.type);
    return out;
}

Ref<NSString> NSPasteboard::availableTypeFromArray(NSArray* types) {
    followClipboard();
    if (types)
        for (NSObject* o : *types)
            if (auto* t = as<NSString>(o); t && item(t)) return t;
    return nullptr;
}

Ref<NSData> NSPasteboard::dataForType(NSString* type) {
    if (!type) return nullptr;
    const Ref<NSPasteboard> self(this);
    const Ref<NSString> kept(type);
    followClipboard();
    Item* i = item(type);
    if (!i) return nullptr;
    if (!i->data) {
        if (auto provide = op::pasteboard_provideDataForType.of(owner_)) {
            provide(this, type);
            i = item(type);
        } else if (backend::Clipboard* board = shared(); board && foreign_) {
            auto bytes = board->read(mimeOf(type));
            if (bytes.empty() && type->isEqualToString(NSStringPboardType))
                bytes = board->read("text/plain;charset=utf-8");
            return NSData::dataWithBytes_length(bytes.data(), bytes.size());
        }
    }
    return i ? i->data : nullptr;
}

Ref<NSString> NSPasteboard::stringForType(NSString* type) {
    const auto data = dataForType(type);
    if (!data) return nullptr;
    const auto* bytes = static_cast<const char*>(data->bytes());
    return NSString::fromUTF8({bytes ? bytes : "", data->length()});
}

NSInteger NSPasteboard::changeCount() {
    followClipboard();
    return changes_;
}

} // namespace libvue
