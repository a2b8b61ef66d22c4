#pragma once

#include <libvue/platform/foundation/Forward.h>

namespace libvue {

class NSActionCell;
class NSAnimation;
class NSApplication;
class NSBezierPath;
class NSBox;
class NSButton;
class NSButtonCell;
class NSCell;
class NSClipView;
class NSColor;
class NSControl;
class NSCursor;
class NSEvent;
class NSFont;
class NSGraphicsContext;
class NSImage;
class NSImageCell;
class NSImageView;
class NSMenu;
class NSMenuItem;
class NSPanel;
class NSPasteboard;
class NSPopUpButton;
class NSPrintInfo;
class NSPrintOperation;
class NSPrintPanel;
class NSResponder;
class NSScreen;
class NSScroller;
class NSScrollView;
class NSSlider;
class NSText;
class NSTextField;
class NSTextFieldCell;
class NSTextView;
class NSTrackingArea;
class NSView;
class NSViewAnimation;
class NSViewController;
class NSWindow;
class NSWindowController;
class SubviewList;

} // namespace libvue
