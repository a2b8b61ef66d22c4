#pragma once

#include <functional>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

namespace op {
/// For a class of its own kind of items: told each entry of "items" (a text, a number or a dictionary) in order.
inline constexpr Operation<void(NSObject*)> addNibItem{"addNibItem:"};
} // namespace op

/// An interface resource: a fresh graph of objects at each call, from the file "<name>.nib.json" of a bundle or from a
/// builder that code registered under the name.
///
///     { "objects": [                                   the top-level objects, in their order
///         { "id": "panneau", "class": "NSPanel", "frame": [0, 0, 320, 160],        a window's frame is its content's
///           "style": ["titled", "closable", "resizable"],                          utility, miniaturizable, borderless
///           "properties": { "title": "Chercher", "minSize": {"size": [320, 160]} },
///           "outlets": { "initialFirstResponder": "champ", "delegate": "owner" },  key: id of an object
///           "subviews": [                               of its content view; of a box too. Or "contentView": {object}
///             { "id": "champ", "class": "NSTextField", "frame": [20, 100, 280, 24],
///               "autoresizing": ["width", "minY"],      width height minX maxX minY maxY: what is flexible
///               "properties": { "placeholderString": "Mot", "font": {"font": "bold", "size": 13} } },
///             { "class": "NSTextField", "frame": [20, 60, 90, 17], "properties": {"label": "Sens :"} },
///             { "id": "sens", "class": "NSPopUpButton", "frame": [110, 56, 190, 26], "items": ["Avant", "-", "Apres"]
///             }, { "class": "NSButton", "frame": [210, 16, 90, 28],
///               "properties": {"title": "OK", "keyEquivalent": "\r"},
///               "action": { "selector": "chercher:", "target": "owner" } } ] } ],
///       "owner": { "outlets": { "panneau": "panneau", "champ": "champ" } } }
///
/// - Classes are those known by name that have a constructor without arguments. An object in "subviews" is a view.
///   A scroll view takes "documentView": {object}, a controller "view": {object}, any view or control "menu": {object}.
/// - "properties" go by key-value coding, beside what every platform control knows: hidden, tag, toolTip, identifier,
///   font, alignment (left, center, right, natural), controlSize (regular, small, mini), editable, selectable, bezeled,
///   bordered, drawsBackground, textColor, backgroundColor, lineBreakMode (wrap, clip, truncateHead, truncateMiddle,
///   truncateTail), buttonType (push, switch, radio, toggle, onOff, momentary), bezelStyle (rounded, square, help,
///   recessed, disclosure…), keyEquivalent, image, state, and "label": a text field's text, without border or edit.
/// - Values: text, number, true or false, null, lists, and {"color": "#rrggbb[aa]"} or a system name ("labelColor"),
///   {"font": "system", "bold", "fixed" or a family, "size": 12}, {"size": [w, h]}, {"point": [x, y]},
///   {"rect": [x, y, w, h]}, {"range": [at, length]}, {"image": "name"}, {"localized": "key"}.
/// - "items": of a popup button or a menu, texts ("-" is a separator) or {"title", "tag", "key", "action", "submenu"};
///   of another class, see op::addNibItem.
/// - An outlet or a target is an id, "owner" or "application"; an action without target goes to the first responder.
///
/// First all objects are made, then their outlets and actions connected, then the owner's outlets; then each object
/// (not the owner) is sent awakeFromNib, in the order of the file. What cannot be done (an unknown class, key or id, a
/// wrong type, nesting beyond what the reader takes) is logged and answered with NO: nothing of the graph stays.
class LIBVUE_API NSNib : public NSObject {
public:
    static void describe(ClassDescription<NSNib>& c);
    ~NSNib() override;

    /// Null, and logged, where neither the bundle (null: the application's, then the library's) nor a builder has it,
    /// or where the file is no JSON. The bundle's file is asked for first.
    [[nodiscard]] static Ref<NSNib> initWithNibNamed_bundle(const NSString* name, NSBundle* bundle);

    /// One fresh graph, connected to the owner (may be null; not kept). The caller owns it by `topLevelObjects`, which
    /// may be null for a graph that only the owner's outlets keep.
    [[nodiscard]] BOOL instantiateNibWithOwner_topLevelObjects(NSObject* owner, Ref<NSArray>* topLevelObjects);

    /// Adds its top-level objects to the list and connects them; NO where it could not. It wakes nothing: the top-level
    /// objects are sent awakeFromNib afterwards.
    using Builder = std::function<BOOL(NSObject* owner, NSMutableArray* topLevelObjects)>;
    /// Replaces the builder of that name; an empty one takes it away.
    static void registerBuilder(const NSString* name, Builder builder);

private:
    NSNib();

    Ref<NSString> name_;
    Ref<NSBundle> bundle_;
    Ref<NSDictionary> document_;
    Builder builder_;
};

} // namespace libvue
