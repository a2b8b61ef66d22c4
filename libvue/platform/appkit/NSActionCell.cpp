#include <libvue/platform/appkit/NSActionCell.h>

namespace libvue {

void NSActionCell::describe(ClassDescription<NSActionCell, NSCell>& c) {
    c.key<&NSActionCell::tag, &NSActionCell::setTag>("tag");
}

} // namespace libvue
