#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class CGFunction;
class CGShading;
class NSAffineTransform;
class NSBezierPath;
class NSBitmapImageRep;
class NSColor;
class NSFont;
class NSFontManager;
class NSGraphicsContext;
class NSImage;
class NSImageRep;
class NSMutableParagraphStyle;
class NSParagraphStyle;
class NSShadow;
class NSTextTab;
class TextAttachmentDrawing;

enum class Appearance : unsigned char;
enum NSCompositingOperation : NSUInteger;

namespace backend {

class Canvas;
class FontFace;
class Picture;
class TextLayout;
struct Color;
struct Path;
struct Shadow;
struct Stroke;
struct TextInput;
struct Transform;

} // namespace backend

} // namespace libvue
