#include <libvue/platform/graphics/NSTextContainer.h>

#include <libvue/platform/graphics/NSLayoutManager.h>

namespace libvue {

static const ClassRegistration<NSTextContainer> registration;

void NSTextContainer::describe(ClassDescription<NSTextContainer>&) {}

NSTextContainer::NSTextContainer() : NSTextContainer(NSZeroSize) {}
NSTextContainer::NSTextContainer(NSSize containerSize) : size_(containerSize) {}
NSTextContainer::~NSTextContainer() = default;

void NSTextContainer::setContainerSize(NSSize size) {
    if (size == size_) return;
    size_ = size;
    if (const Ref<NSLayoutManager> m = manager_.ref()) m->textContainerChangedGeometry(this);
}

void NSTextContainer::setLineFragmentPadding(CGFloat padding) {
    padding = padding > 0 ? padding : 0;
    if (padding == padding_) return;
    padding_ = padding;
    if (const Ref<NSLayoutManager> m = manager_.ref()) m->textContainerChangedGeometry(this);
}

} // namespace libvue
