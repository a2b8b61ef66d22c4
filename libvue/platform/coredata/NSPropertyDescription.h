#pragma once

#include <libvue/platform/coredata/Forward.h>
#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

/// One thing that the objects of an entity have under a name: an attribute or a relationship.
class LIBVUE_API NSPropertyDescription : public NSObject {
public:
    static void describe(ClassDescription<NSPropertyDescription>& c);
    ~NSPropertyDescription() override;

    [[nodiscard]] NSString* name() const noexcept { return name_; }
    /// Has to be set before the property is given to an entity.
    void setName(const NSString* name);
    /// Null until an entity has it. Held weakly.
    [[nodiscard]] NSEntityDescription* entity() const { return entity_; }

protected:
    NSPropertyDescription() noexcept;

private:
    friend class NSEntityDescription;
    Ref<NSString> name_;
    Weak<NSEntityDescription> entity_;
};

/// A plain value: a text, a number, a date, or any other object.
class LIBVUE_API NSAttributeDescription : public NSPropertyDescription {
public:
    static void describe(ClassDescription<NSAttributeDescription, NSPropertyDescription>& c);
    NSAttributeDescription() noexcept = default;
    /// An attribute of that name and default value (may be null).
    [[nodiscard]] static Ref<NSAttributeDescription> attribute(const NSString* name, NSObject* defaultValue = nullptr);

    /// What new objects begin with; shared by all of them.
    [[nodiscard]] NSObject* defaultValue() const noexcept { return default_; }
    void setDefaultValue(NSObject* value) { default_ = value; }

private:
    Ref<NSObject> default_;
};

/// What becomes of the related objects when the owner is deleted.
enum NSDeleteRule : NSUInteger {
    NSNoActionDeleteRule = 0, ///< they keep pointing at it
    NSNullifyDeleteRule = 1,  ///< they lose it
    NSCascadeDeleteRule = 2   ///< they are deleted as well
};

/// A link to one object of another entity, or to a set of them.
class LIBVUE_API NSRelationshipDescription : public NSPropertyDescription {
public:
    static void describe(ClassDescription<NSRelationshipDescription, NSPropertyDescription>& c);
    NSRelationshipDescription() noexcept;
    ~NSRelationshipDescription() override;
    [[nodiscard]] static Ref<NSRelationshipDescription> toOne(const NSString* name, NSEntityDescription* destination);
    [[nodiscard]] static Ref<NSRelationshipDescription> toMany(const NSString* name, NSEntityDescription* destination);
    /// Makes each the inverse of the other.
    static void makeInverse(NSRelationshipDescription* a, NSRelationshipDescription* b);

    /// Null admits any entity. Held weakly: the model owns it.
    [[nodiscard]] NSEntityDescription* destinationEntity() const { return destination_; }
    void setDestinationEntity(NSEntityDescription* e);
    /// The relationship that leads back, of the destination; null for none. Held weakly.
    [[nodiscard]] NSRelationshipDescription* inverseRelationship() const { return inverse_; }
    void setInverseRelationship(NSRelationshipDescription* r) { inverse_ = r; }
    /// 1 is a link to one object; 0, the default, sets no limit. No set is held to any other number.
    [[nodiscard]] NSUInteger maxCount() const noexcept { return maxCount_; }
    void setMaxCount(NSUInteger n) noexcept { maxCount_ = n; }
    [[nodiscard]] BOOL isToMany() const noexcept { return maxCount_ != 1; }
    /// NSNullifyDeleteRule unless set.
    [[nodiscard]] NSDeleteRule deleteRule() const noexcept { return deleteRule_; }
    void setDeleteRule(NSDeleteRule rule) noexcept { deleteRule_ = rule; }

private:
    Weak<NSEntityDescription> destination_;
    Weak<NSRelationshipDescription> inverse_;
    NSUInteger maxCount_ = 0;
    NSDeleteRule deleteRule_ = NSNullifyDeleteRule;
};

} // namespace libvue
