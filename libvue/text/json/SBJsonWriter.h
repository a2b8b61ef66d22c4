#pragma once

#include <libvue/text/json/SBJsonBase.h>
#include <libvue/text/json/SBJsonProtocols.h>

namespace libvue {

/// Writes objects as JSON text, on one line unless `humanReadable` is set.
///
/// What can be written: NSDictionary with text keys, NSArray, NSString, NSNumber (one that says `c` for its type as
/// true or false, any other as its `stringValue`), NSNull, and what offers `proxyForJson`. Text beyond ASCII is not
/// escaped. Writing never recurses, however deep the objects nest.
///
/// With the limit of nesting off (`maxDepth` 0) the indentation has no depth to go by: `humanReadable` then raises
/// NSRangeException at the end of the first container that is not empty.
class LIBVUE_API SBJsonWriter : public SBJsonBase, public SBJsonWriterProtocol {
public:
    static void describe(ClassDescription<SBJsonWriter, SBJsonBase>& c);
    SBJsonWriter();
    ~SBJsonWriter() override;

    /// The text of any value that can be written, or null with the reasons in `errorTrace`.
    [[nodiscard]] Ref<NSString> stringWithFragment(NSObject* value);
    /// The same for an object or an array, or what stands for one through `proxyForJson`.
    [[nodiscard]] Ref<NSString> stringWithObject(NSObject* value) override;

    [[nodiscard]] BOOL humanReadable() const override { return humanReadable_; }
    void setHumanReadable(BOOL readable) override { humanReadable_ = readable; }
    [[nodiscard]] BOOL sortKeys() const override { return sortKeys_; }
    void setSortKeys(BOOL sorted) override { sortKeys_ = sorted; }

private:
    class Engine;

    BOOL sortKeys_ = NO;
    BOOL humanReadable_ = NO;
};

} // namespace libvue
