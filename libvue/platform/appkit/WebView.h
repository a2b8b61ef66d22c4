#pragma once

#include <libvue/platform/appkit/NSView.h>
#include <libvue/platform/appkit/WebDOM.h>

namespace libvue {

class WebView;

/// The key of the DOMNode in what elementAtPoint: answers.
inline constexpr ConstantString WebElementDOMNodeKey{u"WebElementDOMNode"};

namespace op {
/// The web view that a view named WebHTMLView belongs to.
inline constexpr Operation<WebView*()> _webView{"_webView"};
/// Of a policy delegate: a command of the keyboard, moveLeft: for instance. YES where it was carried out.
inline constexpr Operation<BOOL(WebView*, SEL)> webView_doCommandBySelector{"webView:doCommandBySelector:"};
} // namespace op

/// A view that shows web pages, as far as others ask it about its content. Whoever brings a web engine derives from it.
class LIBVUE_API WebView : public NSView {
public:
    static void describe(ClassDescription<WebView, NSView>& c);
    using NSView::NSView;
    ~WebView() override;
    /// Null while there is neither a selection nor a caret.
    [[nodiscard]] virtual Ref<DOMRange> selectedDOMRange() = 0;
    [[nodiscard]] virtual NSObject* policyDelegate() const = 0;
    /// What lies at the point of this view's coordinates, by the keys above.
    [[nodiscard]] virtual Ref<NSDictionary> elementAtPoint(NSPoint p) = 0;
    /// Selects the next place at which the text stands, and shows it. NO where there is none, and in a view that does
    /// not search.
    virtual BOOL searchFor_direction_caseSensitive_wrap(NSString* text, BOOL forward, BOOL caseSensitive, BOOL wrap);
};

/// The view inside a WebView that draws the page and has the focus; others know it by its name.
class LIBVUE_API WebHTMLView : public NSView {
public:
    static void describe(ClassDescription<WebHTMLView, NSView>& c);
    using NSView::NSView;
    ~WebHTMLView() override;
    [[nodiscard]] virtual WebView* _webView() = 0;
};

} // namespace libvue
