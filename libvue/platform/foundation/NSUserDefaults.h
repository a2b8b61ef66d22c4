#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Posted after a change made through this process, with the defaults as object.
inline constexpr ConstantString NSUserDefaultsDidChangeNotification{u"NSUserDefaultsDidChangeNotification"};

/// The user's settings: values by name, in one JSON file that is replaced as a whole, over registered fallbacks.
///
/// A file that cannot be read as settings is renamed (".damaged-…" behind its name), said in the log, and taken for
/// empty. Changes are written by `synchronize`, which the next turn of the run loop and the end of the object call as
/// well.
class LIBVUE_API NSUserDefaults : public NSObject {
public:
    static void describe(ClassDescription<NSUserDefaults>& c);
    /// Settings in the file at that path, which need not exist.
    explicit NSUserDefaults(const NSString* path);
    ~NSUserDefaults() override;

    /// $XDG_CONFIG_HOME (or ~/.config) / process name / defaults.json.
    [[nodiscard]] static NSUserDefaults* standardUserDefaults();
    /// Lets go of the standard defaults after writing them; the next use reads them anew.
    static void resetStandardUserDefaults();
    [[nodiscard]] NSString* path() const noexcept { return path_; }

    /// The stored value, else the registered one, else null.
    [[nodiscard]] NSObject* objectForKey(const NSString* key);
    /// Texts, numbers, dates, data, lists and dictionaries (with text keys) of these; anything else raises
    /// NSInvalidArgumentException. Null removes the key.
    void setObject_forKey(NSObject* value, const NSString* key);
    /// The registered value shows again.
    void removeObjectForKey(const NSString* key);
    /// Adds to the fallbacks, which are not written.
    void registerDefaults(const NSDictionary* values);

    // A value of another type gives null, NO or 0; numbers, booleans and texts are converted into one another.

    [[nodiscard]] Ref<NSString> stringForKey(const NSString* key);
    [[nodiscard]] NSArray* arrayForKey(const NSString* key);
    [[nodiscard]] Ref<NSArray> stringArrayForKey(const NSString* key);
    [[nodiscard]] NSDictionary* dictionaryForKey(const NSString* key);
    [[nodiscard]] NSData* dataForKey(const NSString* key);
    [[nodiscard]] NSInteger integerForKey(const NSString* key);
    [[nodiscard]] float floatForKey(const NSString* key);
    [[nodiscard]] double doubleForKey(const NSString* key);
    [[nodiscard]] BOOL boolForKey(const NSString* key);
    void setInteger_forKey(NSInteger v, const NSString* key);
    void setFloat_forKey(float v, const NSString* key);
    void setDouble_forKey(double v, const NSString* key);
    void setBool_forKey(BOOL v, const NSString* key);
    /// Stored over registered values.
    [[nodiscard]] Ref<NSDictionary> dictionaryRepresentation();

    /// Writes what changed. NO where the file cannot be written; then it stands as it was, and the values stay in
    /// memory.
    BOOL synchronize();

    [[nodiscard]] Ref<NSObject> valueForKey(NSString* key) override;
    void setValue_forKey(NSObject* value, NSString* key) override;

private:
    void setAside(const NSString* reason);
    void changed();

    Ref<NSString> path_;
    Ref<NSMutableDictionary> values_;
    Ref<NSMutableDictionary> registered_;
    bool dirty_ = false;
    bool writingIsDue_ = false;
    bool writable_ = true;
};

} // namespace libvue
