#pragma once

#include <libvue/images/Forward.h>
#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/Ref.h>

namespace libvue {

/// What stands behind an ImageCommune.
struct ObjCImplImageCommune {
    Ref<NSImage> image;
};

/// An image that code outside of the objects can name and share. Each has a record of its own; copies share the image.
class LIBVUE_API ImageCommune {
public:
    ImageCommune();
    /// The image of that name, see Prends.
    explicit ImageCommune(const UniChaine& nom);
    ImageCommune(const ImageCommune& autre);
    ImageCommune& operator=(const ImageCommune& autre);
    virtual ~ImageCommune();

    /// The image of the name, which may carry a directory and an extension ("png" without one), among the images by
    /// name and then in the main bundle. Empty where there is none; the former image is given up either way.
    void Prends(const UniChaine& nom);
    /// Shares the image of a record, such as another's DonneImpl(). A null record is an empty one.
    void Prends(ObjCImplImageCommune*& impl);

    /// The record, for Prends; it stays this object's.
    [[nodiscard]] ObjCImplImageCommune*& DonneImpl() noexcept { return impl_; }
    /// Null where there is none; good as long as this object keeps it.
    [[nodiscard]] NSImage* DonneImage() const noexcept { return impl_->image; }

private:
    ObjCImplImageCommune* impl_; // owned
};

} // namespace libvue
