#pragma once

#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// A folder of resources: files, "<language>.lproj" folders with translations, "Info.json" (or a "Resources" folder
/// with these).
///
/// Languages come from LANGUAGE, LC_ALL, LC_MESSAGES and LANG; French is the one that the code is written in.
class LIBVUE_API NSBundle : public NSObject {
public:
    static void describe(ClassDescription<NSBundle>& c);
    ~NSBundle() override;

    /// The application's: a "Resources" or "resources" folder beside its executable, or the "share/<name>" or
    /// "share/<name>/resources" of its prefix, else the executable's own folder.
    [[nodiscard]] static NSBundle* mainBundle();
    /// The toolkit's own for its classes, else that of the shared object the class comes from; the main one for the
    /// application's.
    [[nodiscard]] static NSBundle* bundleForClass(const Class& c);
    /// The toolkit's own: LIBVUE_RESOURCES, else "share/libvue/resources" beside the library, else the source tree's.
    [[nodiscard]] static NSBundle* libraryBundle();
    /// One bundle a folder; null where there is no such folder.
    [[nodiscard]] static Ref<NSBundle> bundleWithPath(const NSString* path);
    [[nodiscard]] static NSBundle* bundleWithIdentifier(const NSString* identifier);
    /// Those in use that are no framework, the main one first.
    [[nodiscard]] static Ref<NSArray> allBundles();
    /// The toolkit's own, and those of other shared objects in use.
    [[nodiscard]] static Ref<NSArray> allFrameworks();
    /// Replaces the application's bundle; null gives its own back.
    static void setMainBundle(NSBundle* bundle);

    [[nodiscard]] NSString* bundlePath() const noexcept { return path_; }
    [[nodiscard]] NSString* resourcePath() const noexcept { return resources_; }
    /// An empty dictionary where there is no Info.json.
    [[nodiscard]] NSDictionary* infoDictionary();
    [[nodiscard]] NSObject* objectForInfoDictionaryKey(const NSString* key);
    /// "CFBundleIdentifier" of the information dictionary, or null.
    [[nodiscard]] NSString* bundleIdentifier();

    /// The file's path, in the translation folder of the best language or outside of all, or null. The type (may be
    /// null or empty) is the name's extension.
    [[nodiscard]] Ref<NSString> pathForResource_ofType(const NSString* name, const NSString* type);
    [[nodiscard]] Ref<NSString> pathForResource_ofType_inDirectory(const NSString* name, const NSString* type,
                                                                   const NSString* directory);
    [[nodiscard]] Ref<NSURL> URLForResource_withExtension(const NSString* name, const NSString* extension);
    [[nodiscard]] Ref<NSArray> pathsForResourcesOfType_inDirectory(const NSString* type, const NSString* directory);

    /// The translation of `key` in "<table>.strings" ("Localizable" where null or empty). Where there is none: `value`,
    /// or the key if that is null or empty.
    [[nodiscard]] Ref<NSString> localizedStringForKey_value_table(const NSString* key, const NSString* value,
                                                                  const NSString* table);
    [[nodiscard]] Ref<NSArray> localizations() const;
    /// Those of `localizations` that the user reads, best first, then French where it is there.
    [[nodiscard]] Ref<NSArray> preferredLocalizations() const;

    [[nodiscard]] Ref<NSString> description() const override;

private:
    NSBundle(const NSString* path, const NSString* resources);
    [[nodiscard]] NSDictionary* table(const NSString* name);

    Ref<NSString> path_;
    Ref<NSString> resources_;
    Ref<NSDictionary> info_;
    Ref<NSMutableDictionary> tables_;
};

/// The text in the main bundle's own table.
[[nodiscard]] LIBVUE_API Ref<NSString> NSLocalizedString(const NSString* key, const NSString* comment);

} // namespace libvue
