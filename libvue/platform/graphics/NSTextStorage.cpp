#include <libvue/platform/graphics/NSTextStorage.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <libvue/platform/foundation/NSArray.h>
#include <libvue/platform/foundation/NSNotificationCenter.h>
#include <libvue/platform/graphics/NSLayoutManager.h>

namespace libvue {

static const ClassRegistration<NSTextStorage> registration;

void NSTextStorage::describe(ClassDescription<NSTextStorage, NSMutableAttributedString>&) {}

NSTextStorage::NSTextStorage() = default;
NSTextStorage::NSTextStorage(const NSString* s) : NSMutableAttributedString(s) {}
NSTextStorage::NSTextStorage(const NSString* s, const NSDictionary* attributes)
    : NSMutableAttributedString(s, attributes) {}
NSTextStorage::NSTextStorage(const NSAttributedString* other) : NSMutableAttributedString(other) {}
NSTextStorage::NSTextStorage(NSCoder& coder) : NSMutableAttributedString(coder) {}

NSTextStorage::~NSTextStorage() {
    for (const auto& m : managers_)
        m->setTextStorage_(nullptr);
}

Ref<NSTextStorage> NSTextStorage::initWithString(const NSString* s) { return make<NSTextStorage>(s); }
Ref<NSTextStorage> NSTextStorage::initWithString_attributes(const NSString* s, const NSDictionary* attributes) {
    return make<NSTextStorage>(s, attributes);
}

Ref<NSArray> NSTextStorage::layoutManagers() const {
    const Ref<NSMutableArray> all = NSMutableArray::array();
    for (const auto& m : managers_)
        all->addObject(m);
    return all;
}

void NSTextStorage::addLayoutManager(NSLayoutManager* manager) {
    if (!manager || manager->textStorage() == this) return;
    const Ref<NSLayoutManager> kept(manager);
    if (NSTextStorage* former = manager->textStorage()) former->removeLayoutManager(manager);
    managers_.push_back(kept);
    manager->setTextStorage_(this);
}

void NSTextStorage::removeLayoutManager(NSLayoutManager* manager) {
    const auto found = std::find(managers_.begin(), managers_.end(), manager);
    if (found == managers_.end()) return;
    const Ref<NSLayoutManager> kept = *found;
    managers_.erase(found);
    kept->setTextStorage_(nullptr);
}

// Editing.

void NSTextStorage::replaceCharactersInRange_withString(NSRange range, const NSString* s) {
    const NSInteger before = static_cast<NSInteger>(length());
    NSMutableAttributedString::replaceCharactersInRange_withString(range, s);
    edited_range_changeInLength(NSTextStorageEditedCharacters, range, static_cast<NSInteger>(length()) - before);
}

void NSTextStorage::setAttributes_range(const NSDictionary* attributes, NSRange range) {
    NSMutableAttributedString::setAttributes_range(attributes, range);
    edited_range_changeInLength(NSTextStorageEditedAttributes, range, 0);
}

void NSTextStorage::beginEditing() { ++depth_; }

void NSTextStorage::endEditing() {
    if (depth_ > 0 && --depth_ == 0 && mask_ != 0) processEditing();
}

void NSTextStorage::edited_range_changeInLength(NSUInteger mask, NSRange range, NSInteger change) {
    // The part before the edit in today's units: what was edited earlier shifts with what comes in front of it.
    const auto now = [&](NSUInteger old) {
        return old >= NSMaxRange(range) ? static_cast<NSUInteger>(static_cast<NSInteger>(old) + change) : old;
    };
    const NSUInteger end = static_cast<NSUInteger>(static_cast<NSInteger>(NSMaxRange(range)) + change);
    if (mask_ == 0) {
        edited_ = {range.location, end - range.location};
    } else {
        const NSUInteger first = std::min(edited_.location, range.location);
        const NSUInteger last = std::max(now(NSMaxRange(edited_)), end);
        edited_ = {first, last - first};
    }
    mask_ |= mask;
    change_ += change;
    if (depth_ == 0 && !processing_) processEditing();
}

void NSTextStorage::post(const ConstantString& name, const Operation<void(NSNotification*)>& operation) {
    if (const auto tell = operation.of(delegate_)) tell(NSNotification::notificationWithName_object(name, this));
    NSNotificationCenter::defaultCenter()->postNotificationName_object(name, this);
}

void NSTextStorage::processEditing() {
    const Ref<NSTextStorage> self(this);
    std::exception_ptr raised;
    processing_ = true;
    try {
        post(NSTextStorageWillProcessEditingNotification, op::textStorageWillProcessEditing);
        post(NSTextStorageDidProcessEditingNotification, op::textStorageDidProcessEditing);
    } catch (...) {
        // The text has changed all the same: no layout of the old one may stay.
        raised = std::current_exception();
    }
    processing_ = false;
    tellManagers();
    if (raised) std::rethrow_exception(raised);
}

void NSTextStorage::tellManagers() {
    const NSUInteger mask = std::exchange(mask_, 0);
    const NSInteger change = std::exchange(change_, 0);
    for (const std::vector<Ref<NSLayoutManager>> told = managers_; const auto& m : told)
        if (m->textStorage() == this) m->textStorage_edited_range_changeInLength(this, mask, edited_, change);
}

} // namespace libvue
