#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/NSWindow.h>

namespace galerie {

using namespace libvue;

/// A short text in front of a window, which comes and goes by itself.
void montreAvis(NSWindow* devant, NSString* texte);

} // namespace galerie
