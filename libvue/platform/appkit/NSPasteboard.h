#pragma once

#include <vector>

#include <libvue/platform/appkit/Forward.h>
#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

namespace backend {
class Clipboard;
}

inline constexpr ConstantString NSStringPboardType{u"NSStringPboardType"};
inline constexpr ConstantString NSRTFPboardType{u"NSRTFPboardType"};
inline constexpr ConstantString NSHTMLPboardType{u"NSHTMLPboardType"};
inline constexpr ConstantString NSURLPboardType{u"NSURLPboardType"};
inline constexpr ConstantString NSFindPboard{u"NSFindPboard"};
inline constexpr ConstantString NSFontPboard{u"NSFontPboard"};
inline constexpr ConstantString NSDragPboard{u"NSDragPboard"};

namespace op {
/// Asks the owner for a type that it declared and has not given yet.
inline constexpr Operation<void(NSPasteboard*, NSString*)> pasteboard_provideDataForType{
    "pasteboard:provideDataForType:"};
/// Tells the former owner that someone else has declared types.
inline constexpr Operation<void(NSPasteboard*)> pasteboardChangedOwner{"pasteboardChangedOwner:"};
} // namespace op

/// What is copied from one place and pasted in another, in several representations. The general one is the desktop's
/// clipboard, and the find pasteboard is shared by the user's applications; the others belong to the process.
class LIBVUE_API NSPasteboard : public NSObject {
public:
    static void describe(ClassDescription<NSPasteboard>& c);
    [[nodiscard]] static NSPasteboard* generalPasteboard();
    /// Made on first use and kept.
    [[nodiscard]] static NSPasteboard* pasteboardWithName(NSString* name);
    ~NSPasteboard() override;

    [[nodiscard]] NSString* name() const noexcept { return name_; }
    /// Empties it and says what will be there. The owner (held weakly, may be null) is asked for what it has not given.
    NSInteger declareTypes_owner(NSArray* types, NSObject* owner);
    /// Says that more will be there. Nothing where another application has taken the clipboard. Each of these answers
    /// the change count.
    NSInteger addTypes_owner(NSArray* types, NSObject* owner);
    NSInteger clearContents();
    /// NO for a type that was not declared.
    BOOL setString_forType(NSString* s, NSString* type);
    BOOL setData_forType(NSData* data, NSString* type);
    [[nodiscard]] Ref<NSArray> types();
    /// The first of the array that is there; null where none is.
    [[nodiscard]] Ref<NSString> availableTypeFromArray(NSArray* types);
    /// Null where it is not there.
    [[nodiscard]] Ref<NSString> stringForType(NSString* type);
    [[nodiscard]] Ref<NSData> dataForType(NSString* type);
    /// Grows with each change, also by other applications.
    [[nodiscard]] NSInteger changeCount();

private:
    explicit NSPasteboard(NSString* name);
    struct Item {
        Ref<NSString> type;
        Ref<NSData> data; ///< null while the owner has not given it
    };
    [[nodiscard]] Item* item(const NSString* type);
    /// What other applications see; null for a pasteboard of the process.
    [[nodiscard]] backend::Clipboard* shared() const;
    /// Drops what is held here where another application has taken the clipboard.
    void followClipboard();
    void publish();
    /// Fetches what the owner promised: the desktop's clipboard takes bytes alone.
    void keepPromises();

    Ref<NSString> name_;
    std::vector<Item> items_;
    Weak<NSObject> owner_;
    NSInteger changes_ = 0;
    std::uint64_t published_ = 0; ///< the clipboard's count at our last publication
    enum class Place : unsigned char { process, desktop, findText } place_;
    bool foreign_ = false; ///< what is here comes from another application
};

} // namespace libvue
