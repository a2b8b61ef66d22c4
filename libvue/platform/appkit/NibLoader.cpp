#include <libvue/platform/appkit/NibLoader.h>

#include <algorithm>

#include <libvue/platform/appkit/NSApplication.h>
#include <libvue/platform/appkit/NSBox.h>
#include <libvue/platform/appkit/NSButton.h>
#include <libvue/platform/appkit/NSClipView.h>
#include <libvue/platform/appkit/NSMenu.h>
#include <libvue/platform/appkit/NSMenuItem.h>
#include <libvue/platform/appkit/NSNib.h>
#include <libvue/platform/appkit/NSPanel.h>
#include <libvue/platform/appkit/NSPopUpButton.h>
#include <libvue/platform/appkit/NSScrollView.h>
#include <libvue/platform/appkit/NSSlider.h>
#include <libvue/platform/appkit/NSTextField.h>
#include <libvue/platform/appkit/NSViewController.h>
#include <libvue/platform/appkit/NSWindowController.h>
#include <libvue/platform/appkit/NibProperties.h>
#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSDictionary.h>
#include <libvue/platform/foundation/NSNumber.h>

namespace libvue {

namespace {

/// A window larger than any screen is a mistake of the file.
constexpr CGFloat kLargestWindow = 16384;

// Classes that resources name and that nothing may have used yet.
const ClassRegistration<NSView> viewRegistration;
const ClassRegistration<NSClipView> clipRegistration;
const ClassRegistration<NSScrollView> scrollRegistration;
const ClassRegistration<NSWindow> windowRegistration;
const ClassRegistration<NSPanel> panelRegistration;
const ClassRegistration<NSViewController> controllerRegistration;
const ClassRegistration<NSWindowController> windowControllerRegistration;

std::string quoted(const NSString* s) { return "\"" + s->utf8() + "\""; }

} // namespace

NibLoader::NibLoader(NSDictionary* document, NSBundle* bundle, NSObject* owner)
    : document_(document), bundle_(bundle), owner_(owner) {}
NibLoader::~NibLoader() = default;

bool NibLoader::fail(const std::string& reason) {
    if (fault_.empty()) fault_ = reason;
    return false;
}

bool NibLoader::load(NSMutableArray* topLevelObjects) {
    if (!checkKeys(document_, {"objects", "owner", "comment"})) return false;
    auto* objects = document_->get<NSArray>(u"objects"_ns);
    if (!objects) return fail("it has no list of objects");
    for (NSObject* json : *objects) {
        const Ref<NSObject> o = object(json, Wanted::any);
        if (!o) return false;
        topLevelObjects->addObject(o);
    }
    for (const Connection& c : connections_)
        if (!connect(c)) return false;
    if (NSObject* json = document_->objectForKey(u"owner"_ns)) {
        auto* d = as<NSDictionary>(json);
        if (!d || !checkKeys(d, {"outlets"})) return fail("the owner is described by its outlets");
        if (owner_ && !connect({owner_, d->get<NSDictionary>(u"outlets"_ns), nullptr})) return false;
    }
    for (const Ref<NSObject>& o : all_)
        o->awakeFromNib();
    return true;
}

bool NibLoader::checkKeys(NSDictionary* d, std::initializer_list<std::string_view> known) {
    const Ref<NSArray> keys = d->allKeys();
    for (NSString* key : keys->as<NSString>()) {
        if (std::find(known.begin(), known.end(), key->utf8()) == known.end())
            return fail("unknown key " + quoted(key));
    }
    return true;
}

Ref<NSObject> NibLoader::object(NSObject* json, Wanted wanted) {
    auto* d = as<NSDictionary>(json);
    auto* className = d ? d->get<NSString>(u"class"_ns) : nullptr;
    if (!className) {
        (void)fail("an object is a dictionary with a class");
        return nullptr;
    }
    if (!checkKeys(d, {"id", "class", "frame", "style", "autoresizing", "properties", "items", "subviews",
                       "contentView", "documentView", "view", "menu", "outlets", "action", "comment"}))
        return nullptr;
    const Class* c = NSClassFromString(className);
    if (!c || (wanted == Wanted::view && !c->isSubclassOfClass(classOf<NSView>())) ||
        c->isSubclassOfClass(classOf<NSApplication>())) {
        (void)fail(quoted(className) + (c ? " cannot stand here" : " is no known class"));
        return nullptr;
    }
    Ref<NSObject> o = c->alloc();
    if (!o) {
        (void)fail("a " + className->utf8() + " cannot be made without arguments");
        return nullptr;
    }
    all_.push_back(o);
    if (NSObject* id = d->objectForKey(u"id"_ns)) {
        auto* text = as<NSString>(id);
        if (!text || text->isEqualToString(u"owner"_ns) || text->isEqualToString(u"application"_ns) ||
            !byId_.emplace(text->utf8(), o).second) {
            (void)fail("an id is a text that no other object has");
            return nullptr;
        }
    }
    auto* view = as<NSView>(o);
    auto* window = as<NSWindow>(o);
    for (const auto& [key, fits] : {std::pair{"frame", view || window},
                                    {"style", window != nullptr},
                                    {"autoresizing", view != nullptr},
                                    {"subviews", view || window},
                                    {"contentView", window || as<NSBox>(o)},
                                    {"documentView", as<NSScrollView>(o) != nullptr},
                                    {"view", as<NSViewController>(o) != nullptr},
                                    {"menu", view || as<NSMenuItem>(o)}})
        if (!fits && d->objectForKey(NSString::fromUTF8(key))) {
            (void)fail("a " + className->utf8() + " has no " + key);
            return nullptr;
        }
    if (window && !fillWindow(window, d)) return nullptr;
    if (view && !fillView(view, d)) return nullptr;
    if (NSObject* inside = d->objectForKey(u"view"_ns)) {
        const Ref<NSView> v = as<NSView>(object(inside, Wanted::view));
        if (!v) return nullptr;
        as<NSViewController>(o)->setView(v);
    }
    if (!addItems(o, d->objectForKey(u"items"_ns)) || !setProperties(o, d->objectForKey(u"properties"_ns)) ||
        !noteConnections(o, d))
        return nullptr;
    return o;
}

bool NibLoader::fillWindow(NSWindow* window, NSDictionary* d) {
    if (NSObject* style = d->objectForKey(u"style"_ns)) {
        NSUInteger mask = 0;
        if (!detail::nibWindowStyle(style, mask)) return fail("unknown window style");
        window->setStyleMask(mask);
    }
    if (NSObject* frame = d->objectForKey(u"frame"_ns)) {
        CGFloat n[4];
        if (!detail::nibNumbers(frame, 4, n) || n[2] < 1 || n[3] < 1 || n[2] > kLargestWindow || n[3] > kLargestWindow)
            return fail("a window's frame is four numbers, and as large as a window can be");
        window->setFrame_display(window->frameRectForContentRect({{n[0], n[1]}, {n[2], n[3]}}), NO);
    }
    if (NSObject* content = d->objectForKey(u"contentView"_ns)) {
        const Ref<NSView> v = as<NSView>(object(content, Wanted::view));
        if (!v) return false;
        window->setContentView(v);
    }
    return addSubviews(window->contentView(), d->objectForKey(u"subviews"_ns));
}

bool NibLoader::fillView(NSView* view, NSDictionary* d) {
    if (NSObject* frame = d->objectForKey(u"frame"_ns)) {
        CGFloat n[4];
        if (!detail::nibNumbers(frame, 4, n) || n[2] < 0 || n[3] < 0) return fail("a frame is four numbers");
        view->setFrame({{n[0], n[1]}, {n[2], n[3]}});
    }
    if (NSObject* bits = d->objectForKey(u"autoresizing"_ns)) {
        NSUInteger mask = 0;
        if (!detail::nibAutoresizing(bits, mask)) return fail("autoresizing is a list of width, height, minX…");
        view->setAutoresizingMask(mask);
    }
    if (NSObject* json = d->objectForKey(u"menu"_ns)) {
        const Ref<NSMenu> menu = as<NSMenu>(object(json, Wanted::any));
        if (!menu) return fail("a menu is an NSMenu");
        view->setMenu(menu);
    }
    NSView* parent = view;
    if (auto* box = as<NSBox>(view)) {
        if (NSObject* json = d->objectForKey(u"contentView"_ns)) {
            const Ref<NSView> content = as<NSView>(object(json, Wanted::view));
            if (!content) return false;
            box->setContentView(content);
        }
        parent = box->contentView();
    }
    if (NSObject* json = d->objectForKey(u"documentView"_ns)) {
        const Ref<NSView> document = as<NSView>(object(json, Wanted::view));
        if (!document) return false;
        as<NSScrollView>(view)->setDocumentView(document);
    }
    return addSubviews(parent, d->objectForKey(u"subviews"_ns));
}

bool NibLoader::addSubviews(NSView* parent, NSObject* json) {
    if (!json) return true;
    auto* list = as<NSArray>(json);
    if (!list || !parent) return fail("subviews are a list");
    for (NSObject* o : *list) {
        const Ref<NSView> v = as<NSView>(object(o, Wanted::view));
        if (!v) return false;
        parent->addSubview(v);
    }
    return true;
}

bool NibLoader::addItems(NSObject* object, NSObject* json) {
    if (!json) return true;
    auto* list = as<NSArray>(json);
    if (!list || !object) return fail("items are a list");
    if (auto* menu = as<NSMenu>(object)) return addMenuItems(menu, list);
    if (auto* popUp = as<NSPopUpButton>(object)) {
        if (!popUp->menu()) popUp->setMenu(make<NSMenu>());
        const bool added = addMenuItems(popUp->menu(), list);
        // An item that does nothing else is chosen.
        for (NSInteger i = 0; i < popUp->numberOfItems(); ++i) {
            NSMenuItem* item = popUp->itemAtIndex(i);
            if (item->action() || item->isSeparatorItem() || item->hasSubmenu()) continue;
            item->setAction(sel("menuChosen:"));
            item->setTarget(popUp->cell());
        }
        if (added && popUp->indexOfSelectedItem() < 0 && popUp->numberOfItems() > 0) popUp->selectItemAtIndex(0);
        return added;
    }
    for (NSObject* item : *list) {
        const auto add = op::addNibItem.of(object);
        if (!add) return fail("a " + object->className()->utf8() + " has no items");
        add(item);
    }
    return true;
}

bool NibLoader::addMenuItems(NSMenu* menu, NSArray* list) {
    for (NSObject* o : *list) {
        if (auto* title = as<NSString>(o)) {
            menu->addItem(title->isEqualToString(u"-"_ns) ? NSMenuItem::separatorItem()
                                                          : make<NSMenuItem>(title, nullptr, nullptr));
            continue;
        }
        auto* d = as<NSDictionary>(o);
        auto* title = d ? d->get<NSString>(u"title"_ns) : nullptr;
        if (!title) return fail("an item is a text, or a dictionary with a title");
        if (!checkKeys(d, {"title", "tag", "key", "action", "submenu", "id"})) return false;
        const Ref<NSMenuItem> item = make<NSMenuItem>(title, nullptr, d->get<NSString>(u"key"_ns));
        if (auto* tag = d->get<NSNumber>(u"tag"_ns)) item->setTag(tag->integerValue());
        if (NSObject* json = d->objectForKey(u"submenu"_ns)) {
            auto* entries = as<NSArray>(json);
            const Ref<NSMenu> submenu = make<NSMenu>(title);
            if (!entries) return fail("a submenu is a list of items");
            if (!addMenuItems(submenu, entries)) return false;
            item->setSubmenu(submenu);
        }
        if (auto* id = d->get<NSString>(u"id"_ns); id && !byId_.emplace(id->utf8(), item).second)
            return fail("an id is a text that no other object has");
        if (!noteConnections(item, d)) return false;
        menu->addItem(item);
    }
    return true;
}

bool NibLoader::setProperties(NSObject* object, NSObject* json) {
    if (!json) return true;
    auto* d = as<NSDictionary>(json);
    if (!d) return fail("properties are a dictionary");
    const Ref<NSArray> keys = d->allKeys();
    for (NSString* key : keys->as<NSString>()) {
        Ref<NSObject> value;
        if (!detail::nibValue(d->objectForKey(key), bundle_, value, fault_) ||
            !detail::setNibProperty(object, key, value, fault_))
            return false;
    }
    return true;
}

bool NibLoader::noteConnections(NSObject* object, NSDictionary* d) {
    NSObject* outlets = d->objectForKey(u"outlets"_ns);
    NSObject* action = d->objectForKey(u"action"_ns);
    if (!outlets && !action) return true;
    if ((outlets && !as<NSDictionary>(outlets)) || (action && !as<NSDictionary>(action)))
        return fail("outlets and actions are dictionaries");
    connections_.push_back({object, as<NSDictionary>(outlets), as<NSDictionary>(action)});
    return true;
}

bool NibLoader::named(NSObject* id, NSObject*& object) {
    auto* text = as<NSString>(id);
    if (!text) return fail("an outlet names an object by its id");
    if (text->isEqualToString(u"owner"_ns)) {
        object = owner_;
        return true;
    }
    if (text->isEqualToString(u"application"_ns)) {
        object = NSApp();
        return true;
    }
    const auto found = byId_.find(text->utf8());
    if (found == byId_.end()) return fail("no object has the id " + quoted(text));
    object = found->second;
    return true;
}

bool NibLoader::connect(const Connection& c) {
    if (c.outlets) {
        const Ref<NSArray> keys = c.outlets->allKeys();
        for (NSString* key : keys->as<NSString>()) {
            NSObject* to = nullptr;
            if (!named(c.outlets->objectForKey(key), to)) return false;
            if (!detail::setNibProperty(c.from, key, to, fault_)) return false;
        }
    }
    if (!c.action) return true;
    if (!checkKeys(c.action, {"selector", "target"})) return false;
    auto* name = c.action->get<NSString>(u"selector"_ns);
    NSObject* target = nullptr;
    if (!name || name->length() == 0) return fail("an action has a selector");
    if (NSObject* id = c.action->objectForKey(u"target"_ns); id && !named(id, target)) return false;
    const SEL selector = sel(name->utf8());
    if (auto* control = as<NSControl>(c.from)) {
        control->setTarget(target);
        control->setAction(selector);
    } else if (auto* item = as<NSMenuItem>(c.from)) {
        item->setTarget(target);
        item->setAction(selector);
    } else
        return fail("a " + c.from->className()->utf8() + " sends no action");
    return true;
}

} // namespace libvue
