#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue::backend {

class Canvas;
class Clipboard;
class FontFace;
class GraphicsEngine;
class NotificationService;
class Picture;
class PrintDocument;
class PrintService;
class TextEngine;
class TextLayout;
class WindowServer;
class WindowStacking;
struct Backend;
struct Event;
struct Notice;
struct Path;
struct Transform;

} // namespace libvue::backend
