#pragma once

#include <libvue/platform/foundation/ConstantString.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// Keys of attributesOfItemAtPath.
inline constexpr ConstantString NSFileType{u"NSFileType"};
inline constexpr ConstantString NSFileSize{u"NSFileSize"};
inline constexpr ConstantString NSFileModificationDate{u"NSFileModificationDate"};
inline constexpr ConstantString NSFilePosixPermissions{u"NSFilePosixPermissions"};
/// Values of NSFileType.
inline constexpr ConstantString NSFileTypeDirectory{u"NSFileTypeDirectory"};
inline constexpr ConstantString NSFileTypeRegular{u"NSFileTypeRegular"};
inline constexpr ConstantString NSFileTypeSymbolicLink{u"NSFileTypeSymbolicLink"};
inline constexpr ConstantString NSFileTypeUnknown{u"NSFileTypeUnknown"};

/// Files and folders. A failure answers NO or null and fills `error` (may be null) with an error of domain
/// NSPOSIXErrorDomain.
class LIBVUE_API NSFileManager : public NSObject {
public:
    static void describe(ClassDescription<NSFileManager>& c);
    NSFileManager() noexcept = default;
    [[nodiscard]] static NSFileManager* defaultManager();

    /// Follows symbolic links.
    [[nodiscard]] BOOL fileExistsAtPath(const NSString* path) const;
    [[nodiscard]] BOOL fileExistsAtPath_isDirectory(const NSString* path, BOOL* isDirectory) const;
    /// A folder that exists already is a failure without `intermediates`.
    BOOL createDirectoryAtPath_withIntermediateDirectories_attributes_error(const NSString* path, BOOL intermediates,
                                                                            NSDictionary* attributes,
                                                                            Ref<NSError>* error);
    /// Folders go with what they hold; a symbolic link goes itself.
    BOOL removeItemAtPath_error(const NSString* path, Ref<NSError>* error);
    /// Fails where the destination exists.
    BOOL moveItemAtPath_toPath_error(const NSString* from, const NSString* to, Ref<NSError>* error);
    BOOL copyItemAtPath_toPath_error(const NSString* from, const NSString* to, Ref<NSError>* error);
    /// Names in order, without "." and "..".
    [[nodiscard]] Ref<NSArray> contentsOfDirectoryAtPath_error(const NSString* path, Ref<NSError>* error) const;
    /// Of the link itself where it is one.
    [[nodiscard]] Ref<NSDictionary> attributesOfItemAtPath_error(const NSString* path, Ref<NSError>* error) const;
    BOOL createSymbolicLinkAtPath_withDestinationPath_error(const NSString* path, const NSString* destination,
                                                            Ref<NSError>* error);
    [[nodiscard]] Ref<NSString> destinationOfSymbolicLinkAtPath_error(const NSString* path, Ref<NSError>* error) const;
    [[nodiscard]] Ref<NSData> contentsAtPath(const NSString* path) const;
    BOOL createFileAtPath_contents_attributes(const NSString* path, NSData* contents, NSDictionary* attributes);
};

/// The folder for temporary files: TMPDIR, else "/tmp".
[[nodiscard]] LIBVUE_API Ref<NSString> NSTemporaryDirectory();
/// The user's folder: HOME, else what the system knows of the user.
[[nodiscard]] LIBVUE_API Ref<NSString> NSHomeDirectory();

} // namespace libvue
