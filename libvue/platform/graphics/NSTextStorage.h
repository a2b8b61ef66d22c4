#pragma once

#include <vector>

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSAttributedString.h>
#include <libvue/platform/foundation/Operation.h>
#include <libvue/platform/graphics/Forward.h>

namespace libvue {

class NSLayoutManager;

enum NSTextStorageEditActions : NSUInteger { NSTextStorageEditedAttributes = 1, NSTextStorageEditedCharacters = 2 };

/// The object is the storage. Before the first one attributes and characters may still be changed.
inline constexpr ConstantString NSTextStorageWillProcessEditingNotification{
    u"NSTextStorageWillProcessEditingNotification"};
inline constexpr ConstantString NSTextStorageDidProcessEditingNotification{
    u"NSTextStorageDidProcessEditingNotification"};

namespace op {
inline constexpr Operation<void(NSNotification*)> textStorageWillProcessEditing{"textStorageWillProcessEditing:"};
inline constexpr Operation<void(NSNotification*)> textStorageDidProcessEditing{"textStorageDidProcessEditing:"};
} // namespace op

/// An attributed text that tells its layout managers of every change. It keeps them.
class LIBVUE_API NSTextStorage : public NSMutableAttributedString {
public:
    static void describe(ClassDescription<NSTextStorage, NSMutableAttributedString>& c);
    NSTextStorage();
    /// A null text raises NSInvalidArgumentException.
    explicit NSTextStorage(const NSString* s);
    NSTextStorage(const NSString* s, const NSDictionary* attributes);
    explicit NSTextStorage(const NSAttributedString* other);
    explicit NSTextStorage(NSCoder& coder);
    ~NSTextStorage() override;
    [[nodiscard]] static Ref<NSTextStorage> initWithString(const NSString* s);
    [[nodiscard]] static Ref<NSTextStorage> initWithString_attributes(const NSString* s,
                                                                      const NSDictionary* attributes);

    [[nodiscard]] Ref<NSArray> layoutManagers() const;
    /// Takes it out of the storage that it was in. Null is ignored, as is one that is there already.
    void addLayoutManager(NSLayoutManager* manager);
    void removeLayoutManager(NSLayoutManager* manager);
    [[nodiscard]] NSObject* delegate() const noexcept { return delegate_.get(); }
    /// Held weakly.
    void setDelegate(NSObject* delegate) { delegate_ = delegate; }

    void replaceCharactersInRange_withString(NSRange range, const NSString* s) override;
    void setAttributes_range(const NSDictionary* attributes, NSRange range) override;
    void beginEditing() override;
    /// The outermost one processes what was edited since its beginEditing.
    void endEditing() override;

    // What is being processed: a mask of NSTextStorageEditActions, the range in the text as it is now, and how much
    // longer the text became. The mask is 0 while nothing was edited.

    [[nodiscard]] NSUInteger editedMask() const noexcept { return mask_; }
    [[nodiscard]] NSRange editedRange() const noexcept { return edited_; }
    [[nodiscard]] NSInteger changeInLength() const noexcept { return change_; }
    /// For a subclass that keeps its text elsewhere: `range` as it was before the change.
    void edited_range_changeInLength(NSUInteger mask, NSRange range, NSInteger change);
    virtual void processEditing();

private:
    void post(const ConstantString& name, const Operation<void(NSNotification*)>& operation);
    void tellManagers();

    std::vector<Ref<NSLayoutManager>> managers_;
    Weak<NSObject> delegate_;
    NSRange edited_{0, 0};
    NSInteger change_ = 0;
    NSUInteger mask_ = 0;
    NSUInteger depth_ = 0; ///< of beginEditing
    bool processing_ = false;
};

} // namespace libvue
