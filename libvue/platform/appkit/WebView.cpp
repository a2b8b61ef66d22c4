#include <libvue/platform/appkit/WebView.h>

namespace libvue {

void DOMNode::describe(ClassDescription<DOMNode>&) {}
void DOMElement::describe(ClassDescription<DOMElement, DOMNode>&) {}
void DOMHTMLImageElement::describe(ClassDescription<DOMHTMLImageElement, DOMElement>&) {}
void DOMHTMLDivElement::describe(ClassDescription<DOMHTMLDivElement, DOMElement>&) {}
void DOMRange::describe(ClassDescription<DOMRange>&) {}
void WebView::describe(ClassDescription<WebView, NSView>&) {}
void WebHTMLView::describe(ClassDescription<WebHTMLView, NSView>& c) {
    c.answers<&WebHTMLView::_webView>(op::_webView);
}

DOMNode::~DOMNode() = default;
DOMElement::~DOMElement() = default;
DOMHTMLImageElement::~DOMHTMLImageElement() = default;
DOMHTMLDivElement::~DOMHTMLDivElement() = default;
DOMRange::~DOMRange() = default;
WebView::~WebView() = default;
BOOL WebView::searchFor_direction_caseSensitive_wrap(NSString*, BOOL, BOOL, BOOL) { return NO; }
WebHTMLView::~WebHTMLView() = default;

} // namespace libvue
