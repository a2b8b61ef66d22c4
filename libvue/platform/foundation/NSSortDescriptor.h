#pragma once

#include <memory>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

class SelectorComparison;

/// One criterion of a sort: a key path, a direction, and the selector or comparison for its values. Absent values come
/// first when ascending.
class LIBVUE_API NSSortDescriptor : public NSObject {
public:
    static void describe(ClassDescription<NSSortDescriptor>& c);
    /// A null key compares the objects themselves; without a selector it is "compare:".
    NSSortDescriptor(const NSString* key, BOOL ascending, SEL selector = nullptr);
    NSSortDescriptor(const NSString* key, BOOL ascending, NSComparator comparator);
    explicit NSSortDescriptor(NSCoder& coder);
    ~NSSortDescriptor() override;
    [[nodiscard]] static Ref<NSSortDescriptor> sortDescriptorWithKey_ascending(const NSString* key, BOOL ascending);
    [[nodiscard]] static Ref<NSSortDescriptor> sortDescriptorWithKey_ascending_selector(const NSString* key,
                                                                                        BOOL ascending, SEL selector);
    [[nodiscard]] static Ref<NSSortDescriptor>
    sortDescriptorWithKey_ascending_comparator(const NSString* key, BOOL ascending, NSComparator comparator);

    [[nodiscard]] NSString* key() const noexcept { return key_; }
    [[nodiscard]] BOOL ascending() const noexcept { return ascending_; }
    [[nodiscard]] SEL selector() const noexcept { return selector_; }
    /// The function that compares in place of the selector; empty where there is none. It gets no absent values.
    [[nodiscard]] const NSComparator& comparator() const noexcept { return comparator_; }
    /// The order of the objects' values at the key path. Raises NSInvalidArgumentException where one does not answer
    /// the selector.
    [[nodiscard]] NSComparisonResult compareObject_toObject(NSObject* a, NSObject* b) const;
    [[nodiscard]] Ref<NSSortDescriptor> reversedSortDescriptor() const;

    [[nodiscard]] BOOL isEqual(const NSObject* other) const override;
    [[nodiscard]] NSUInteger hash() const override;
    [[nodiscard]] Ref<NSObject> copyWithZone() const override;
    /// A comparison made of a function is not archived.
    void encodeWithCoder(NSCoder& coder) const override;

private:
    Ref<NSString> key_;
    SEL selector_ = nullptr;
    NSComparator comparator_;
    BOOL ascending_ = YES;
    mutable std::unique_ptr<SelectorComparison> comparison_; ///< with what it knows of the classes that it met
};

} // namespace libvue
