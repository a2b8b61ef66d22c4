#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Builds the objects of one interface resource and connects them. For one use; see NSNib for the format.
///
/// The JSON reader bounds the nesting of a document, and so the recursion here.
class NibLoader {
public:
    NibLoader(NSDictionary* document, NSBundle* bundle, NSObject* owner);
    ~NibLoader();

    /// False with a reason; may also raise what a class raises.
    [[nodiscard]] bool load(NSMutableArray* topLevelObjects);
    [[nodiscard]] const std::string& fault() const noexcept { return fault_; }

private:
    /// Connections wait until all objects are there.
    struct Connection {
        Ref<NSObject> from;
        Ref<NSDictionary> outlets;
        Ref<NSDictionary> action;
    };
    enum class Wanted { any, view };

    [[nodiscard]] bool fail(const std::string& reason);
    [[nodiscard]] bool checkKeys(NSDictionary* d, std::initializer_list<std::string_view> known);
    [[nodiscard]] Ref<NSObject> object(NSObject* json, Wanted wanted);
    [[nodiscard]] bool fillWindow(NSWindow* window, NSDictionary* d);
    [[nodiscard]] bool fillView(NSView* view, NSDictionary* d);
    [[nodiscard]] bool addSubviews(NSView* parent, NSObject* list);
    [[nodiscard]] bool addItems(NSObject* object, NSObject* list);
    [[nodiscard]] bool addMenuItems(NSMenu* menu, NSArray* list);
    [[nodiscard]] bool setProperties(NSObject* object, NSObject* properties);
    [[nodiscard]] bool noteConnections(NSObject* object, NSDictionary* d);
    [[nodiscard]] bool connect(const Connection& c);
    [[nodiscard]] bool named(NSObject* id, NSObject*& object);

    NSDictionary* document_;
    NSBundle* bundle_;
    NSObject* owner_;
    std::unordered_map<std::string, Ref<NSObject>> byId_;
    std::vector<Ref<NSObject>> all_;
    std::vector<Connection> connections_;
    std::string fault_;
};

} // namespace libvue
