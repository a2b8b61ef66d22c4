#pragma once

#include <libvue/platform/foundation/Export.h>
#include <libvue/platform/foundation/NSObject.h>

namespace libvue {

/// What reads JSON text.
class LIBVUE_API SBJsonParserProtocol {
public:
    /// The object or array that the text holds, or null.
    [[nodiscard]] virtual Ref<NSObject> objectWithString(const NSString* text) = 0;

protected:
    ~SBJsonParserProtocol() = default;
};

/// What writes JSON text.
class LIBVUE_API SBJsonWriterProtocol {
public:
    /// Whether line breaks, indentation and a spaced colon are written.
    [[nodiscard]] virtual BOOL humanReadable() const = 0;
    virtual void setHumanReadable(BOOL readable) = 0;
    /// Whether the keys of an object are written in their `compare:` order.
    [[nodiscard]] virtual BOOL sortKeys() const = 0;
    virtual void setSortKeys(BOOL sorted) = 0;
    /// The text of an object or array (or of what offers `proxyForJson`), or null.
    [[nodiscard]] virtual Ref<NSString> stringWithObject(NSObject* value) = 0;

protected:
    ~SBJsonWriterProtocol() = default;
};

} // namespace libvue
