#pragma once

#include <libvue/platform/foundation/NSObject.h>
#include <libvue/platform/foundation/NSString.h>

namespace libvue {

enum DOMNodeType : unsigned short { DOM_ELEMENT_NODE = 1, DOM_TEXT_NODE = 3, DOM_DOCUMENT_NODE = 9 };

// What a web view says of its document. Whoever brings a web engine derives from these.

/// A node of a document's tree.
class LIBVUE_API DOMNode : public NSObject {
public:
    static void describe(ClassDescription<DOMNode>& c);
    ~DOMNode() override;
    [[nodiscard]] virtual unsigned short nodeType() const = 0;
    /// The tag of an element, in either case; "#text" of a text.
    [[nodiscard]] virtual Ref<NSString> nodeName() const = 0;
    /// The characters of a text node; null where there are none.
    [[nodiscard]] virtual Ref<NSString> nodeValue() const = 0;
    /// Null at the top.
    [[nodiscard]] virtual Ref<DOMNode> parentNode() const = 0;
};

class LIBVUE_API DOMElement : public DOMNode {
public:
    static void describe(ClassDescription<DOMElement, DOMNode>& c);
    ~DOMElement() override;
    /// Empty (or null) where it is absent.
    [[nodiscard]] virtual Ref<NSString> getAttribute(NSString* name) const = 0;
};

class LIBVUE_API DOMHTMLImageElement : public DOMElement {
public:
    static void describe(ClassDescription<DOMHTMLImageElement, DOMElement>& c);
    ~DOMHTMLImageElement() override;
};

class LIBVUE_API DOMHTMLDivElement : public DOMElement {
public:
    static void describe(ClassDescription<DOMHTMLDivElement, DOMElement>& c);
    ~DOMHTMLDivElement() override;
};

/// A stretch of a document: the selection, or the caret where it is empty.
class LIBVUE_API DOMRange : public NSObject {
public:
    static void describe(ClassDescription<DOMRange>& c);
    ~DOMRange() override;
    [[nodiscard]] virtual Ref<NSString> toString() const = 0;
    [[nodiscard]] virtual Ref<DOMNode> startContainer() const = 0;
    /// UTF-16 units in a text, children in an element.
    [[nodiscard]] virtual NSInteger startOffset() const = 0;
};

} // namespace libvue
