#include <libvue/platform/foundation/Class.h>

#include <array>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <typeindex>
#include <unordered_map>

#include <libvue/platform/foundation/ClassExtension.h>
#include <libvue/platform/foundation/NSException.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace {

/// "libvue::(anonymous namespace)::KCTarte" gives "KCTarte". Template arguments stay.
std::string bareName(const std::type_info& type) {
    int status = 0;
    char* demangled = abi::__cxa_demangle(type.name(), nullptr, nullptr, &status);
    std::string name = status == 0 ? demangled : type.name();
    std::free(demangled);
    std::size_t start = 0;
    int depth = 0;
    for (std::size_t i = 0; i + 1 < name.size(); ++i) {
        const char c = name[i];
        if (c == '<' || c == '(') ++depth;
        if (c == '>' || c == ')') --depth;
        if (depth == 0 && c == ':' && name[i + 1] == ':') start = i + 2;
    }
    return name.substr(start);
}

bool derivesFrom(const std::type_info& type, const std::type_info& base) noexcept;

/// The base of a class that leads to NSObject; null for NSObject itself and for what is no NSObject.
const std::type_info* objectBase(const std::type_info& type) noexcept {
    if (const auto* single = dynamic_cast<const abi::__si_class_type_info*>(&type)) return single->__base_type;
    if (const auto* several = dynamic_cast<const abi::__vmi_class_type_info*>(&type)) {
        for (unsigned i = 0; i < several->__base_count; ++i) {
            const std::type_info* base = several->__base_info[i].__base_type;
            if (derivesFrom(*base, typeid(NSObject))) return base;
        }
    }
    return nullptr;
}

bool derivesFrom(const std::type_info& type, const std::type_info& base) noexcept {
    for (const std::type_info* t = &type; t; t = objectBase(*t))
        if (*t == base) return true;
    return false;
}

const ClassRegistrationBase* registrations = nullptr;
const ClassExtensionBase* extensions = nullptr;

/// The classes of the types asked for last.
struct Slot {
    const std::type_info* type = nullptr;
    const Class* found = nullptr;
};
constinit std::array<Slot, 256> cache;

Slot& slotOf(const std::type_info& type) noexcept {
    const auto address = reinterpret_cast<std::uintptr_t>(&type);
    return cache[(address >> 4 ^ address >> 12) % cache.size()];
}

} // namespace

/// All the classes built so far, by type and by name.
class ClassTable {
public:
    static ClassTable& instance() {
        static auto& table = *new ClassTable;
        return table;
    }

    const Class& ofType(const std::type_info& type) {
        const Class& found = resolve(type);
        slotOf(type) = {&type, &found};
        return found;
    }

    const Class* exactly(const std::type_info& type) const {
        const auto found = byType_.find(type);
        return found == byType_.end() ? nullptr : found->second;
    }

    void add(const Class& c) {
        byType_.emplace(c.type(), &c);
        byName_.emplace(c.name(), &c);
        // A class that was missing until now may have been answered by a base of it.
        cache.fill({});
        ++detail::classesAdded;
    }

    const Class* named(const std::string& name) {
        if (const auto found = byName_.find(name); found != byName_.end()) return found->second;
        for (const ClassRegistrationBase* r = registrations; r != named_; r = r->next)
            registered_.emplace(bareName(r->type), r);
        named_ = registrations;
        const auto found = registered_.find(name);
        return found == registered_.end() ? nullptr : &found->second->get();
    }

    static bool isDescribed(const Class& c) noexcept { return c.described_; }

    /// Adds to a class that may have answered already: what any class remembers of its answers is forgotten.
    void extend(const ClassExtensionBase& e) {
        const Class* known = exactly(e.type);
        if (!known) return;
        e.fill(e, const_cast<Class&>(*known));
        for (const auto& [type, c] : byType_)
            c->lookups_ = {};
        ++detail::classesAdded;
    }

#ifndef NDEBUG
    /// Stops the process where a description names a superclass above the nearest described base.
    void checkChains() const {
        for (const auto& [type, c] : byType_) {
            if (!c->described_ || !c->superclass_) continue;
            for (const std::type_info* t = objectBase(c->type()); t && *t != c->superclass_->type();
                 t = objectBase(*t)) {
                const Class* between = exactly(*t);
                if (!between || !between->described_) continue;
                std::fprintf(stderr, "%s says that its superclass is %s, but %s stands between them\n",
                             c->name().c_str(), c->superclass_->name().c_str(), between->name().c_str());
                std::abort();
            }
        }
    }
#endif

private:
    const Class& resolve(const std::type_info& type) const {
        for (const std::type_info* t = &type; t; t = objectBase(*t)) {
            if (const Class* c = exactly(*t)) return *c;
            for (const ClassRegistrationBase* r = registrations; r; r = r->next)
                if (r->type == *t) return r->get();
        }
        return classOf<NSObject>();
    }

    std::unordered_map<std::type_index, const Class*> byType_;
    std::unordered_map<std::string, const Class*> byName_;
    std::unordered_map<std::string, const ClassRegistrationBase*> registered_;
    const ClassRegistrationBase* named_ = nullptr; // those from here on are in registered_
};

namespace detail {

unsigned classesAdded = 0;

SelectorCache::Slot& SelectorCache::find(SEL selector) noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = (reinterpret_cast<std::uintptr_t>(selector) >> 4) * 0x9E3779B97F4A7C15u >> 32;
    while (slots_[i & mask].selector && slots_[i & mask].selector != selector)
        ++i;
    return slots_[i & mask];
}

const void*& SelectorCache::at(SEL selector, bool& fresh) {
    if (2 * (used_ + 1) > slots_.size()) {
        std::vector<Slot> old(slots_.empty() ? 16 : slots_.size() * 2);
        old.swap(slots_);
        for (const Slot& s : old)
            if (s.selector) find(s.selector) = s;
    }
    Slot& slot = find(selector);
    fresh = !slot.selector;
    if (fresh) {
        slot.selector = selector;
        ++used_;
    }
    return slot.answer;
}

} // namespace detail

Class::Class(const std::type_info& type, const Class* superclass)
    : name_(bareName(type)), type_(&type), superclass_(superclass) {
    if (superclass) lineage_ = superclass->lineage_;
    lineage_.push_back(this);
}

const Class& Class::build(const std::type_info& type, const Class* superclass, Describe describe) {
    // Each shared object that uses a class from a header comes here once.
    if (const Class* known = ClassTable::instance().exactly(type)) return *known;
    auto* c = new Class(type, superclass);
    describe(*c);
    for (const ClassExtensionBase* e = extensions; e; e = e->next)
        if (e->type == type) e->fill(*e, *c);
    ClassTable::instance().add(*c);
#ifndef NDEBUG
    ClassTable::instance().checkChains();
#endif
    return *c;
}

BOOL Class::isSubclassOfClass(const Class& c) const noexcept {
    const std::size_t rank = c.lineage_.size() - 1;
    if (rank < lineage_.size() && lineage_[rank] == &c) return true;
    // A class without a description of its own is in nobody's chain of superclasses.
    return !ClassTable::isDescribed(c) && derivesFrom(*type_, c.type());
}

Ref<NSObject> Class::alloc() const { return factory_ ? factory_() : nullptr; }

Ref<NSObject> Class::initWithCoder(NSCoder& coder) const { return decode_ ? decode_(coder) : nullptr; }

BOOL Class::hasInitWithCoder() const noexcept { return decode_ != nullptr; }

const OperationEntry* Class::operation(SEL selector) const noexcept {
    if (!selector) return nullptr;
    bool fresh = false;
    const void*& answer = lookups_.at(selector, fresh);
    if (fresh) {
        for (const OperationEntry& e : operations_)
            if (e.selector == selector) answer = &e;
        if (!answer && superclass_) answer = superclass_->operation(selector);
    }
    return static_cast<const OperationEntry*>(answer);
}

const OperationEntry* Class::classOperation(SEL selector) const noexcept {
    for (const Class* c = this; c; c = c->superclass_)
        for (const OperationEntry& e : c->classOperations_)
            if (e.selector == selector) return &e;
    return nullptr;
}

const KeyEntry* Class::key(SEL key) const noexcept {
    if (!key) return nullptr;
    bool fresh = false;
    const void*& answer = keyLookups_.at(key, fresh);
    if (fresh) {
        for (const KeyEntry& e : keys_)
            if (e.key == key) answer = &e;
        if (!answer && superclass_) answer = superclass_->key(key);
    }
    return static_cast<const KeyEntry*>(answer);
}

const Class& NSObject::isa() const {
    const std::type_info& type = typeid(*this);
    const Slot& slot = slotOf(type);
    return slot.type == &type ? *slot.found : ClassTable::instance().ofType(type);
}

BOOL NSObject::isKindOfClass(const Class& c) const {
    return isa().isSubclassOfClass(c) || (!ClassTable::isDescribed(c) && derivesFrom(typeid(*this), c.type()));
}

const OperationEntry* findOperation(const NSObject* object, SEL selector, const std::type_info& signature) {
    if (!object) return nullptr;
    const OperationEntry* e = object->isa().operation(selector);
    if (!e || *e->signature == signature) return e;
#ifndef NDEBUG
    std::fprintf(stderr, "%s answers %s with another signature than the one asked for\n", object->isa().name().c_str(),
                 selector->name.data());
    std::abort();
#else
    return nullptr;
#endif
}

ClassRegistrationBase::ClassRegistrationBase(const Class& (*get)(), const std::type_info& type) noexcept
    : get(get), type(type), next(registrations) {
    registrations = this;
}

void ClassExtensionBase::install() noexcept {
    next = extensions;
    extensions = this;
    ClassTable::instance().extend(*this);
}

const Class* NSClassFromString(NSString* name) { return name ? ClassTable::instance().named(name->utf8()) : nullptr; }

Ref<NSString> NSStringFromClass(const Class& c) { return NSString::fromUTF8(c.name()); }

} // namespace libvue
